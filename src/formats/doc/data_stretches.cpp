#include "data_stretches.h"

#include "base/little_endian.h"
#include "properties.h"
#include "unused_stretches.h"
#include "walker.h"

#include <algorithm>

namespace pluvo::doc {

using text::Position;

namespace {

class Finder final : public Events {
 public:
  Finder(const Text& text, const std::function<void(const DataStretch&)>& visit)
      : text_(text), visit_(visit) {}

  void text(Position at, std::u16string_view units, const CharacterLook& look) override {
    if (!look.picture) return;
    for (std::size_t i = 0; i < units.size(); ++i) ofCharacter(at + static_cast<Position>(i), *look.picture);
  }

  void mark(Position at, Mark, std::int32_t, const CharacterLook& look) override {
    if (look.picture) ofCharacter(at, *look.picture);
    const Piece& piece = text_.pieces.pieces()[text_.pieces.indexAt(at)];
    const FormattedPages::Run run = text_.paragraphs.at(piece.offsetOf(at), place_);
    forEachProperty(run.properties, [&](std::uint16_t property, base::ByteSpan operand) {
      if (property == code::kHuge || property == code::kOldHuge) ofParagraph(at, base::get32(operand, 0));
    });
  }

 private:
  bool has(std::size_t from, std::size_t size) const {
    return from <= text_.data.size() && size <= text_.data.size() - from;
  }
  void toEnd(Position at, std::size_t from) {
    if (from < text_.data.size()) visit_({at, from, text_.data.size(), false});
  }

  /// A size and a head come first.
  void ofCharacter(Position at, std::size_t from) {
    constexpr std::size_t kHead = 0x44;
    if (!has(from, kHead) || base::get16(text_.data, from + 4) != kHead) return toEnd(at, from);
    const std::size_t size = base::get32(text_.data, from);
    if (size < kHead || !has(from, size)) return toEnd(at, from);
    visit_({at, from, from + size, true});
  }

  void ofParagraph(Position at, std::size_t from) {
    if (!has(from, 2) || !has(from + 2, base::get16(text_.data, from))) return toEnd(at, from);
    visit_({at, from, from + 2 + base::get16(text_.data, from), false});
  }

  const Text& text_;
  const std::function<void(const DataStretch&)>& visit_;
  FormattedPages::Place place_;
};

}  // namespace

void forEachDataStretch(const Text& text, const std::function<void(const DataStretch&)>& visit) {
  Finder finder(text, visit);
  Walker(text).walk(0, text.pieces.length(), finder);
}

std::vector<std::uint8_t> dataWithoutGone(const Text& text, const Text* glossary, const MovedPlaces& places) {
  std::vector<Extent> used;
  std::vector<Extent> going;
  forEachDataStretch(text, [&](const DataStretch& stretch) {
    (stretch.isWhole && places.isGone(stretch.at) ? going : used).push_back({stretch.from, stretch.to});
  });
  if (going.empty()) return {};
  if (glossary != nullptr)
    forEachDataStretch(*glossary, [&](const DataStretch& stretch) {
      used.push_back({stretch.from, stretch.to});
    });
  std::ranges::sort(going, {}, &Extent::from);
  std::vector<std::uint8_t> data(text.data.begin(), text.data.end());
  bool isBlanked = false;
  Unused unused(std::move(used));
  for (const Extent& each : going) {
    unused.forEachIn(each, [&](std::size_t from, std::size_t to) {
      std::fill(data.begin() + static_cast<std::ptrdiff_t>(from),
                data.begin() + static_cast<std::ptrdiff_t>(to), std::uint8_t{0});
      isBlanked = true;
    });
  }
  return isBlanked ? data : std::vector<std::uint8_t>();
}

}  // namespace pluvo::doc
