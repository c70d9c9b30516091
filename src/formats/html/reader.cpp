#include "reader.h"

#include "errors/document_error.h"
#include "fields.h"
#include "story_parts.h"

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

/// Builds a text from the events of a walk. Whether a mark ends a paragraph or a cell is known when the next
/// thing comes.
class TextReader final : public Events {
 public:
  TextReader(const Page& page, const Part& part)
      : page_(page), walker_(page, *this, part), ownsSheet_(part.sheet == nullptr) {
    builder_.expect(std::min(part.bytes.size() + 1, kMostExpected));
  }

  bool metFields() const { return metFields_; }

  ReadText read() {
    walker_.walk();
    ReadText read{builder_.finish(), std::move(map_), std::move(beside_), {}};
    if (ownsSheet_) read.sheet = std::move(walker_.sheet());
    read.map.highlight = read.content.highlight;
    return read;
  }

  void text(Extent bytes) override {
    appendDueMark();
    count(bytes.size());
    builder_.appendAscii(page_.bytes().substr(bytes.begin, bytes.size()), look());
    releaseSometimes(bytes.end);
  }
  void character(const Character& character) override;
  void aside(Aside kind, Extent bytes) override {
    if (holdsStories(kind)) beside_.holders.emplace_back(kind, bytes);
  }
  void paragraphEnds(const Paragraph& paragraph) override {
    if (!paragraph.hasMark) return;
    appendDueMark();
    isMarkDue_ = true;
    dueLook_ = {walker_.isMarkHidden(), walker_.markState().colour, walker_.isMarkDeleted(), document::kNone,
                restrictionHere()};
    count(1);
  }
  void blockEnds(const Block& block, Extent /*endTag*/) override {
    if (!isCell(block.name) || !isMarkDue_) return;
    builder_.cellMark(dueLook_);
    isMarkDue_ = false;
  }
  void tableBegins(const Block& /*table*/, std::size_t /*firstCell*/) override {
    appendDueMark();
    builder_.beginTable();
    openTables_.push_back(map_.tables.size());
    map_.tables.push_back({builder_.length(), builder_.length()});
  }
  void rowEnds() override {
    builder_.rowMark();
    count(1);
  }
  void tableEnds(Extent /*endTag*/, bool /*isWhole*/) override {
    builder_.endTable();
    map_.tables[openTables_.back()].to = builder_.length();
    openTables_.pop_back();
  }
  void end(std::size_t at) override;

 private:
  Look look() {
    const State& state = walker_.state();
    return {walker_.isHidden(), state.colour, state.deleted, document::kNone, restrictionHere()};
  }

  std::int8_t restrictionHere() {
    if (walker_.isLocked()) return lockHere();
    if (!walker_.block().deleted) return static_cast<std::int8_t>(document::kNone);
    if (deletion_ == document::kNone)
      deletion_ = builder_.addRestriction(
          {Restriction::Of::living,
           "The paragraphs there are marked as deleted all together, and only deleted text can join them; "
           "accept or reject the deletion in a word processor first."});
    return deletion_;
  }

  std::int8_t lockHere() {
    if (lock_ == document::kNone)
      lock_ = builder_.addRestriction(
          {Restriction::Of::change,
           "The text stands between the cells of a table, or where a page has no markup, and cannot be "
           "changed there; save the page in a word processor first."});
    return lock_;
  }

  void appendDueMark() {
    if (!isMarkDue_) return;
    isMarkDue_ = false;
    // Nothing may join raw text.
    if (walker_.isRaw()) dueLook_.restriction = lockHere();
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

  void field(const Character& character);

  const Page& page_;
  Walker walker_;
  bool ownsSheet_;
  bool metFields_ = false;
  ContentBuilder builder_;
  TextMap map_;
  std::vector<std::size_t> openTables_;
  FoundBeside beside_;
  std::int8_t lock_ = static_cast<std::int8_t>(document::kNone);
  std::int8_t deletion_ = static_cast<std::int8_t>(document::kNone);
  bool isMarkDue_ = false;
  Look dueLook_;
  std::size_t length_ = 0;
  std::size_t released_ = 0;
};

void TextReader::character(const Character& character) {
  appendDueMark();
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
  if (character.count == 1 && character.units[0] == text::kNoteReference)
    beside_.noteReferences.emplace_back(builder_.length(), character.bytes);
  if (character.count == 1 && character.units[0] == text::kCommentReference) {
    // A comment's anchor is not visible, so a text is found across it.
    now.hidden = true;
    beside_.commentPlaces.push_back(builder_.length());
  }
  for (std::size_t i = 0; i < character.count; ++i) builder_.append(character.unit(i), now);
}

void TextReader::field(const Character& character) {
  metFields_ = true;
  if (character.kind == Kind::fieldSeparator) {
    builder_.separateField(look());
  } else if (character.kind == Kind::fieldEnd) {
    builder_.endField(look());
  } else {
    if (builder_.openFields() == ContentBuilder::kDeepest)
      throw DocumentError(Problem::tooLarge,
                          "The page nests fields more than 1,000 deep; it cannot be worked on.");
    builder_.beginField(look());
  }
}

void TextReader::end(std::size_t /*at*/) {
  if (isMarkDue_) return appendDueMark();
  Look last;
  last.restriction = walker_.isLocked()
                         ? lockHere()
                         : builder_.addRestriction({Restriction::Of::highlight,
                                                    "The end of the page has no place for a highlight."});
  builder_.append(text::kParagraphMark, last);
  map_.endsWithoutBytes = true;
}

}  // namespace

ReadText readText(const Page& page, Part part) {
  TextReader reader(page, part);
  ReadText read = reader.read();
  if (!reader.metFields()) return read;
  std::vector<std::size_t> strays = strayFieldMarks(page, part);
  if (strays.empty()) return read;
  part.strays = &strays;
  read = TextReader(page, part).read();
  read.map.strays = std::move(strays);
  return read;
}

}  // namespace pluvo::formats::html
