#include "open_document.h"

#include "automation.h"
#include "errors/text.h"

#include <algorithm>
#include <utility>

namespace pluvo::stand_in {

using text::Position;
using text::Span;

OpenDocument::OpenDocument(std::u16string documentPath, const StoredFile& stored)
    : path(std::move(documentPath)), file(stored), readOnly(stored.readOnly) {
  model_.emplace(documentContent(stored.text));
  selection_ = std::make_unique<Place>(*this, Span{});
}

model::Model& OpenDocument::model() {
  if (!model_) throw WordError{5825, u"Object has been deleted."};
  return *model_;
}

std::u16string OpenDocument::name() const { return path.substr(path.rfind(u'\\') + 1); }

std::u16string OpenDocument::folder() const {
  const std::size_t separator = path.rfind(u'\\');
  return separator == std::u16string::npos ? std::u16string() : path.substr(0, separator);
}

void OpenDocument::requirePosition(Position position) {
  if (position < 0 || position > length()) throw WordError{4608, u"Value out of range"};
}

void OpenDocument::requireEditable() const {
  if (file.protection > 0) {
    throw WordError{6124, u"You are not allowed to edit this selection because it is protected."};
  }
}

std::vector<Span> OpenDocument::spans() const {
  std::vector<Span> spans;
  for (const Place* place : places_) spans.push_back(place->live_.span());
  return spans;
}

void OpenDocument::replace(Place& place, const std::u16string& newText) {
  requireEditable();
  const auto before = spans();
  const Span replaced = place.span();
  const Position oldLength = length();
  const Span now = model().replace(replaced, newText, view);
  follow(place, before, replaced, oldLength, now);
  place.set(now.empty() ? Span{replaced.from, replaced.from} : now);
}

void OpenDocument::insertBefore(Place& place, const std::u16string& newText) {
  if (place.span().empty()) return replace(place, newText);
  requireEditable();
  const auto before = spans();
  const Span old = place.span();
  const Position oldLength = length();
  const Span now = model().insertBefore(old.from, newText);
  follow(place, before, {now.from, now.from}, oldLength, now);
  place.set({std::min(old.from, now.from), old.to + now.length()});
}

void OpenDocument::insertAfter(Place& place, const std::u16string& newText) {
  if (place.span().empty()) return replace(place, newText);
  requireEditable();
  const auto before = spans();
  const Span old = place.span();
  const Position oldLength = length();
  const Span now = model().insertBehind(old.to, newText);
  follow(place, before, {now.from, now.from}, oldLength, now);
  place.set({std::min(old.from, now.from), old.to + now.length()});
}

void OpenDocument::follow(Place& editor, const std::vector<Span>& before, Span replaced, Position oldLength,
                          Span now) {
  saved = false;
  const Position removed = oldLength + now.length() - length();
  const bool finalMarkStays = replaced.to == oldLength && removed == replaced.length() - 1;
  // Where marks of fields or tables stay behind, the model's own following stands.
  if (now.from != replaced.from || (removed != replaced.length() && !finalMarkStays)) return;

  const Position to = replaced.from + removed;
  const auto deleted = [&](Position position) {
    if (position <= replaced.from) return position;
    return position >= to ? position - removed : replaced.from;
  };
  const auto inserted = [&](Position position) {
    return position > now.from ? position + now.length() : position;
  };
  for (std::size_t i = 0; i < places_.size(); ++i) {
    if (places_[i] == &editor) continue;
    places_[i]->set({inserted(deleted(before[i].from)), inserted(deleted(before[i].to))});
  }
}

void OpenDocument::highlight(Span span, std::int32_t colour) {
  if (file.protection > 0) {
    throw WordError{4605, u"This method or property is not available because the document is protected."};
  }
  if (colour < 0 || colour > 16) throw WordError{5843, u"One of the parameters is out of range."};
  model().highlight(span, static_cast<std::uint8_t>(colour));
  saved = false;
}

std::u16string OpenDocument::visibleText(Span span) {
  std::u16string text;
  for (const char16_t unit : model().visibleText(span, view)) {
    if (unit == text::kCellMark) text += text::kParagraphMark;
    text += unit;
  }
  return text;
}

std::u16string OpenDocument::allText() { return model().text().substring(0, length()); }

std::int32_t OpenDocument::highlightOf(Span span) {
  constexpr std::int32_t kMixed = 9999999;
  if (span.empty()) return 0;
  const auto run = model().highlight().runAt(span.from);
  return run.to >= span.to ? run.value : kMixed;
}

std::u16string OpenDocument::highlights() {
  std::u16string all;
  for (const auto& run : model().highlight().runs()) {
    if (run.value == 0) continue;
    if (!all.empty()) all += u' ';
    all += errors::decimal(run.value) + u":" + errors::decimal(run.from) + u"-" + errors::decimal(run.to);
  }
  return all;
}

Place::Place(std::shared_ptr<OpenDocument> document, Span span) : Place(*document, span) {
  kept_ = std::move(document);
}

Place::Place(OpenDocument& document, Span span)
    : document_(document), live_(document.model().liveRanges(), span) {
  document_.places_.push_back(this);
}

Place::~Place() { std::erase(document_.places_, this); }

}  // namespace pluvo::stand_in
