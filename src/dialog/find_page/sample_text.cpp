#include "sample_text.h"

#include "engine/request.h"

#include <utility>

namespace pluvo::dialog {

namespace {

constexpr const char16_t* kUnknown = u"..{Unknown text}..";
constexpr char16_t kLineEnd = 13;
constexpr char16_t kSeenMark = u'\u00B6';

/// Text after it stands on the next line all the same.
std::u16string withMark(std::u16string text) {
  if (text.ends_with(kLineEnd)) text.insert(text.size() - 1, 1, kSeenMark);
  return text;
}

std::u16string withoutLastLineEnd(std::u16string text) {
  if (text.ends_with(kLineEnd)) text.pop_back();
  return text;
}

std::u16string operatedOn(const std::u16string& part, const SampleOperation& what) {
  switch (what.operation) {
    case engine::kInsert:
      return what.place == engine::kAfter ? part + withMark(what.space + what.text)
                                          : withMark(what.text + what.space) + part;
    case engine::kReplace:
      return withMark(what.text);
    case engine::kDelete:
      return {};
    case engine::kHighlight:
      return (what.colour.empty() ? u"{not highlighted: " : u"{" + what.colour + u": ") +
             withoutLastLineEnd(part) + u"}";
    default:
      return part;
  }
}

}  // namespace

SampleText::SampleText(std::u16string begin, std::u16string end, std::u16string inside)
    : begin_(withMark(std::move(begin))),
      inside_(withMark(std::move(inside))),
      end_(withMark(std::move(end))) {
  if (end_.empty()) return;
  gapBefore_ = kUnknown;
  if (!inside_.empty()) gapAfter_ = kUnknown;
}

std::u16string SampleText::print() const {
  std::u16string printed;
  for (const char16_t unit : withoutLastLineEnd(joined())) {
    printed += unit;
    if (unit == kLineEnd) printed += u'\n';
  }
  return printed;
}

SampleText SampleText::after(const SampleOperation& operation) const {
  SampleText result = *this;
  switch (operation.location) {
    case engine::kSelection:
      result = SampleText();
      result.begin_ = operatedOn(joined(), operation);
      break;
    case engine::kBeginning:
      result.begin_ = operatedOn(begin_, operation);
      break;
    case engine::kEnding:
      result.end_ = operatedOn(end_, operation);
      break;
    case engine::kInsideText:
      result.inside_ = operatedOn(inside_, operation);
      break;
    default:
      break;
  }
  return result;
}

}  // namespace pluvo::dialog
