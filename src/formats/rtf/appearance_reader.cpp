#include "appearance_reader.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

namespace pluvo::rtf {

using formats::Appearance;
using text::Position;
using Kind = Character::Kind;

namespace {

/// Gathers the looks of a paragraph's characters, to which those of the paragraph come at its mark.
class AppearanceReader final : public Events {
 public:
  AppearanceReader(std::string_view file, const TextMap& map)
      : file_(file), map_(map), walker_(file, *this) {}

  text::RunMap<Appearance> read() {
    walker_.walk();
    return std::move(looks_);
  }

  void text(Extent bytes) override { add(static_cast<Position>(bytes.end - bytes.begin)); }

  void character(const Character& character) override {
    if (character.kind == Kind::row && nextOddity_ < map_.oddities.size() &&
        map_.oddities[nextOddity_].token == character.bytes.begin) {
      if (map_.oddities[nextOddity_++].kind == Oddity::Kind::noRow) return;
      add(1);
    }
    add(character.units());
    switch (character.kind) {
      case Kind::cell:
        endParagraph(character.depth == 1 ? cellWidth(cell_++) : std::uint16_t{0});
        break;
      case Kind::row:
        endParagraph(0);
        if (character.depth == 1) cell_ = 0;
        break;
      case Kind::section:
        endParagraph(0);
        break;
      case Kind::paragraph:
        endParagraph(character.depth == 1 ? cellWidth(cell_) : std::uint16_t{0});
        break;
      default:
        break;
    }
  }

  void word(const Token& token) override {
    switch (token.word) {
      case Word::trowd:
        edges_.clear();
        left_ = 0;
        break;
      case Word::trleft:
        left_ = token.number;
        break;
      case Word::cellx:
        if (edges_.size() < kMostCells) edges_.push_back(token.number);
        break;
      default:
        break;
    }
  }

  void group(const SkippedGroup& group) override {
    if (group.word == Word::stylesheet) styles(group);
    // A list of an old kind has its number here.
    if (group.word == Word::label) hasLabel_ = true;
  }

  void end(std::size_t) override {
    if (map_.endsWithoutBytes) add(1);
    endParagraph(0);
  }

 private:
  static constexpr std::size_t kMostCells = 1000;

  void add(Position count) {
    const State& state = walker_.state();
    Appearance look;
    look.bold = state.bold;
    look.italic = state.italic;
    look.underlined = state.underlined;
    look.struck = state.struck;
    look.inserted = state.inserted;
    if (!paragraph_.empty() && paragraph_.back().look == look) {
      paragraph_.back().count += count;
    } else {
      paragraph_.push_back({look, count});
    }
  }

  /// The widths of a row that is defined before its cells.
  std::uint16_t cellWidth(std::size_t cell) const {
    if (cell >= edges_.size()) return 0;
    const std::int64_t from = cell == 0 ? left_ : edges_[cell - 1];
    return static_cast<std::uint16_t>(std::clamp<std::int64_t>(edges_[cell] - from, 0, 0xFFFF));
  }

  void endParagraph(std::uint16_t width) {
    const State& state = walker_.state();
    for (const Run& run : paragraph_) {
      Appearance look = run.look;
      if (state.outlineLevel < State::kNoOutline) {
        look.heading = static_cast<std::uint8_t>(state.outlineLevel + 1);
      } else if (const auto found = headings_.find(state.style);
                 found != headings_.end() && state.style > 0) {
        look.heading = found->second;
      }
      look.alignment = state.alignment;
      look.rightToLeft = state.rightToLeft;
      if (state.list > 0 || hasLabel_) look.listLevel = static_cast<std::uint8_t>(state.listLevel + 1);
      look.cellWidth = width;
      looks_.append(run.count, look);
    }
    paragraph_.clear();
    hasLabel_ = false;
  }

  /// Styles that are named "heading 1" to "heading 9".
  void styles(const SkippedGroup& group) {
    Tokens tokens(file_.substr(0, group.bytes.end), group.inside);
    std::int32_t number = 0;
    for (Token token = tokens.next(); token.kind != Token::Kind::end; token = tokens.next()) {
      if (token.kind == Token::Kind::open) number = 0;
      if (token.kind == Token::Kind::word && token.word == Word::s) number = token.number;
      if (token.kind != Token::Kind::text || number == 0) continue;
      constexpr std::string_view kName = "heading ";
      std::string name(file_.substr(token.extent.begin, token.extent.end - token.extent.begin));
      if (name.size() <= kName.size()) continue;
      name.front() = 'h';
      const char level = name[kName.size()];
      if (name.starts_with(kName) && level >= '1' && level <= '9')
        headings_[number] = static_cast<std::uint8_t>(level - '0');
    }
  }

  struct Run {
    Appearance look;
    Position count = 0;
  };

  std::string_view file_;
  const TextMap& map_;
  Walker walker_;
  text::RunMap<Appearance> looks_;
  std::vector<Run> paragraph_;
  bool hasLabel_ = false;
  std::unordered_map<std::int32_t, std::uint8_t> headings_;
  std::vector<std::int32_t> edges_;
  std::int64_t left_ = 0;
  std::size_t cell_ = 0;
  std::size_t nextOddity_ = 0;
};

}  // namespace

text::RunMap<Appearance> readAppearance(std::string_view file, const TextMap& map) {
  return AppearanceReader(file, map).read();
}

}  // namespace pluvo::rtf
