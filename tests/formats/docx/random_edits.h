#pragma once

#include "document/document.h"
#include "errors/fault.h"
#include "word/faults.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace pluvo::docx {

/// Where an edit begins, how far it reaches, what comes and what kind of edit it is: any numbers.
struct EditSeed {
  std::uint32_t place = 0;
  std::uint32_t reach = 0;
  std::uint32_t text = 0;
  std::uint32_t kind = 0;
};

/// An edit of a document as those numbers say. It begins at a place that is shown, and cuts no character in
/// two.
inline void editBySeed(document::Story& model, const EditSeed& seed) {
  static const std::u16string texts[] = {u"new",          u" the Lessee ", u"one\rtwo", u"line\r",
                                         u"a\tb",         u"x\u000By",     u"\r",       u"A & B < C > \"D\"",
                                         u"\U0001F600 ok"};
  const auto whole = [&](text::Position p) {
    const char16_t unit = model.text().at(p);
    return p > 0 && unit >= 0xDC00 && unit <= 0xDFFF ? p - 1 : p;
  };
  const text::Position last = model.length() - 1;
  const auto from = whole(static_cast<text::Position>(seed.place % static_cast<std::uint32_t>(last + 1)));
  const auto reach = static_cast<text::Position>(seed.reach % (seed.reach % 4 == 0 ? 400 : 12));
  const text::Span span{from, std::max(from, whole(std::min(from + reach, last)))};
  const std::u16string& text = texts[seed.text % std::size(texts)];
  const text::Position after = whole(std::min(span.from + 2, last));
  const auto isShown = [&](text::Position p) {
    return (model.visibility().valueAt(p) & text::kInResults) != 0;
  };
  if (!isShown(from) || !isShown(std::max(after - 1, from))) return;
  // A lock may refuse any of them.
  try {
    switch (seed.kind % 5) {
      case 0:
        model.replace(span, text, text::View::results);
        break;
      case 1:
        model.insertBefore(span.from, text);
        break;
      case 2:
        model.insertBehind(after, text);
        break;
      case 3:
        model.replace(span, {}, text::View::results);
        break;
      default:
        model.highlight(span, static_cast<std::uint8_t>(seed.text % 17));
    }
  } catch (const errors::Fault& refusal) {
    if (refusal.number != word::kCommandFailed) throw;
  }
}

/// The same in the story that the kind of edit says.
inline void editBySeed(document::Document& document, const EditSeed& seed) {
  const std::size_t story = seed.kind / 5 % document.count();
  if (!document.isGone(story)) editBySeed(document.story(story), seed);
}

}  // namespace pluvo::docx
