// Simple fields: elements around their result, which become complex ones where an edit asks for more than
// that.
#include "rewriter.h"
#include "run_content.h"

#include <algorithm>

namespace pluvo::docx {

std::string Rewriter::fieldMark(std::string_view type) const {
  const Markup written = markup();
  return written.tag("r") + ">" + written.with("fldChar", "fldCharType", type) + written.endTag("r");
}

/// The complex field that says the same as a simple one's start tag.
std::string Rewriter::beginningOfField(const Open& open) const {
  const Markup written = markup();
  std::string result = fieldMark("begin");
  if (!open.instruction.empty()) {
    result += written.tag("r") + ">";
    appendContent(result, open.instruction, written.element + "instrText", written);
    result += written.endTag("r");
  }
  return result + fieldMark("separate");
}

void Rewriter::simpleField(const Tag& tag, std::u16string_view instruction) {
  const Position from = walker_.position();
  const Position end = from + static_cast<Position>(instruction.size()) + 2;
  fieldOpen_ = {};
  fieldOpen_.instruction = instruction;
  if (removedTables_ > 0) {
    collectInRemovedTable(end);
    fields_.push_back({false, true});
    return;
  }
  enterParagraphContent();
  steps_.clear();
  script_.take(end, [&](const Step& step) { steps_.push_back(step); });
  if (steps_.size() == 1 && steps_.front().kind == Step::Kind::keep) {
    fields_.push_back({true, true});
    fieldOpen_.kept = true;
    return;
  }
  copyTo(tag.extent.begin);
  output_.leaveOutTo(tag.extent.end);
  bool keepsMark = false;
  for (const Step& step : steps_) keepsMark = keepsMark || step.kind == Step::Kind::keep;
  fieldOpen_.bare = !keepsMark;
  fieldOpen_.toComplex = keepsMark;
  fieldOpen_.kept = keepsMark;
  fields_.push_back({keepsMark, false});
  writeFieldAnew(from, end);
  fields_.back().inResult = true;
}

/// The start of a simple field that is touched, character by character, as a complex one.
void Rewriter::writeFieldAnew(Position from, Position end) {
  const std::string tag = markup().element + "instrText";
  for (const Step& step : steps_) {
    if (step.kind == Step::Kind::drop) continue;
    if (step.kind == Step::Kind::put) {
      const bool outside = step.original == from && !step.behind;
      if (outside) fields_.back().kept = false;
      if (step.original == end - 1 && step.behind) fields_.back().inResult = true;
      beginNewRun({});
      put(step);
      endNewRun();
      fields_.back().kept = fieldOpen_.kept;
      continue;
    }
    const Position last = step.original + step.length;
    if (step.original == from) output_.text() += fieldMark("begin");
    const Position codeFrom = std::max(step.original, from + 1);
    const Position codeTo = std::min(last, end - 1);
    if (codeFrom < codeTo) {
      beginNewRun({});
      const auto at = static_cast<std::size_t>(codeFrom - from - 1);
      write(
          std::u16string_view(fieldOpen_.instruction).substr(at, static_cast<std::size_t>(codeTo - codeFrom)),
          0, tag);
      endNewRun();
    }
    if (last == end) output_.text() += fieldMark("separate");
  }
}

void Rewriter::endSimpleField(Extent endTag) {
  const Position position = walker_.position();
  if (removedTables_ > 0) {
    collectInRemovedTable(position + 1);
    fields_.pop_back();
    return;
  }
  enterParagraphContent();
  steps_.clear();
  bool kept = false;
  bool textBehind = false;
  script_.take(position + 1, [&](const Step& step) {
    steps_.push_back(step);
    kept = kept || step.kind == Step::Kind::keep;
    textBehind = textBehind || step.behind;
  });
  putAll(false, endTag);
  fields_.pop_back();
  const std::size_t index = opens_.size() - 1;
  Open& open = opens_[index];
  if (open.toComplex || open.bare) {
    copyTo(endTag.begin);
    output_.leaveOutTo(endTag.end);
    if (kept && open.toComplex) output_.text() += fieldMark("end");
  } else if (textBehind) {
    // Text behind the mark stands behind the element, which ends here.
    if (open.expanded) output_.text() += "</" + std::string(qualifiedName(open.tag)) + ">";
    open.expanded = false;
    copyTo(endTag.end);
    open.bare = true;
  }
  putAll(true, endTag);
}

/// The new text before or behind the end of a simple field.
void Rewriter::putAll(bool behind, Extent endTag) {
  for (const Step& step : steps_) {
    if (step.kind != Step::Kind::put || step.behind != behind) continue;
    if (!behind) {
      expand(opens_.back());
      copyTo(endTag.begin);
    }
    beginNewRun({});
    put(step);
    endNewRun();
  }
}

}  // namespace pluvo::docx
