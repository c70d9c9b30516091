#include "paragraph_ends.h"

#include "base/ascii.h"
#include "new_text.h"

#include <string>

namespace pluvo::formats::html {

namespace {

bool hasBytes(const Piece& mark) { return mark.kind == Piece::Kind::character; }
bool hasLook(const Piece& mark) { return mark.colour != 0 || mark.isHidden || mark.isDeleted; }

}  // namespace

void ParagraphEnds::begin() { isDue_ = afterSection_ = wasDivided_ = false; }

void ParagraphEnds::take(const Piece& mark) {
  writeDue();
  isDue_ = true;
  due_ = mark;
  // What the block says need not be said again.
  due_.isHidden = mark.isHidden && !line_.place.block.hidden;
  due_.isDeleted = mark.isDeleted && !line_.place.block.deleted;
}

void ParagraphEnds::passSection() {
  line_.isOpen = false;
  afterSection_ = true;
}

bool ParagraphEnds::isDueAsItWas() const {
  return isDue_ && hasBytes(due_) && due_.isOld && due_.colour == due_.colourWas;
}

void ParagraphEnds::copyDue() {
  if (isDue_) {
    line_.wrote(false);
    line_.endsInLineEnd = true;
  }
  isDue_ = false;
}

void ParagraphEnds::writeDue() {
  if (!isDue_) return;
  isDue_ = false;
  if (line_.keepsBlanks(due_.inlines)) return writeDueLineEnd();
  divide();
  line_.isOpen = false;
  line_.folds = true;
  line_.isClean = line_.isBeside = line_.afterInvalid = false;
}

void ParagraphEnds::writeDueLineEnd() {
  Markup& markup = line_.markup;
  const bool isOld = hasBytes(due_) && due_.isOld;
  const bool wasClean = line_.isClean;
  if (isOld && line_.canCopy()) {
    markup.copyWithTags(due_.bytes.begin, due_.here);
  } else if (isOld) {
    markup.leaveOutTo(due_.bytes.begin);
  }
  if (isOld && due_.colour == line_.stateOf(due_.here).colour) {
    markup.leadBack(due_.here);
    line_.isClean = wasClean;
  } else {
    markup.leadTo(due_.inlines, due_.colour);
    line_.isClean = isOld && wasClean;
  }
  if (line_.atPreStart && markup.isAtBegin()) markup.put("\n");
  if (isOld) {
    markup.copyTo(due_.bytes.end);
  } else {
    markup.put("\n");
  }
  line_.wrote(false);
  line_.endsInLineEnd = true;
  line_.isBeside = isOld;
}

/// Writes the look of a mark: an empty element of Word's, which programs pass by.
void ParagraphEnds::putLook(std::int32_t inlines) {
  if (!hasLook(due_)) return;
  const State state = line_.stateOf(inlines);
  if (state.hidden == due_.isHidden && state.deleted == due_.isDeleted) {
    line_.markup.leadTo(inlines, due_.colour);
    line_.markup.put("<o:p></o:p>");
  } else {
    // Within a highlight it would have its colour.
    line_.markup.leadTo(inlines, 0);
    line_.markup.put(markLook(due_.colour, due_.isHidden, due_.isDeleted));
  }
}

/// A paragraph without text where there would be none.
void ParagraphEnds::putEmpty() {
  std::int32_t around = line_.place.inlinesFrom;
  if (!due_.isDeleted && !line_.place.block.deleted)
    around = line_.markup.outside(around, [](const Inline& element) { return element.state.deleted; });
  line_.markup.closeTo(around);
  line_.markup.put("<p style=\"margin:0\">");
  if (hasLook(due_)) line_.markup.put(markLook(due_.colour, due_.isHidden, due_.isDeleted));
  line_.markup.put("</p>");
}

/// Ends the paragraph at hand, and begins one that looks like it.
void ParagraphEnds::divide() {
  const Place& place = line_.place;
  Markup& markup = line_.markup;
  const bool dividesBlock = place.dividesBlock && !afterSection_;
  wasDivided_ = true;
  const bool isOwned = (traitsOf(place.block.name) & kExistsEmpty) != 0;
  const bool isThere = line_.isOpen || (dividesBlock && isOwned);
  if (isThere) {
    putLook(due_.inlines);
  } else {
    putEmpty();
  }
  if (!dividesBlock) {
    markup.closeTo(place.inlinesFrom);
    if (isThere) markup.put("<div></div>");
    return;
  }
  markup.closeTo(place.block.inlineTop);
  markup.put("</" + std::string(markup.old(place.block.tagName)) + ">");
  markup.put(copyOf(markup.old(place.block.tag)));
}

void ParagraphEnds::finish() {
  const Place& place = line_.place;
  Markup& markup = line_.markup;
  if (!isDue_) {
    if (line_.canCopy()) return;
    markup.leadBack(place.inlinesTo);
    return markup.leaveOutTo(place.to);
  }
  const bool isAlone = !place.onlyAlone || !wasDivided_;
  const bool isThere = line_.isOpen || (place.existsEmpty && isAlone && !afterSection_);
  const bool isOldEnd = due_.kind == Piece::Kind::mark && due_.isOld && due_.colour == due_.colourWas;
  const bool keepsColour = !hasLook(due_) || line_.isBeside;
  if (isThere && isOldEnd && keepsColour && line_.canCopy() && !line_.endsInLineEnd) return;
  if (isThere) {
    putLook(due_.inlines);
  } else {
    putEmpty();
  }
  markup.leadBack(place.inlinesTo);
  const std::string_view after = line_.page.bytes().substr(place.to, 2 + place.block.tagName.size());
  const bool isPreEnd = (traitsOf(place.block.name) & kPreformatted) != 0 && after.starts_with("</") &&
                        base::equalsIgnoringAsciiCase(after.substr(2), markup.old(place.block.tagName));
  if (line_.endsInLineEnd && isPreEnd) markup.put("\n");
  markup.leaveOutTo(place.to);
}

}  // namespace pluvo::formats::html
