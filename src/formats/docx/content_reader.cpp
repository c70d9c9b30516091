#include "content_reader.h"

#include <algorithm>
#include <utility>

namespace pluvo::docx {

namespace {

/// Most notes and comments are shorter.
constexpr std::size_t kLeastExpected = 512;
/// A part has more bytes than its text characters; a text that is longer than this costs a few copies.
constexpr std::size_t kMostExpected = std::size_t{32} << 20U;

}  // namespace

ContentReader::ContentReader(std::size_t size, const Styles& styles, Purpose purpose)
    : styles_(styles), builder_(purpose) {
  builder_.expect(std::clamp(size, kLeastExpected, kMostExpected));
}

ReadBody ContentReader::finish() { return {builder().finish(), std::move(map_)}; }

void ContentReader::open(const Tag& tag) {
  switch (tag.name) {
    case Name::p:
      flushMark();
      paragraph_ = {};
      inParagraph_ = true;
      if (walker_->opensBetweenBlocks()) map_.places.note(walker_->position(), tag.extent.begin);
      break;
    case Name::tbl:
      flushMark();
      builder().beginTable();
      openTables_.push_back(map_.tables.size());
      map_.tables.push_back({tag.extent.begin, 0});
      break;
    case Name::r:
      look_ = lookOf({});
      break;
    case Name::sdt:
      openControl(false);
      break;
    case Name::ruby:
      openControl(true);
      map_.guides.push_back({tag.extent.begin, walker_->position(), walker_->position()});
      hidesGuided_ = look_.hidden;
      break;
    case Name::del:
    case Name::moveFrom:
      ++deletions_;
      map_.hasDeletions = true;
      break;
    default:
      break;
  }
}

void ContentReader::control(const ControlProperties& properties) {
  document::Control& control = builder().control(control_);
  control.takesLineBreaks = control.takesLineBreaks || properties.plain;
  control.contentLocked = control.contentLocked || properties.contentLocked;
  control.deletionLocked = properties.deletionLocked;
}

void ContentReader::close(const Tag& tag, Extent) {
  switch (tag.name) {
    case Name::body:
      // The last mark is a paragraph's, even where the last paragraph ends a section.
      paragraph_.hasSection = false;
      flushMark();
      break;
    case Name::ruby:
      hidesGuided_ = false;
      map_.guides.back().to = walker_->position();
      control_ = builder().control(control_).parent;
      break;
    case Name::sdt:
      control_ = builder().control(control_).parent;
      break;
    case Name::del:
    case Name::moveFrom:
      --deletions_;
      break;
    case Name::tc:
      if (markPending_) builder().cellMark(markLook_);
      markPending_ = false;
      break;
    case Name::tbl:
      builder().endTable();
      map_.tables[openTables_.back()].end = walker_->position();
      openTables_.pop_back();
      break;
    default:
      break;
  }
}

void ContentReader::properties(Name kind, const Properties& properties) {
  if (kind == Name::pPr) {
    paragraph_ = properties;
  } else {
    look_ = lookOf(properties.look);
  }
}

void ContentReader::marker(const Marker& marker) {
  const Position position = walker_->position();
  if (marker.name == Name::commentRangeStart || marker.name == Name::commentRangeEnd) {
    map_.commentMarkers.push_back({position, marker.id});
  } else if (marker.name == Name::bookmarkStart) {
    openBookmarks_[marker.id] = map_.bookmarks.size();
    map_.bookmarks.push_back({marker.id, marker.label, position, position, false});
  } else if (marker.name == Name::bookmarkEnd) {
    const auto found = openBookmarks_.find(marker.id);
    if (found == openBookmarks_.end()) return;
    map_.bookmarks[found->second].to = position;
    map_.bookmarks[found->second].closed = true;
    openBookmarks_.erase(found);
  }
}

void ContentReader::nextRun(const Tag&, Extent, const Tag&, const Properties* properties) {
  look_ = lookOf(properties == nullptr ? RunLook{} : properties->look);
}

void ContentReader::nextText(const TextWay& way, std::string_view ascii) {
  if (way.closesParagraph) {
    if (paragraph_.hasSection) {
      paragraphMark({});
      flushMark();
    } else {
      gather("\r", lookOf(paragraph_.look).hidden);
    }
    paragraph_ = way.paragraph;
    inParagraph_ = true;
  }
  look_ = lookOf(way.run.look);
  gather(ascii, look_.hidden);
}

void ContentReader::gather(std::string_view ascii, bool isHidden) {
  if (isHidden != gatheredIsHidden_ || ascii.size() > gathered_.size() - gatheredSize_) addGathered();
  gatheredIsHidden_ = isHidden;
  if (ascii.size() > gathered_.size()) return add(ascii, isHidden);
  std::copy(ascii.begin(), ascii.end(), gathered_.begin() + static_cast<std::ptrdiff_t>(gatheredSize_));
  gatheredSize_ += ascii.size();
}

void ContentReader::addGathered() {
  add({gathered_.data(), std::exchange(gatheredSize_, 0)}, gatheredIsHidden_);
}

void ContentReader::add(std::string_view ascii, bool isHidden) {
  document::Look look;
  look.hidden = isHidden;
  builder_.appendAscii(ascii, look);
}

void ContentReader::text(const TextElement& element) {
  if (element.units.empty()) return builder().appendAscii(element.bytes, look_);
  builder().append(element.units, look_);
}

void ContentReader::character(char16_t unit, Extent, Name name, std::string_view reference) {
  if (!reference.empty()) map_.references.push_back({walker_->position(), name, std::string(reference)});
  if (unit == text::kFieldBegin) {
    builder().beginField(look_);
  } else if (unit == text::kFieldSeparator) {
    builder().separateField(look_);
  } else if (unit == text::kFieldEnd) {
    builder().endField(look_);
  } else {
    document::Look look = look_;
    // A comment's anchor is not visible, so a text is found across it.
    look.hidden = look.hidden || unit == text::kCommentReference;
    builder().append(unit, look);
  }
}

void ContentReader::formula(const Formula& formula) {
  builder().append(text::kPicture, lookOf(formula.look));
}

void ContentReader::simpleField(const Tag&, std::u16string_view instruction) {
  look_ = inAttribute();
  builder().beginField(look_);
  builder().append(instruction, look_);
  builder().separateField(look_);
}

void ContentReader::endSimpleField(Extent) { builder().endField(inAttribute()); }

void ContentReader::paragraphMark(Extent) {
  markPending_ = true;
  markLook_ = lookOf(paragraph_.look);
  inParagraph_ = false;
  map_.hasDeletions = map_.hasDeletions || markLook_.deleted;
}

void ContentReader::missingParagraph(Name container, Extent) {
  flushMark();
  if (container == Name::tc) {
    builder().cellMark(plainLook());
  } else {
    builder().append(text::kParagraphMark);
  }
}

void ContentReader::rowMark(Extent) { builder().rowMark(plainLook()); }

document::Look ContentReader::lookOf(const RunLook& look) const {
  return {styles_.hides(look, paragraph_.style) || hidesGuided_, look.highlight,
          deletions_ > 0 || look.deleted, control_};
}

document::Look ContentReader::inAttribute() {
  if (inAttribute_ == document::kNone)
    inAttribute_ = builder().addRestriction({document::Restriction::Of::highlight, {}});
  document::Look look = lookOf({});
  look.restriction = inAttribute_;
  return look;
}

document::Look ContentReader::plainLook() const { return {false, 0, false, control_}; }

void ContentReader::openControl(bool isGuided) {
  document::Control control;
  control.parent = control_;
  control.inlined = control.takesLineBreaks = inParagraph_;
  control.isGuided = isGuided;
  control_ = builder().addControl(control);
}

void ContentReader::flushMark() {
  if (!markPending_) return;
  markPending_ = false;
  if (paragraph_.hasSection) {
    map_.sectionMarks.push_back({paragraph_.whole.end, builder().length()});
    builder().sectionMark(markLook_);
  } else {
    builder().append(text::kParagraphMark, markLook_);
  }
}

}  // namespace pluvo::docx
