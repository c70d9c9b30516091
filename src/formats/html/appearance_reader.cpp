#include "appearance_reader.h"

#include "text/positions.h"

namespace pluvo::formats::html {

using formats::Appearance;
using text::Position;

namespace {

class AppearanceReader final : public Events {
 public:
  AppearanceReader(const Page& page, const Part& part) : walker_(page, *this, part) {}

  text::RunMap<Appearance> read(bool endsWithoutBytes) {
    walker_.walk();
    if (endsWithoutBytes) looks_.append(1, {});
    return std::move(looks_);
  }

  void text(Extent bytes) override { add(static_cast<Position>(bytes.size())); }
  void character(const Character& character) override { add(character.count); }
  void rowEnds() override { looks_.append(1, {}); }
  void paragraphEnds(const Paragraph& paragraph) override {
    if (paragraph.hasMark) add(1);
  }

 private:
  void add(Position count) {
    const State& state = walker_.state();
    Appearance look;
    look.bold = state.bold;
    look.italic = state.italic;
    look.underlined = state.underlined;
    look.struck = state.struck;
    look.inserted = state.inserted;
    const auto& blocks = walker_.blocks();
    for (auto block = blocks.rbegin(); block != blocks.rend() && !isCell(block->name); ++block) {
      if ((traitsOf(block->name) & kHeading) != 0)
        look.heading =
            static_cast<std::uint8_t>(1 + static_cast<int>(block->name) - static_cast<int>(Name::h1));
      if (block->name == Name::li) {
        look.listLevel = block->listLevel;
        break;
      }
    }
    look.alignment = static_cast<Appearance::Alignment>(walker_.block().align);
    look.rightToLeft = walker_.block().rightToLeft;
    looks_.append(count, look);
  }

  Walker walker_;
  text::RunMap<Appearance> looks_;
};

}  // namespace

text::RunMap<formats::Appearance> readAppearance(const Page& page, const TextMap& map) {
  return AppearanceReader(page, map.partOf(page)).read(map.endsWithoutBytes);
}

}  // namespace pluvo::formats::html
