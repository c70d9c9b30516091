#include "field_writer.h"

#include "run_content.h"

#include <algorithm>
#include <string>
#include <utility>

namespace pluvo::docx {

void FieldWriter::begin(Position from, const Tag& tag, std::u16string_view instruction) {
  const Position end = from + static_cast<Position>(instruction.size()) + 2;
  next_ = {};
  next_.instruction = instruction;
  steps_.clear();
  part_.script.take(end, [&](const Step& step) { steps_.push_back(step); });
  if (steps_.size() == 1 && steps_.front().kind == Step::Kind::keep) {
    part_.fields.begin(true, true);
    next_.kept = true;
    return;
  }
  opens_.copyTo(tag.extent.begin);
  part_.output.leaveOutTo(tag.extent.end);
  const bool keepsMark = std::any_of(steps_.begin(), steps_.end(),
                                     [](const Step& step) { return step.kind == Step::Kind::keep; });
  next_.bare = !keepsMark;
  next_.toComplex = next_.kept = keepsMark;
  part_.fields.begin(keepsMark, false);
  writeAnew(from, end);
  part_.fields.enterResult();
}

void FieldWriter::open(const Tag& tag) {
  OpenElement open = std::move(next_);
  open.tag = tag;
  open.inner = tag.extent.end;
  open.lost = !open.kept;
  if (open.bare || open.toComplex) open.outBegin = open.outInner = part_.output.text().size();
  opens_.push(std::move(open));
}

/// The start of a simple field that is touched, character by character, as a complex one.
void FieldWriter::writeAnew(Position from, Position end) {
  for (const Step& step : steps_) {
    if (step.kind == Step::Kind::drop) continue;
    if (step.kind == Step::Kind::put) {
      const bool outside = step.original == from && !step.after;
      if (outside) part_.fields.setKept(false);
      if (step.original == end - 1 && step.after) part_.fields.enterResult();
      newText_.putInNewRun(step);
      part_.fields.setKept(next_.kept);
      continue;
    }
    const Position last = step.original + step.length;
    if (step.original == from) part_.output.text() += fieldMark("begin", opens_.markup());
    const Position codeFrom = std::max(step.original, from + 1);
    const Position codeTo = std::min(last, end - 1);
    if (codeFrom < codeTo)
      writeCode(std::u16string_view(next_.instruction)
                    .substr(static_cast<std::size_t>(codeFrom - from - 1),
                            static_cast<std::size_t>(codeTo - codeFrom)));
    if (last == end) part_.output.text() += fieldMark("separate", opens_.markup());
  }
}

void FieldWriter::writeCode(std::u16string_view code) {
  runs_.beginNew({});
  runs_.write(code, 0, opens_.markup().element + "instrText");
  runs_.endNew();
}

void FieldWriter::end(Position at, Extent endTag) {
  steps_.clear();
  bool kept = false;
  bool textAfter = false;
  part_.script.take(at + 1, [&](const Step& step) {
    steps_.push_back(step);
    kept = kept || step.kind == Step::Kind::keep;
    textAfter = textAfter || step.after;
  });
  putAll(false, endTag);
  part_.fields.end();
  OpenElement& open = opens_.back();
  if (open.toComplex || open.bare) {
    opens_.copyTo(endTag.begin);
    part_.output.leaveOutTo(endTag.end);
    if (kept && open.toComplex) part_.output.text() += fieldMark("end", opens_.markup());
  } else if (textAfter) {
    // Text after the mark stands after the element, which ends here.
    if (open.expanded) opens_.writeEndTag(open);
    open.expanded = false;
    opens_.copyTo(endTag.end);
    open.bare = true;
  }
  putAll(true, endTag);
}

/// The new text before or after the end of a simple field.
void FieldWriter::putAll(bool after, Extent endTag) {
  for (const Step& step : steps_) {
    if (step.kind != Step::Kind::put || step.after != after) continue;
    if (!after) {
      opens_.expand(opens_.back());
      opens_.copyTo(endTag.begin);
    }
    newText_.putInNewRun(step);
  }
}

}  // namespace pluvo::docx
