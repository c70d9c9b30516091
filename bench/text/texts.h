#pragma once

#include "text/pieces.h"

#include <random>
#include <string>
#include <vector>

namespace pluvo::text::bench {

/// Ordinary words, sentences and paragraphs, the same every time.
inline std::u16string prose(Position length) {
  static constexpr std::u16string_view kWords[] = {
      u"the",    u"party",   u"of",       u"first", u"part",       u"shall", u"in",
      u"any",    u"event",   u"deliver",  u"to",    u"holder",     u"a",     u"written",
      u"notice", u"Article", u"pursuant", u"which", u"liability,", u"clause"};
  std::mt19937 random(1);
  std::u16string text;
  text.reserve(static_cast<std::size_t>(length) + 32);
  while (static_cast<Position>(text.size()) < length) {
    text += kWords[random() % std::size(kWords)];
    const auto next = random() % 100;
    text += next == 0 ? u".\r" : next < 8 ? u". " : u" ";
  }
  text.resize(static_cast<std::size_t>(length));
  text.back() = kParagraphMark;
  return text;
}

inline OriginalText narrow(const std::u16string& text) {
  return OriginalText(std::vector<std::uint8_t>(text.begin(), text.end()));
}

}  // namespace pluvo::text::bench
