#include "paragraph_writer.h"

#include "fragment.h"

#include <utility>

namespace pluvo::docx {

void ParagraphWriter::open(const Tag& tag) {
  opens_.pushParagraph(tag);
  tag_ = tag;
  properties_ = {};
  entered_ = splitOff_ = joins_ = false;
}

void ParagraphWriter::properties(const Properties& properties) {
  properties_ = properties;
  opens_.paragraph().inner = properties.whole.end;
}

/// The new part of a divided paragraph has no identity, but of a comment's last paragraph the last part keeps
/// it.
std::string ParagraphWriter::startWith(const std::string& properties, Part part) const {
  const bool isNew = keepsIdentityAtEnd() ? part == Part::front : splitOff_;
  return paragraphTag(part_, opens_.markup(), tag_, isNew) + properties;
}

bool ParagraphWriter::keepsIdentityAtEnd() const {
  return part_.map.lastParagraph != 0 && part_.map.lastParagraph == tag_.extent.begin;
}

std::string ParagraphWriter::runProperties() const {
  return runPropertiesOfMark(part_.output.source(properties_.whole));
}

void ParagraphWriter::enter() {
  if (entered_) return;
  entered_ = true;
  if (underWay_.empty()) return;
  OpenElement& open = opens_.paragraph();
  if (underWay_.waits()) underWay_.place(startOfSplitOff(part_, opens_.markup(), tag_, properties_));
  opens_.copyTo(tag_.extent.begin);
  if (underWay_.hasBlocks()) opens_.aroundParagraph().kept = true;
  underWay_.writeBlocks();
  start_ = startWith(std::string(part_.output.source(properties_.whole)));
  open.outBegin = open.outInner = 0;
  open.expanded = tag_.empty;
  open.touched = open.textChanged = true;
  open.kept = open.kept || underWay_.hasText();
  part_.output.leaveOutTo(open.inner);
  joins_ = true;
  part_.output.divertTo(underWay_.content());
}

/// The paragraph of the content under way stays, and so it can be written. Until then its content is gathered
/// there, lest a chain of merged paragraphs be copied again for each.
void ParagraphWriter::writeWhatCame() {
  if (!joins_) return;
  joins_ = false;
  part_.output.comeBack();
  OpenElement& open = opens_.paragraph();
  open.outBegin = part_.output.text().size();
  part_.output.text() += start_;
  open.outInner = part_.output.text().size();
  underWay_.writeContent();
}

void ParagraphWriter::divide(std::uint8_t markColour, bool markDeleted) {
  opens_.closeFrom(opens_.firstInParagraph());
  writeWhatCame();
  OpenElement& open = opens_.paragraph();
  std::string& out = part_.output.text();
  const std::string properties(part_.output.source(properties_.whole));
  const std::string front = withNewMark(part_, opens_.markup(), forSplitOffParagraph(properties), markColour,
                                        markDeleted, runs_.properties());
  if (front != properties || keepsIdentityAtEnd()) replaceStart(startWith(front, Part::front));
  opens_.writeEndTag(open);
  splitOff_ = true;
  open.outBegin = out.size();
  out += startWith(properties);
  open.outInner = out.size();
  opens_.aroundParagraph().kept = true;
  opens_.openAgainFrom(opens_.firstInParagraph());
}

void ParagraphWriter::replaceStart(const std::string& start) {
  OpenElement& open = opens_.paragraph();
  part_.output.text().replace(open.outBegin, open.outInner - open.outBegin, start);
  underWay_.moveJoint(open.outInner, open.outBegin + start.size());
  open.outInner = open.outBegin + start.size();
}

void ParagraphWriter::makeRoom(Extent endTag) {
  opens_.expand(opens_.paragraph());
  opens_.copyTo(endTag.begin);
}

void ParagraphWriter::putAfterMark(const Step& put) {
  underWay_.wait(put, runProperties(), startOfSplitOff(part_, opens_.markup(), tag_, properties_));
}

void ParagraphWriter::close(Extent endTag) {
  enter();
  if (markDropped_) return merge(endTag);
  keep(endTag);
}

void ParagraphWriter::keep(Extent endTag) {
  OpenElement& open = opens_.paragraph();
  if (markColour_ != properties_.look.highlight) {
    makeRoom(endTag);
    writeWhatCame();
    const std::string_view old = part_.output.source(properties_.whole);
    replaceStart(startWith(highlighted_.of(old, opens_.markup(), markColour_)));
    open.touched = true;
  }
  if (joins_) opens_.copyTo(endTag.begin);
  writeWhatCame();
  if (open.expanded) opens_.writeEndTag(open);
  OpenElement closed = opens_.popParagraph();
  closed.kept = true;
  closed.lost = false;
  opens_.passOn(closed);
}

void ParagraphWriter::merge(Extent endTag) {
  const OpenElement& open = opens_.paragraph();
  const bool hasContent = !tag_.empty || open.expanded;
  opens_.copyTo(hasContent ? endTag.begin : tag_.extent.begin);
  underWay_.join(open);
  if (joins_) {
    part_.output.comeBack();
  } else {
    std::string& out = part_.output.text();
    const std::string_view content = std::string_view(out).substr(hasContent ? open.outInner : out.size());
    if (nextElement(content, 0) != std::string_view::npos) underWay_.content() += content;
    out.resize(open.outBegin);
  }
  part_.output.leaveOutTo(endTag.end);
  opens_.popParagraph();
  opens_.loseText();
}

}  // namespace pluvo::docx
