#include "reader.h"

#include "errors/document_error.h"

#include <algorithm>

namespace pluvo::formats::html {

using document::ContentBuilder;
using document::Look;
using document::Restriction;
using errors::DocumentError;
using errors::Problem;
using Kind = Character::Kind;

namespace {

constexpr std::size_t kMostExpected = std::size_t{256} << 20U;

/// Builds a text from what a walk meets. Whether a mark ends a paragraph or a cell is known when the next
/// thing comes.
class TextReader final : public Events {
 public:
  TextReader(const Page& page, Extent part) : page_(page), walker_(page, *this, part) {
    builder_.expect(std::min(part.size() + 1, kMostExpected));
  }

  ReadText read() {
    walker_.walk();
    ReadText read{builder_.finish(), std::move(map_)};
    read.map.highlight = read.content.highlight;
    return read;
  }

  void text(Extent bytes) override {
    settleMark();
    count(bytes.size());
    builder_.appendAscii(page_.bytes().substr(bytes.begin, bytes.size()), look());
    releaseSometimes(bytes.end);
  }
  void character(const Character& character) override;
  void paragraphEnds(const Paragraph& paragraph) override {
    if (!paragraph.hasMark) return;
    settleMark();
    isMarkDue_ = true;
    dueLook_ = {walker_.isMarkHidden(), walker_.markState().colour, walker_.markState().deleted,
                document::kNone, lockHere()};
    count(1);
  }
  void blockEnds(const Block& block, Extent /*endTag*/) override {
    if (!isCell(block.name) || !isMarkDue_) return;
    builder_.cellMark(dueLook_);
    isMarkDue_ = false;
  }
  void tableBegins(const Block& /*table*/) override {
    settleMark();
    builder_.beginTable();
    openTables_.push_back(map_.tables.size());
    map_.tables.push_back({builder_.length(), builder_.length()});
  }
  void rowEnds() override {
    builder_.rowMark();
    count(1);
  }
  void tableEnds(Extent /*endTag*/, bool /*isBroken*/) override {
    builder_.endTable();
    map_.tables[openTables_.back()].to = builder_.length();
    openTables_.pop_back();
  }
  void end(std::size_t at) override;

 private:
  Look look() {
    const State& state = walker_.state();
    return {walker_.isHidden(), state.colour, state.deleted, document::kNone, lockHere()};
  }

  std::int8_t lockHere() {
    if (!walker_.isLocked()) return static_cast<std::int8_t>(document::kNone);
    if (lock_ == document::kNone)
      lock_ = builder_.addRestriction(
          {Restriction::Of::change,
           "The text stands between the cells of a table, or where a page has no markup, and cannot be "
           "changed there; save the page in a word processor first."});
    return lock_;
  }

  void settleMark() {
    if (!isMarkDue_) return;
    isMarkDue_ = false;
    builder_.append(text::kParagraphMark, dueLook_);
  }

  void count(std::size_t units) {
    constexpr std::size_t kMost = static_cast<std::size_t>(text::kMaxLength) / 2;
    length_ += units;
    if (length_ > kMost)
      throw DocumentError(Problem::tooLarge, "The page has more than 1,073,741,823 characters; divide it.");
  }

  void releaseSometimes(std::size_t at) {
    constexpr std::size_t kHeld = std::size_t{8} << 20U;
    if (at - released_ < kHeld) return;
    page_.release();
    released_ = at;
  }

  [[noreturn]] static void refuseField() {
    throw DocumentError(Problem::damaged,
                        "The page begins a field that does not end where it should; open it in a word "
                        "processor and save it again.");
  }
  void field(const Character& character);

  const Page& page_;
  Walker walker_;
  ContentBuilder builder_;
  TextMap map_;
  std::vector<std::size_t> openTables_;
  std::vector<std::size_t> fieldDepths_;  ///< how many blocks were open where each field began
  std::int8_t lock_ = static_cast<std::int8_t>(document::kNone);
  bool isMarkDue_ = false;
  Look dueLook_;
  std::size_t length_ = 0;
  std::size_t released_ = 0;
};

void TextReader::character(const Character& character) {
  settleMark();
  count(character.count);
  switch (character.kind) {
    case Kind::section:
      return builder_.sectionMark(look());
    case Kind::fieldBegin:
    case Kind::fieldSeparator:
    case Kind::fieldEnd:
      return field(character);
    default:
      break;
  }
  Look now = look();
  // Nobody sees where a comment is anchored, so a text is found across it.
  if (character.units[0] == text::kCommentReference && character.count == 1) now.hidden = true;
  for (std::size_t i = 0; i < character.count; ++i) builder_.append(character.unit(i), now);
}

void TextReader::field(const Character& character) {
  if (character.kind == Kind::fieldBegin) {
    if (builder_.openFields() == ContentBuilder::kDeepest) refuseField();
    fieldDepths_.push_back(openTables_.size());
    return builder_.beginField(look());
  }
  const bool isSeparator = character.kind == Kind::fieldSeparator;
  if (fieldDepths_.empty() || fieldDepths_.back() != openTables_.size()) refuseField();
  if (isSeparator ? !builder_.separateField(look()) : !builder_.endField(look())) refuseField();
  if (!isSeparator) fieldDepths_.pop_back();
}

void TextReader::end(std::size_t /*at*/) {
  if (builder_.openFields() > 0) refuseField();
  if (isMarkDue_) return settleMark();
  Look last;
  const bool isShut = walker_.endsUnfinished();
  last.restriction = builder_.addRestriction(
      {isShut ? Restriction::Of::change : Restriction::Of::highlight,
       isShut ? "The page ends within markup, and no text can be put behind that; save it in a word "
                "processor first."
              : "The end of the page has no place for a highlight."});
  builder_.append(text::kParagraphMark, last);
  map_.endsWithoutBytes = true;
}

}  // namespace

ReadText readText(const Page& page, Extent part) { return TextReader(page, part).read(); }

}  // namespace pluvo::formats::html
