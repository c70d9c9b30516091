#include "operations.h"

namespace pluvo::engine {

word::Range* Operations::operated() const {
  switch (search_.request.location) {
    case kSelection:
      return ranges_.block.get();
    case kBeginning:
      return ranges_.begin.get();
    // A range of a text that is not asked for stands wherever the search began.
    case kEnding:
      return search_.end.empty() ? nullptr : ranges_.end.get();
    case kInsideText:
      return search_.inside.empty() ? nullptr : ranges_.inside.get();
    default:
      return nullptr;
  }
}

Block Operations::block() const {
  return {required(ranges_.block), required(ranges_.begin), search_.end.empty() ? nullptr : ranges_.end.get(),
          search_.inside.empty() ? nullptr : ranges_.inside.get(), search_.operates() ? operated() : nullptr};
}

std::optional<errors::Fault> Operations::perform() const {
  switch (search_.request.operation) {
    case kInsert:
      return InsertOperationText();
    case kReplace:
      return ReplaceOperationText();
    case kDelete:
      return DeleteOperationRange();
    case kHighlight:
      return HighlightOperationRange();
    default:
      return std::nullopt;
  }
}

template <class Work>
std::optional<errors::Fault> Operations::onRange(errors::Tag tag, Work work) const {
  return errors::faultOf(trail_, tag, [&] {
    if (word::Range* const range = operated()) work(*range);
  });
}

std::optional<errors::Fault> Operations::InsertOperationText() const {
  return onRange(u"cpf:30", [&](word::Range& range) {
    if (search_.request.place == kAfter) {
      range.InsertAfter(search_.insertion);
    } else {
      range.InsertBefore(search_.insertion);
    }
  });
}

std::optional<errors::Fault> Operations::ReplaceOperationText() const {
  return onRange(u"cpf:31", [&](word::Range& range) { range.Text(search_.request.text); });
}

std::optional<errors::Fault> Operations::DeleteOperationRange() const {
  return onRange(u"cpf:32", [](word::Range& range) { range.Delete(); });
}

std::optional<errors::Fault> Operations::HighlightOperationRange() const {
  return onRange(u"cpf:29",
                 [&](word::Range& range) { range.HighlightColorIndex(search_.request.highlightColour); });
}

}  // namespace pluvo::engine
