#include "reader.h"

#include "damage.h"

namespace pluvo::doc {

using document::ContentBuilder;
using document::Look;
using text::Position;

namespace {

/// Stands for a mark that belongs to no field.
constexpr char16_t kStrayMark = 0xFFFD;
constexpr char16_t kSymbol = u'(';

bool isFieldUnit(char16_t unit) { return unit >= text::kFieldBegin && unit <= text::kFieldEnd; }

/// No branch depends on what the units are.
bool haveFieldUnit(std::u16string_view units) {
  unsigned found = 0;
  for (const char16_t unit : units) found |= isFieldUnit(unit) ? 1U : 0U;
  return found != 0;
}

}  // namespace

TextReader::TextReader(Walker& walker, const document::Restriction* restriction) : walker_(walker) {
  if (restriction != nullptr) restriction_ = builder_.addRestriction(*restriction);
}

document::Content TextReader::read(Position from, Position to) {
  builder_.expect(static_cast<std::size_t>(to - from) + 1);
  fieldMarks_ = walker_.fieldMarks(from, to);
  walker_.walk(from, to, *this);
  if (!runs_.empty()) {
    // The text breaks off without the mark that a story has.
    paragraphs_.push_back({Mark::paragraph, lookOf({}), 0, runsOfParagraph_});
    settle();
  }
  settle();
  goToDepth(0);
  if (!endsInMark_) builder_.append(text::kParagraphMark, lookOf({}));
  return builder_.finish();
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
        add({&kStrayMark, 1}, now);
      }
    } else if (look.special && unit == kSymbol && look.symbol != 0) {
      add({&look.symbol, 1}, now);
    } else {
      // Nobody sees where a comment is anchored, so a text is found across it.
      now.hidden = now.hidden || (look.special && unit == text::kCommentReference);
      add({&unit, 1}, now);
    }
    ++at;
  }
}

void TextReader::add(std::u16string_view units, const Look& look) {
  const bool goesOn =
      runsOfParagraph_ > 0 && runs_.back().fieldMark == 0 && runs_.back().look.hidden == look.hidden &&
      runs_.back().look.highlight == look.highlight && runs_.back().look.deleted == look.deleted;
  if (!goesOn) {
    runs_.push_back({look, 0, 0});
    ++runsOfParagraph_;
  }
  runs_.back().count += units.size();
  units_ += units;
}

void TextReader::mark(Position /*at*/, Mark mark, std::int32_t depth, const CharacterLook& look) {
  // The end of a row is nothing that has a look.
  const Look now = lookOf(mark == Mark::row ? CharacterLook{} : look);
  paragraphs_.push_back({mark, now, static_cast<std::size_t>(depth), runsOfParagraph_});
  runsOfParagraph_ = 0;
  const bool endsRow = mark == Mark::row && depth == 1;
  if (depth == 0 || endsRow) settle();
}

/// Hands on what is kept.
void TextReader::settle() {
  settleMarks();
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
void TextReader::settleMarks() {
  std::vector<std::size_t> ending;
  for (std::size_t i = paragraphs_.size(); i-- > 0;) {
    Paragraph& paragraph = paragraphs_[i];
    while (!ending.empty() && ending.back() > paragraph.depth) ending.pop_back();
    const bool isWithin = !ending.empty() && ending.back() == paragraph.depth;
    if (paragraph.mark == Mark::row) {
      const bool endsCell = i > 0 && paragraphs_[i - 1].mark == Mark::cell &&
                            paragraphs_[i - 1].depth == paragraph.depth && paragraph.runs == 0;
      if (!endsCell) paragraph.mark = Mark::paragraph;
      if (endsCell && !isWithin) ending.push_back(paragraph.depth);
    } else if (paragraph.mark == Mark::cell && !isWithin) {
      paragraph.mark = Mark::paragraph;
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
