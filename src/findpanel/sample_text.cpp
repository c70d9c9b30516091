#include "sample_text.h"

#include "engine/request.h"

#include <utility>

namespace pluvo::findpanel {

namespace {

constexpr const char16_t* kUnknown = u"..{Unknown text}..";

std::u16string operatedOn(const std::u16string& part, const SampleOperation& what) {
  switch (what.operation) {
    case engine::kInsert:
      return what.place == engine::kAfter ? part + what.space + what.text : what.text + what.space + part;
    case engine::kReplace:
      return what.text;
    case engine::kDelete:
      return {};
    case engine::kHighlight:
      return (what.colour.empty() ? u"{not highlighted: " : u"{" + what.colour + u": ") + part + u"}";
    default:
      return part;
  }
}

}  // namespace

SampleText::SampleText(std::u16string begin, std::u16string end, std::u16string inside)
    : begin_(std::move(begin)), inside_(std::move(inside)), end_(std::move(end)) {
  if (end_.empty()) return;
  gapBefore_ = kUnknown;
  if (!inside_.empty()) gapBehind_ = kUnknown;
}

std::u16string SampleText::print() const { return begin_ + gapBefore_ + inside_ + gapBehind_ + end_; }

SampleText SampleText::after(const SampleOperation& operation) const {
  SampleText result = *this;
  switch (operation.location) {
    case engine::kSelection:
      result = SampleText();
      result.begin_ = operatedOn(print(), operation);
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

}  // namespace pluvo::findpanel
