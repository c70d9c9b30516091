#include "new_text_writer.h"

#include "base/little_endian.h"
#include "new_properties.h"
#include "properties.h"

#include <algorithm>
#include <array>

namespace pluvo::doc {

using document::Step;
using text::Position;

namespace {

constexpr std::size_t kLongestCharacters = 255;
constexpr std::size_t kLongestParagraph = 480;

}  // namespace

/// The properties of a character over those of its paragraph's style, as ordinary text takes them over.
NewTextWriter::Characters NewTextWriter::charactersAt(Position at, bool deleted) {
  const Piece& piece = pieceAt(at);
  const FormattedPages::Run run = text_.characters.at(piece.offsetOf(at), characterPlace_);
  Characters found{forNewCharacters(run.properties, deleted), {}};
  std::array<std::uint8_t, 3> room{};
  const std::string own = forNewCharacters(text_.pieces.properties(piece.prm, room), deleted);
  // Room for a highlight and a deletion.
  if (found.properties.size() + own.size() + 6 <= kLongestCharacters) {
    found.properties += own;
  } else {
    found.ofPiece = own;
  }
  return found;
}

/// Of the paragraph with this mark, for a new one.
NewText::Paragraph NewTextWriter::paragraphAt(Position mark, std::int32_t* depth) {
  const Piece& piece = pieceAt(mark);
  const FormattedPages::Run run = text_.paragraphs.at(piece.offsetOf(mark), paragraphPlace_);
  std::array<std::uint8_t, 3> room{};
  const base::ByteSpan own = text_.pieces.properties(piece.prm, room);
  ParagraphLook look;
  apply(run.properties, text_.data, look);
  apply(own, text_.data, look);
  *depth = look.inTable || look.depth > 0 ? std::max(look.depth, 1) : 0;
  NewText::Paragraph found{run.style, forNewParagraph(run.properties)};
  const std::string more = forNewParagraph(own);
  if (found.properties.size() + more.size() <= kLongestParagraph) found.properties += more;
  return found;
}

/// The mark of the old paragraph in which a character lies. Asked for front to back.
Position NewTextWriter::markAt(Position at) {
  if (at >= paragraph_.from && at < paragraph_.to) return paragraph_.to - 1;
  const Position mark = std::min(walker_.nextMark(at, place_.to), place_.to - 1);
  paragraph_ = {at, mark + 1};
  return mark;
}

std::int32_t NewTextWriter::depthAt(Position edited) const {
  std::int32_t depth = 0;
  for (std::int32_t table = story_.structure().valueAt(edited).table; table != document::kNone;
       table = story_.tables()[static_cast<std::size_t>(table)].parent)
    ++depth;
  return depth;
}

void NewTextWriter::put(const Step& step, NewPieces& pieces) {
  const Position beside = place_.from + step.original;
  const Position before = beside + (step.after ? 1 : 0);
  const bool deleted = story_.structure().valueAt(step.at).deleted;
  const Characters characters = charactersAt(beside, deleted);

  std::int32_t depth = 0;
  const NewText::Paragraph rest = paragraphAt(markAt(std::min(before, place_.to - 1)), &depth);
  NewText::Paragraph ended = rest;
  const std::size_t firstMark = step.units.find(text::kParagraphMark);
  if (firstMark != step.units.npos) {
    const std::int32_t wanted = depthAt(step.at + static_cast<Position>(firstMark));
    if (depth != wanted && before != beside) ended = paragraphAt(markAt(beside), &depth);
    if (depth != wanted) ended.properties = atDepth(ended.properties, wanted);
  }

  const std::uint32_t offset = newText_.begin(firstMark != step.units.npos ? ended : rest);
  const auto addUnits = [&](std::u16string_view units, const std::string& properties) {
    for (std::size_t at = 0; at < units.size();) {
      const std::size_t end = std::min(units.find(text::kParagraphMark, at), units.size() - 1) + 1;
      newText_.add(units.substr(at, end - at), properties);
      if (units[end - 1] == text::kParagraphMark) newText_.endParagraph(ended);
      at = end;
    }
  };
  Position at = step.at;
  for (const auto& run : story_.highlight().runs(step.at, step.at + step.length)) {
    std::string properties = characters.properties;
    if (deleted) properties += std::string{'\0', '\x08', '\1'};
    if (run.value != 0 || text_.styles.haveHighlight()) properties += highlightProperty(run.value);
    addUnits(step.units.substr(static_cast<std::size_t>(at - step.at),
                               static_cast<std::size_t>(run.to - run.from)),
             properties);
    at = run.to;
  }
  if (step.units.back() != text::kParagraphMark) newText_.endWithin(rest);
  pieces.put(before, offset, step.length, characters.ofPiece, firstMark != step.units.npos);
}

}  // namespace pluvo::doc
