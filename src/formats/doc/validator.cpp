#include "validator.h"

#include "base/little_endian.h"
#include "defects.h"
#include "kept_bytes.h"
#include "page_checks.h"
#include "piece_text.h"
#include "plc.h"
#include "properties.h"
#include "table_checks.h"
#include "word_file.h"

#include <algorithm>
#include <optional>

namespace pluvo::doc {

using base::ByteSpan;
using base::get16;
using base::get32;
using text::Position;

namespace {

constexpr std::uint16_t kHasNoMark = 1, kDirty = 4;

class Validator {
 public:
  explicit Validator(const Text& text) : text_(text) {}

  Defects check() {
    checkBlock();
    facts_ = checkPages(text_, defects_);
    readGroups();
    for (std::size_t i = 0; i < text_.pieces.pieces().size(); ++i) checkPiece(i);
    checkLastMarks();
    checkTables(text_, facts_, fieldMarks_, defects_);
    return std::move(defects_);
  }

 private:
  void checkBlock() {
    constexpr std::size_t kCount = 0x20, kUsed = 0x40, kShorts = 14, kLongs = 22;
    const std::size_t shorts = get16(text_.document, kCount);
    if (shorts != kShorts || get16(text_.document, kCount + 2 + shorts * 2) != kLongs)
      defects_.note("information block has other counts than it must have", kCount);
    const std::size_t used = get32(text_.document, kUsed);
    std::size_t needed = 0;
    for (const Piece& piece : text_.pieces.pieces()) needed = std::max<std::size_t>(needed, piece.end());
    const auto addPage = [&](std::size_t at) { needed = std::max(needed, at + FormattedPages::kPage); };
    text_.characters.forEachPage(addPage);
    text_.paragraphs.forEachPage(addPage);
    if (used > text_.document.size() || used < needed)
      defects_.note("information block gives another length than the stream has", used);
  }

  /// Reads the groups before the pieces in their table, and finds where the pieces begin.
  void readGroups() {
    const ByteSpan table = text_.in(Table::pieces);
    std::size_t at = 0;
    for (; table[at] == 1; at += 3U + get16(table, at + 1)) {
      constexpr std::size_t kMost = 0x3FA2;
      const ByteSpan group = table.subspan(at + 3, get16(table, at + 1));
      if (group.size() > kMost || !areWhole(group))
        defects_.note("properties of pieces are cut off or too long", groups_);
      ++groups_;
    }
    elements_ = table.subspan(at + 5, get32(table, at + 1));
  }

  void checkPiece(std::size_t i) {
    const Piece& piece = text_.pieces.pieces()[i];
    const std::uint16_t flags = get16(Plc(elements_, 8).element(i), 0);
    if ((flags & kDirty) != 0) defects_.note("piece is marked as unfinished", i);
    if ((piece.prm & 1U) != 0 && piece.prm >> 1U >= groups_)
      defects_.note("piece names properties that there are not", i);
    if (piece.end() > facts_.charactersTo)
      defects_.note("piece has characters without formatting", i, 0,
                    (piece.end() - std::max(piece.offset, facts_.charactersTo)) / piece.width());
    checkMarks(piece, (flags & kHasNoMark) != 0);
    checkPictures(piece);
  }

  /// Paragraphs end at their marks, and nowhere else.
  void checkMarks(const Piece& piece, bool hasNoMark) {
    auto boundary = std::ranges::upper_bound(facts_.boundaries, piece.offset);
    const auto isSpecial = specialIn(piece);
    const auto skipTo = [&](std::uint32_t byte) {
      for (; boundary != facts_.boundaries.end() && *boundary < byte; ++boundary)
        defects_.note("paragraph ends without a mark", *boundary);
    };
    forEachControl(piece, text_.document, piece.from, piece.to, [&](Position at, char16_t unit) {
      const std::uint32_t byte = piece.offsetOf(at);
      const bool isField = unit >= text::kFieldBegin && unit <= text::kFieldEnd;
      if (isField && isSpecial.value_or(facts_.isSpecial(byte))) fieldMarks_.push_back({at, unit});
      const bool isMark = unit == text::kParagraphMark || unit == text::kCellMark;
      if (!isMark && unit != text::kPageBreak) return false;
      const std::uint32_t end = byte + piece.width();
      skipTo(end);
      const bool isBoundary = boundary != facts_.boundaries.end() && *boundary == end;
      while (boundary != facts_.boundaries.end() && *boundary == end) ++boundary;
      if (!isMark) return false;
      if (hasNoMark) defects_.note("piece has a paragraph mark that it says it has not", end);
      // After the last boundary there is nothing to compare.
      if (!isBoundary && boundary != facts_.boundaries.end())
        defects_.note("mark of a paragraph is not where its properties end", end);
      return false;
    });
    skipTo(piece.end() + 1);
  }

  /// Whether all characters of a piece are special, or none of them, whatever their pages say.
  std::optional<bool> specialIn(const Piece& piece) const {
    std::array<std::uint8_t, 3> room{};
    std::optional<bool> found;
    forEachProperty(text_.pieces.properties(piece.prm, room), [&](std::uint16_t property, ByteSpan operand) {
      if (property == code::kSpecial && !operand.empty()) found = operand[0] != 0;
    });
    return found;
  }

  /// Each character whose look names a picture stands for one.
  void checkPictures(const Piece& piece) {
    auto stretch = std::ranges::upper_bound(facts_.pictures, piece.offset, {}, &PageFacts::Stretch::to);
    for (; stretch != facts_.pictures.end() && stretch->from < piece.end(); ++stretch) {
      const std::uint32_t from = std::max(stretch->from, piece.offset);
      const std::uint32_t to = std::min(stretch->to, piece.end());
      for (std::uint32_t byte = from; byte < to; byte += piece.width()) {
        const std::uint8_t* const unit = text_.document.data() + byte;
        const char16_t found = piece.narrow ? char16_t{*unit} : wideAt(unit);
        if (found >= kControls || !facts_.isSpecial(byte))
          defects_.note("character stands for a picture and is none", byte);
      }
    }
  }

  void checkLastMarks() {
    const auto require = [&](Position end) {
      if (end <= 0 || unitAt(text_.pieces, text_.document, end - 1) != text::kParagraphMark)
        defects_.note("text does not end with a paragraph mark", static_cast<std::size_t>(end));
    };
    for (std::size_t i = 0; i < kParts; ++i) {
      const auto part = static_cast<Part>(i);
      if (part == Part::main || text_.fib.length(part) > 0)
        require(text_.fib.begin(part) + text_.fib.length(part));
    }
    require(text_.pieces.length());
  }

  const Text& text_;
  Defects defects_;
  PageFacts facts_;
  ByteSpan elements_;
  std::size_t groups_ = 0;
  std::vector<FieldMark> fieldMarks_;
};

}  // namespace

std::string firstNewDefect(const EditedStreams& original, const EditedStreams& edited) {
  try {
    const Text before(original.document, original.tables, original.data, 0);
    const Text after(edited.document, edited.tables, edited.data, 0);
    const Defects defects = Validator(after).check();
    // Few originals have any, so they are looked at only then.
    std::string found = defects.empty() ? "" : defects.firstBeyond(Validator(before).check());
    return found.empty() ? firstMoved(before, after) : found;
  } catch (const errors::DocumentError& broken) {
    return broken.what();
  }
}

}  // namespace pluvo::doc
