#include "new_pieces.h"

#include "base/little_endian.h"
#include "new_properties.h"
#include "piece_text.h"
#include "properties.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

namespace pluvo::doc {

using text::Position;

namespace {

/// With more pieces than so many, programs take long to open a document.
constexpr std::size_t kManyPieces = 8000;
constexpr std::uint16_t kNoMark = 1;
constexpr std::uint32_t kNarrow = 0x40000000;
constexpr std::size_t kMostGroups = 0x7FFF;
constexpr std::size_t kLongestGroup = 0x3FA2;
constexpr std::uint8_t kShortHighlight = 0x4D;

template <class Number>
void append(std::string& bytes, Number number) {
  for (std::size_t i = 0; i < sizeof(Number); ++i)
    bytes += static_cast<char>(static_cast<std::uint64_t>(number) >> (8 * i) & 0xFFU);
}

bool isMark(char16_t unit) {
  return unit == text::kParagraphMark || unit == text::kCellMark || unit == text::kPageBreak;
}

/// The highlight that properties give; nothing where they give none, or take it from elsewhere.
std::optional<std::uint8_t> highlightIn(base::ByteSpan properties) {
  std::optional<std::uint8_t> colour;
  forEachProperty(properties, [&](std::uint16_t property, base::ByteSpan operand) {
    if (property == code::kHighlight) colour = operand[0];
    if (property == code::kPlain || property == code::kCharacterStyle) colour.reset();
  });
  return colour;
}

/// Whether properties decide of the highlight whatever others said before.
bool decideHighlight(base::ByteSpan properties) {
  bool decides = false;
  forEachProperty(properties, [&](std::uint16_t property, base::ByteSpan) {
    decides = decides || property == code::kHighlight || property == code::kPlain ||
              property == code::kCharacterStyle;
  });
  return decides;
}

}  // namespace

void NewPieces::keep(Position from, Position to, std::optional<std::uint8_t> colour) {
  const auto pieces = text_.pieces.pieces();
  for (std::size_t i = from < to ? text_.pieces.indexAt(from) : 0; from < to; ++i) {
    const Position end = std::min(to, pieces[i].to);
    Piece piece = pieces[i];
    piece.offset = piece.offsetOf(from);
    piece.from = length_;
    piece.to = length_ + end - from;
    add({piece, i, colour});
    from = end;
  }
}

void NewPieces::put(Position before, std::uint32_t offset, Position length, const std::string& properties,
                    bool hasMark) {
  Piece piece;
  piece.from = length_;
  piece.to = length_ + length;
  piece.offset = offset;
  piece.flags = hasMark ? 0 : kNoMark;
  piece.prm = prmFor(properties);
  places_.add(before, length, 0);
  add({piece, text_.pieces.pieces().size(), std::nullopt});
}

void NewPieces::add(const Stretch& stretch) {
  length_ = stretch.piece.to;
  if (!stretches_.empty()) {
    Stretch& last = stretches_.back();
    const bool goesOn = last.old == stretch.old && last.piece.end() == stretch.piece.offset &&
                        last.colour == stretch.colour && last.piece.prm == stretch.piece.prm &&
                        last.piece.flags == stretch.piece.flags;
    if (goesOn) {
      last.piece.to = stretch.piece.to;
      return;
    }
  }
  stretches_.push_back(stretch);
}

bool NewPieces::hasMark(const Piece& piece) const {
  return forEachControl(piece, text_.document, piece.from, piece.to,
                        [](Position, char16_t unit) { return isMark(unit); });
}

/// Which of the old pieces stand for bytes that others stand for, too.
std::vector<bool> NewPieces::sharedPieces() const {
  const auto pieces = text_.pieces.pieces();
  std::vector<std::size_t> order(pieces.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::sort(order, {}, [&](std::size_t i) { return pieces[i].offset; });
  std::vector<bool> shared(pieces.size() + 1);
  std::uint32_t reached = 0;
  std::size_t reaches = pieces.size();
  for (const std::size_t i : order) {
    if (pieces[i].offset < reached) shared[i] = shared[reaches] = true;
    if (pieces[i].end() <= reached) continue;
    reached = pieces[i].end();
    reaches = i;
  }
  return shared;
}

bool NewPieces::fitsPages(const Stretch& stretch, const std::vector<bool>& shared) {
  constexpr std::size_t kLongest = 255 - 3;
  if (shared[stretch.old]) return false;
  std::array<std::uint8_t, 3> room{};
  const base::ByteSpan own = text_.pieces.properties(stretch.piece.prm, room);
  if (decideHighlight(own)) return false;
  for (std::uint32_t at = stretch.piece.offset; at < stretch.piece.end();) {
    const FormattedPages::Run run = text_.characters.at(at, place_);
    if (!sound_.holds(at)) sound_ = text_.characters.soundPageAt(at);
    if (run.to <= at || run.properties.size() > kLongest || !sound_.holds(at)) return false;
    at = run.to;
  }
  return true;
}

std::optional<std::uint8_t> NewPieces::colourInPages(const Piece& piece) const {
  std::optional<std::uint8_t> colour;
  FormattedPages::Place place;
  for (std::uint32_t at = piece.offset; at < piece.end();) {
    const FormattedPages::Run run = text_.characters.at(at, place);
    const auto here = highlightIn(run.properties);
    const std::uint8_t shown = here.value_or(0);
    const bool isCertain = here || !text_.styles.haveHighlight();
    if (!isCertain || run.to <= at || (colour && *colour != shown)) return std::nullopt;
    colour = shown;
    at = run.to;
  }
  return colour;
}

void NewPieces::recolour(Stretch& stretch) {
  std::array<std::uint8_t, 3> room{};
  std::string properties = withoutHighlight(text_.pieces.properties(stretch.piece.prm, room));
  if (decideHighlight(bytesOf(properties)) || colourInPages(stretch.piece) != stretch.colour)
    properties += highlightProperty(*stretch.colour);
  stretch.piece.prm = prmFor(properties);
  stretch.colour.reset();
}

std::uint16_t NewPieces::prmFor(const std::string& properties) {
  if (properties.empty()) return 0;
  constexpr std::size_t kOnlyHighlight = 3;
  if (properties.size() == kOnlyHighlight && highlightIn(bytesOf(properties))) {
    const auto colour = static_cast<std::uint8_t>(properties.back());
    return static_cast<std::uint16_t>(colour << 8U | kShortHighlight << 1U);
  }
  if (knownGroups_.empty()) {
    std::uint16_t number = 0;
    for (const base::ByteSpan group : text_.pieces.groups()) knownGroups_.emplace(stringOf(group), number++);
  }
  const std::size_t next = text_.pieces.groups().size() + newGroups_.size();
  const auto [known, isNew] = knownGroups_.emplace(properties, static_cast<std::uint16_t>(next));
  if (isNew) {
    if (next >= kMostGroups || properties.size() > kLongestGroup) {
      throw errors::DocumentError(errors::Problem::tooLarge,
                                  "The document is formatted in more ways than such a document (.doc) can "
                                  "tell apart; save it in a word processor first.");
    }
    newGroups_.push_back(properties);
  }
  return static_cast<std::uint16_t>(static_cast<unsigned>(known->second) << 1U | 1U);
}

std::vector<Recoloured> NewPieces::applyHighlights() {
  const std::vector<bool> shared = sharedPieces();
  const bool areMany = stretches_.size() > kManyPieces;
  std::vector<Recoloured> recoloured;
  for (Stretch& stretch : stretches_) {
    if (!stretch.colour) continue;
    // Some programs lose a paragraph's highlight where its mark has it from its piece.
    if ((areMany || hasMark(stretch.piece)) && fitsPages(stretch, shared)) {
      recoloured.push_back({stretch.piece.offset, stretch.piece.end(), *stretch.colour});
      stretch.colour.reset();
    } else {
      recolour(stretch);
    }
  }
  for (const Stretch& stretch : std::exchange(stretches_, {})) add(stretch);
  std::ranges::sort(recoloured, {}, &Recoloured::from);
  return recoloured;
}

std::vector<Piece> NewPieces::pieces() const {
  std::vector<Piece> pieces;
  pieces.reserve(stretches_.size());
  for (const Stretch& stretch : stretches_) pieces.push_back(stretch.piece);
  return pieces;
}

std::string NewPieces::table() const {
  std::string table;
  const auto addGroup = [&](base::ByteSpan group) {
    table += '\1';
    append(table, static_cast<std::uint16_t>(group.size()));
    table.append(group.begin(), group.end());
  };
  for (const base::ByteSpan group : text_.pieces.groups()) addGroup(group);
  for (const std::string& group : newGroups_) addGroup(bytesOf(group));
  table += '\2';
  append(table, static_cast<std::uint32_t>(stretches_.size() * 12 + 4));
  for (const Stretch& stretch : stretches_) append(table, static_cast<std::uint32_t>(stretch.piece.from));
  append(table, static_cast<std::uint32_t>(length_));
  for (const Stretch& stretch : stretches_) {
    const Piece& piece = stretch.piece;
    append(table, piece.flags);
    append(table, piece.narrow ? piece.offset * 2 | kNarrow : piece.offset);
    append(table, piece.prm);
  }
  return table;
}

}  // namespace pluvo::doc
