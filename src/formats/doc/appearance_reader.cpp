#include "appearance_reader.h"

#include "base/little_endian.h"
#include "walker.h"

#include <algorithm>
#include <vector>

namespace pluvo::doc {

using formats::Appearance;
using text::Position;

namespace {

/// Gathers the looks of a row's characters, to which the widths of cells come at its end.
class AppearanceReader final : public Events {
 public:
  explicit AppearanceReader(const Text& text) : walker_(text) {}

  text::RunMap<Appearance> read(Position from, Position to, Position length) {
    walker_.walk(from, to, *this);
    endRow({});
    if (looks_.length() < length) looks_.append(length - looks_.length(), {});
    return std::move(looks_);
  }

  void text(Position, std::u16string_view units, const CharacterLook& look) override {
    add(static_cast<Position>(units.size()), look);
  }

  void mark(Position, Mark mark, std::int32_t depth, const CharacterLook& look) override {
    add(1, look);
    if (depth == 0) return endRow({});
    if (depth > 1) return;
    if (mark == Mark::cell) ++cell_;
    if (mark == Mark::row) endRow(walker_.paragraph().rowDefinition);
  }

 private:
  struct Run {
    Appearance look;
    Position count = 0;
    std::size_t cell = 0;
    bool isOuter = false;  ///< its paragraph lies in no table within the row
  };

  void add(Position count, const CharacterLook& look) {
    Appearance now;
    now.bold = look.bold;
    now.italic = look.italic;
    now.underlined = look.underlined;
    now.struck = look.struck;
    now.inserted = look.inserted;
    const ParagraphLook& paragraph = walker_.paragraph();
    if (paragraph.outlineLevel < ParagraphLook::kNoOutline)
      now.heading = static_cast<std::uint8_t>(paragraph.outlineLevel + 1);
    constexpr std::uint8_t kLevels = 9;
    if (paragraph.list != 0 && paragraph.list <= kMostLists && paragraph.listLevel < kLevels)
      now.listLevel = static_cast<std::uint8_t>(paragraph.listLevel + 1);
    now.alignment = paragraph.alignment;
    now.rightToLeft = paragraph.rightToLeft;
    const bool isInOuter = paragraph.inTable && paragraph.depth <= 1 && !paragraph.rowEnd;
    row_.push_back({now, count, cell_, isInOuter});
  }

  /// A count of cells, and the edges around them from left to right.
  static std::uint16_t widthOf(base::ByteSpan row, std::size_t cell) {
    if (row.empty() || cell >= row[0] || (cell + 2) * 2 + 1 > row.size()) return 0;
    const auto edge = [&](std::size_t i) { return static_cast<std::int16_t>(base::get16(row, 1 + i * 2)); };
    return static_cast<std::uint16_t>(std::clamp(edge(cell + 1) - edge(cell), 0, 0xFFFF));
  }

  void endRow(base::ByteSpan row) {
    for (Run& run : row_) {
      if (run.isOuter) run.look.cellWidth = widthOf(row, run.cell);
      looks_.append(run.count, run.look);
    }
    row_.clear();
    cell_ = 0;
  }

  static constexpr std::uint16_t kMostLists = 0x7FE;

  Walker walker_;
  text::RunMap<Appearance> looks_;
  std::vector<Run> row_;
  std::size_t cell_ = 0;
};

}  // namespace

text::RunMap<Appearance> readAppearance(const Text& text, Position from, Position to, Position length) {
  return AppearanceReader(text).read(from, to, length);
}

}  // namespace pluvo::doc
