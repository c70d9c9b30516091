#include "reader.h"

#include "damage.h"

#include <algorithm>
#include <utility>

namespace pluvo::doc {

using document::ContentBuilder;
using document::Look;
using text::Position;

namespace {

/// Stands for a mark that belongs to no field.
constexpr char16_t kStrayMark = 0xFFFD;
constexpr char16_t kSymbol = u'(';
constexpr char16_t kShape = 8;

/// The restrictions of places that cannot be edited as others, in the order of their kinds.
constexpr std::array<std::pair<document::Restriction::Of, std::string_view>, 6> kSentences = {
    {{document::Restriction::Of::removal,
      "A drawing or a text box is anchored in this text, and would lose its place. Move or delete it in a "
      "word processor first, or leave this place out."},
     {document::Restriction::Of::removal,
      "A comment begins with a mark that it cannot do without. Leave this place out."},
     {document::Restriction::Of::removal,
      "The sections on both sides of this break have headers and footers of their own. Delete the break in a "
      "word processor, or leave this place out."},
     {document::Restriction::Of::change,
      "The mark of a field stands here without the rest of the field. Open the document in a word processor "
      "and save it again, or leave this place out."},
     {document::Restriction::Of::change,
      "The mark of a table's cell or row stands here outside all tables. Open the document in a word "
      "processor and save it again, or leave this place out."},
     {document::Restriction::Of::change,
      "The text breaks off here without the mark that should end it. Open the document in a word "
      "processor and save it again, or leave this place out."}}};

bool isFieldUnit(char16_t unit) { return unit >= text::kFieldBegin && unit <= text::kFieldEnd; }

/// No branch depends on the units.
bool haveFieldUnit(std::u16string_view units) {
  unsigned found = 0;
  for (const char16_t unit : units) found |= isFieldUnit(unit) ? 1U : 0U;
  return found != 0;
}

}  // namespace

TextReader::TextReader(Walker& walker, const document::Restriction* restriction) : walker_(walker) {
  odd_.fill(document::kNone);
  if (restriction != nullptr) restriction_ = builder_.addRestriction(*restriction);
}

document::Content TextReader::read(const StoryPlace& place) {
  const Position from = place.from;
  const Position to = place.to;
  kind_ = place.kind;
  builder_.expect(static_cast<std::size_t>(to - from) + 1);
  fieldMarks_ = walker_.fieldMarks(from, to);
  walker_.walk(from, to, *this);
  if (!runs_.empty()) {
    // The text breaks off without the mark that a story has.
    paragraphs_.push_back({Mark::paragraph, lookOf({}), 0, runsOfParagraph_});
    handOn();
  }
  handOn();
  goToDepth(0);
  Look last = lookOf({});
  if (!endsInMark_) restrict(Odd::end, last);
  if (!endsInMark_) builder_.append(text::kParagraphMark, last);
  document::Content content = builder_.finish();
  if (!endsInMark_) restrictEnd(content);
  return content;
}

/// A restriction of the whole text goes before.
void TextReader::restrict(Odd odd, Look& look) {
  if (restriction_ != document::kNone) return;
  std::int8_t& number = odd_[static_cast<std::size_t>(odd)];
  if (number == document::kNone) {
    const auto& [of, sentence] = kSentences[static_cast<std::size_t>(odd)];
    number = builder_.addRestriction({of, std::string(sentence)});
  }
  look.restriction = number;
}

/// As the mark is that the file does not have, so is the character before it.
void TextReader::restrictEnd(document::Content& content) {
  const Position mark = content.structure.length() - 1;
  if (mark == 0) return;
  document::Structure last = content.structure.valueAt(mark - 1);
  last.restriction = content.structure.valueAt(mark).restriction;
  content.structure.set(mark - 1, mark, last);
}

Look TextReader::lookOf(const CharacterLook& look) const {
  Look now;
  now.hidden = look.hidden;
  now.highlight = look.highlight;
  now.deleted = look.deleted;
  now.restriction = restriction_;
  return now;
}

void TextReader::text(Position at, std::u16string_view units, const CharacterLook& look) {
  if (look.special || haveFieldUnit(units)) return special(at, units, look);
  add(units, lookOf(look));
}

void TextReader::special(Position at, std::u16string_view units, const CharacterLook& look) {
  for (const char16_t unit : units) {
    Look now = lookOf(look);
    if (isFieldUnit(unit)) {
      const bool isMark = nextFieldMark_ < fieldMarks_.size() && fieldMarks_[nextFieldMark_].at == at;
      if (isMark) {
        ++nextFieldMark_;
        runs_.push_back({now, unit, 0});
        ++runsOfParagraph_;
      } else {
        now.hidden = now.hidden || look.special;
        if (look.special) restrict(Odd::field, now);
        add({&kStrayMark, 1}, now);
      }
    } else if (look.special && unit == kSymbol && look.symbol != 0) {
      add({&look.symbol, 1}, now);
    } else {
      // A comment's anchor is not visible, so a text is found across it.
      const bool isComment = look.special && unit == text::kCommentReference;
      now.hidden = now.hidden || isComment;
      if (isComment && kind_ == word::wdCommentsStory) restrict(Odd::comment, now);
      if (look.special && unit == kShape) restrict(Odd::shape, now);
      add({&unit, 1}, now);
    }
    ++at;
  }
}

void TextReader::add(std::u16string_view units, const Look& look) {
  const bool goesOn =
      runsOfParagraph_ > 0 && runs_.back().fieldMark == 0 && runs_.back().look.hidden == look.hidden &&
      runs_.back().look.highlight == look.highlight && runs_.back().look.deleted == look.deleted &&
      runs_.back().look.restriction == look.restriction;
  if (!goesOn) {
    runs_.push_back({look, 0, 0});
    ++runsOfParagraph_;
  }
  runs_.back().count += units.size();
  units_ += units;
}

void TextReader::mark(Position at, Mark mark, std::int32_t depth, const CharacterLook& look) {
  // The end of a row is nothing that has a look.
  Look now = lookOf(mark == Mark::row ? CharacterLook{} : look);
  if (mark == Mark::section && !walker_.mayLoseSection(at)) restrict(Odd::section, now);
  paragraphs_.push_back({mark, now, static_cast<std::size_t>(depth), runsOfParagraph_});
  runsOfParagraph_ = 0;
  const bool endsRow = mark == Mark::row && depth == 1;
  if (depth == 0 || endsRow) handOn();
}

/// Hands on the kept text.
void TextReader::handOn() {
  decideMarks();
  auto run = runs_.begin();
  for (const Paragraph& paragraph : paragraphs_) {
    goToDepth(paragraph.depth);
    for (std::size_t i = 0; i < paragraph.runs; ++i) play(*run++);
    playMark(paragraph);
  }
  units_.clear();
  runs_.clear();
  paragraphs_.clear();
  played_ = runsOfParagraph_ = 0;
}

/// From the end to the front: a paragraph lies in the deepest table of which a row ends after it. A row ends
/// with a mark of its own after that of its last cell.
void TextReader::decideMarks() {
  std::vector<std::size_t> ending;
  for (std::size_t i = paragraphs_.size(); i-- > 0;) {
    Paragraph& paragraph = paragraphs_[i];
    while (!ending.empty() && ending.back() > paragraph.depth) ending.pop_back();
    const bool isWithin = !ending.empty() && ending.back() == paragraph.depth;
    if (paragraph.mark == Mark::row) {
      const bool endsCell = i > 0 && paragraphs_[i - 1].mark == Mark::cell &&
                            paragraphs_[i - 1].depth == paragraph.depth && paragraph.runs == 0;
      if (!endsCell) paragraph.mark = Mark::paragraph;
      if (!endsCell) restrict(Odd::row, paragraph.look);
      if (endsCell && !isWithin) ending.push_back(paragraph.depth);
    } else if (paragraph.mark == Mark::cell && !isWithin) {
      paragraph.mark = Mark::paragraph;
      restrict(Odd::row, paragraph.look);
    }
    paragraph.depth = ending.size();
  }
}

void TextReader::goToDepth(std::size_t depth) {
  if (depth > ContentBuilder::kDeepest) throw damaged("tables lie in each other more than 1,000 deep");
  while (builder_.openTables() > depth) builder_.endTable();
  while (builder_.openTables() < depth) builder_.beginTable();
}

void TextReader::play(const Run& run) {
  switch (run.fieldMark) {
    case text::kFieldBegin:
      return builder_.beginField(run.look);
    case text::kFieldSeparator:
      builder_.separateField(run.look);
      return;
    case text::kFieldEnd:
      builder_.endField(run.look);
      return;
    default:
      builder_.append(std::u16string_view(units_).substr(played_, run.count), run.look);
      played_ += run.count;
      endsInMark_ = false;
  }
}

void TextReader::playMark(const Paragraph& paragraph) {
  endsInMark_ = false;
  switch (paragraph.mark) {
    case Mark::cell:
      return builder_.cellMark(paragraph.look);
    case Mark::row:
      return builder_.rowMark(paragraph.look);
    case Mark::section:
      return builder_.sectionMark(paragraph.look);
    default:
      builder_.append(text::kParagraphMark, paragraph.look);
      endsInMark_ = paragraph.depth == 0;
  }
}

}  // namespace pluvo::doc
