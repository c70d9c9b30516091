#include "open_document.h"

#include "automation.h"
#include "base/text.h"
#include "word/faults.h"

#include <algorithm>
#include <utility>

namespace pluvo::stand_in {

using text::Position;
using text::Span;

OpenDocument::OpenDocument(std::u16string documentPath, StoredFile stored)
    : path(std::move(documentPath)), file(std::move(stored)) {
  model_.emplace(documentContent(file.text));
  selection_ = std::make_unique<Place>(*this, Span{});
}

document::Story& OpenDocument::mainText() {
  if (!model_) throw refusal(word::kObjectDeleted);
  return *model_;
}

void OpenDocument::requirePosition(Position position) {
  if (position < 0 || position > length()) throw refusal(word::kValueOutOfRange);
}

void OpenDocument::requireEditable() const {
  if (file.protection > 0) throw refusal(word::kProtectedSelection);
}

/// Where all ranges stood before an edit.
struct OpenDocument::Before {
  explicit Before(OpenDocument& document) : length(document.length()) {
    for (const Place* place : document.places_) spans.push_back(place->span());
  }
  Position length;
  std::vector<Span> spans;
};

void OpenDocument::replace(Place& place, const std::u16string& newText) {
  requireEditable();
  const Before before(*this);
  const Span replaced = place.span();
  if (ways().keepsDeleted && !replaced.empty()) {
    // The new text stands before the text marked as deleted.
    place.set({replaced.from, replaced.from});
    if (!newText.empty()) replace(place, newText);
    saved = false;
    return;
  }
  const Span now = mainText().replace(replaced, newText, view);
  follow(place, before, replaced, now);
  place.set(now.empty() ? Span{replaced.from, replaced.from} : now);
}

void OpenDocument::insertBefore(Place& place, const std::u16string& newText) { insert(place, newText, true); }

void OpenDocument::insertAfter(Place& place, const std::u16string& newText) { insert(place, newText, false); }

void OpenDocument::insert(Place& place, const std::u16string& newText, bool inFront) {
  const Span old = place.span();
  if (old.empty()) return replace(place, newText);
  requireEditable();
  const Before before(*this);
  const Span now =
      inFront ? mainText().insertBefore(old.from, newText) : mainText().insertBehind(old.to, newText);
  follow(place, before, {now.from, now.from}, now);
  place.set({std::min(old.from, now.from), old.to + now.length()});
}

void OpenDocument::follow(Place& editor, const Before& before, Span replaced, Span now) {
  saved = false;
  const Position removed = before.length + now.length() - length();
  const bool finalMarkStays = replaced.to == before.length && removed == replaced.length() - 1;
  // Where marks of fields or tables stay, the model's own following stands.
  if (now.from != replaced.from || (removed != replaced.length() && !finalMarkStays)) return;

  const Position to = replaced.from + removed;
  const auto moved = [&](Position position) {
    if (position > replaced.from) position = position >= to ? position - removed : replaced.from;
    return position > now.from ? position + now.length() : position;
  };
  for (std::size_t i = 0; i < places_.size(); ++i) {
    if (places_[i] != &editor) places_[i]->set({moved(before.spans[i].from), moved(before.spans[i].to)});
  }
}

void OpenDocument::highlight(Span span, std::int32_t colour) {
  if (file.protection > 0) throw refusal(word::kNotAvailable);
  mainText().highlight(span, static_cast<std::uint8_t>(colour));
  saved = false;
}

std::u16string OpenDocument::visibleText(Span span) {
  std::u16string text;
  for (const char16_t unit : mainText().visibleText(span, view)) {
    if (unit == kUnseen) continue;
    if (unit == text::kCellMark) text += text::kParagraphMark;
    text += unit;
  }
  return text;
}

std::u16string highlights(const document::Story& model) {
  std::u16string all;
  for (const auto& run : model.highlight().runs()) {
    if (run.value == 0) continue;
    if (!all.empty()) all += u' ';
    all += base::decimal(run.value) + u":" + base::decimal(run.from) + u"-" + base::decimal(run.to);
  }
  return all;
}

Place::Place(OpenDocument& document, Span span)
    : document_(document), live_(document.mainText().liveRanges(), span) {
  document_.places_.push_back(this);
}

}  // namespace pluvo::stand_in
