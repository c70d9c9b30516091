#include "text/utf8_text.h"

#include "base/at_once.h"
#include "base/utf.h"
#include "characters.h"
#include "text/utf8_decoding.h"
#include "utf8.h"
#include "utf8_scan.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

namespace pluvo::text {
namespace {

using Bytes = Utf8Text::Bytes;

using Word = std::uint64_t;
constexpr Word kOnes = ~Word{0} / 0xFF;

/// The high bit of every byte above 7F, line feed and carriage return. Bytes after the first such one may
/// have it too.
constexpr Word unlikeText(Word word) {
  constexpr Word kHigh = kOnes * 0x80;
  const Word feeds = word ^ (kOnes * '\n');
  const Word returns = word ^ (kOnes * '\r');
  return (word | ((feeds - kOnes) & ~feeds) | ((returns - kOnes) & ~returns)) & kHigh;
}

/// After something else ASCII is looked for again so many units on.
constexpr std::size_t kOtherUnits = 24;

/// Writes units until so many are written or the bytes end; returns the offset after them. A pair that does
/// not fit is cut in two.
std::size_t decode(Bytes bytes, std::size_t offset, char16_t*& out, const char16_t* end) {
  while (out < end && offset < bytes.size()) {
    while (end - out >= 8 && bytes.size() - offset >= 8) {
      Word word = 0;
      std::memcpy(&word, bytes.data() + offset, sizeof word);
      const Word unlike = unlikeText(word);
      for (std::size_t i = 0; i < 8; ++i) out[i] = bytes[offset + i];
      static_assert(std::endian::native == std::endian::little, "the first byte is the lowest");
      const std::size_t alike = unlike == 0 ? 8 : static_cast<std::size_t>(std::countr_zero(unlike)) / 8;
      out += alike;
      offset += alike;
      if (alike < 8) break;
    }
    const Utf8Decoded decoded =
        decodeUtf8(bytes.subspan(offset), out, std::min(static_cast<std::size_t>(end - out), kOtherUnits));
    out += decoded.units;
    offset += decoded.bytes;
    // It may have stopped within the last character, whose unit is written.
    while (offset < bytes.size() && base::isUtf8Follower(bytes[offset])) ++offset;
    if (out == end || offset == bytes.size()) break;
    if (decoded.units == kOtherUnits) continue;
    const Utf8Character character = utf8At(bytes, offset);
    if (character.point > 0xFFFF) {
      *out++ = base::highSurrogateOf(character.point);
      if (out == end) break;
      *out++ = base::lowSurrogateOf(character.point);
    } else {
      *out++ = static_cast<char16_t>(character.point);
    }
    offset += character.bytes;
  }
  return offset;
}

/// Adds the scan of the rows after those that a scan is of.
void append(Utf8Scan& scan, const Utf8Scan& next) {
  const auto bytesAt = [](std::size_t row) { return static_cast<std::uint32_t>(row * kNoteInterval); };
  const auto before = static_cast<std::uint32_t>(scan.units);
  if (scan.plain && !next.plain)
    for (std::size_t row = 0; row < next.firstRow; ++row) scan.notes[row] = bytesAt(row);
  if (!scan.plain && next.plain)
    for (std::size_t row = next.firstRow; row < next.endRow; ++row)
      scan.notes[row] = bytesAt(row - next.firstRow);
  scan.plain = scan.plain && next.plain;
  for (std::size_t row = next.firstRow; !scan.plain && row < next.endRow; ++row) scan.notes[row] += before;
  scan.endRow = next.endRow;
  scan.units += next.units;
  scan.lineFeeds += next.lineFeeds;
  scan.carriageReturns += next.carriageReturns;
  scan.pairs += next.pairs;
  scan.ascii = scan.ascii && next.ascii;
  scan.zeros = scan.zeros || next.zeros;
}

/// Of all bytes; none where they are no UTF-8. Large ones are looked over in parts, at once.
std::optional<Utf8Scan> scanOf(Bytes bytes, std::uint32_t* notes) {
  const std::size_t rows = utf8Rows(bytes.size());
  std::vector<Utf8Scan> scans(base::partsOf(bytes.size()));
  const auto rowOf = [&](std::size_t part) { return rows * part / scans.size(); };
  std::atomic<bool> valid = true;
  base::atOnce(scans.size(), [&](std::size_t part) {
    Utf8Scan scan;
    scan.firstRow = rowOf(part);
    scan.endRow = rowOf(part + 1);
    scan.notes = notes;
    if (!surveyUtf8(bytes.data(), bytes.size(), scan)) valid = false;
    scans[part] = scan;
  });
  if (!valid) return std::nullopt;
  Utf8Scan& all = scans.front();
  for (std::size_t part = 1; part < scans.size(); ++part) append(all, scans[part]);
  return all;
}

}  // namespace

Utf8Text::Survey Utf8Text::survey(Bytes bytes, const std::shared_ptr<const void>& owner) {
  // Of addresses only, where nothing is noted.
  auto notes = std::make_unique_for_overwrite<std::uint32_t[]>(utf8Rows(bytes.size()));
  Survey survey;
  const std::optional<Utf8Scan> known = scanOf(bytes, notes.get());
  if (!known) return survey;
  const Utf8Scan& scan = *known;
  survey.valid = true;
  survey.ascii = scan.ascii;
  survey.zeros = scan.zeros;
  survey.pairs = static_cast<std::size_t>(scan.pairs);
  survey.lineFeeds = static_cast<std::size_t>(scan.lineFeeds - scan.pairs);
  survey.carriageReturns = static_cast<std::size_t>(scan.carriageReturns - scan.pairs);
  if (scan.plain) return survey;
  std::shared_ptr<Utf8Text> text(
      new Utf8Text(Bytes(bytes.data(), bytes.size() + 1), static_cast<Position>(scan.units) + 1, owner));
  text->notes_ = std::move(notes);
  survey.text = std::move(text);
  return survey;
}

std::size_t Utf8Text::noteCount() const { return (bytes().size() - 1) / kNoteInterval + 1; }

Utf8Text::Known Utf8Text::note(std::size_t number) const {
  return {notes_[number], static_cast<std::uint32_t>(number * kNoteInterval)};
}

Utf8Text::Known Utf8Text::noteBefore(std::uint32_t position) const {
  const std::uint32_t* const first = notes_.get();
  const std::size_t count = noteCount();
  // Mostly not far from the last question.
  std::size_t low = std::min<std::size_t>(recent().offset / kNoteInterval, count - 1);
  std::size_t high = low + 1;
  for (std::size_t reach = 1; low > 0 && first[low] > position; reach *= 2) {
    high = low;
    low -= std::min(reach, low);
  }
  for (std::size_t reach = 1; high < count && first[high] <= position; reach *= 2) {
    low = high;
    high = std::min(high + reach, count);
  }
  const auto* const after = std::upper_bound(first + low, first + high, position);
  return note(static_cast<std::size_t>(after - first) - 1);
}

Utf8Text::Place Utf8Text::placeOf(Position position) const {
  if (position >= length()) return {bytes().size(), false};
  const auto wanted = static_cast<std::uint32_t>(position);
  if (const Known known = unpacked(learned(position)); known.position == wanted) return {known.offset, false};
  Known from = recent();
  constexpr std::uint32_t kNear = kNoteInterval / 2;
  if (wanted < from.position && from.position - wanted < kNear) {
    const Utf8Step at = walkBackUtf8(bytes().data(), bytes().size(), from.offset, from.position - wanted);
    if (at.left == 0) remember({wanted, static_cast<std::uint32_t>(at.offset)});
    return {at.offset, at.left != 0};
  }
  // In front of it, too.
  if (wanted - from.position >= kNoteInterval) from = noteBefore(wanted);
  const Utf8Step at = walkUtf8(bytes().data(), bytes().size(), from.offset, wanted - from.position);
  if (at.left == 0) remember({wanted, static_cast<std::uint32_t>(at.offset)});
  return {at.offset, at.left != 0};
}

Position Utf8Text::positionAt(std::size_t offset) const {
  const auto wanted = static_cast<std::uint32_t>(offset);
  const std::size_t number = std::min(offset / kNoteInterval, noteCount() - 1);
  Known from = recent();
  if (from.offset > wanted || from.offset < number * kNoteInterval) from = note(number);
  const std::size_t units = countUtf8(bytes().data(), bytes().size(), from.offset, offset);
  const auto position = from.position + static_cast<std::uint32_t>(units);
  remember({position, wanted});
  return static_cast<Position>(position);
}

Position Utf8Text::positionAfter(Position position, std::size_t offset, std::size_t wanted) const {
  Known from{static_cast<std::uint32_t>(position), static_cast<std::uint32_t>(offset)};
  if (const Known last = recent(); from.offset < last.offset && last.offset <= wanted) from = last;
  constexpr std::size_t kNear = 1024;
  if (wanted - from.offset > kNear) return positionAt(wanted);
  return static_cast<Position>(from.position +
                               countUtf8(bytes().data(), bytes().size(), from.offset, wanted));
}

bool Utf8Text::beginsUnit(std::size_t offset) const { return beginsUtf8Unit(bytes(), offset); }

char16_t Utf8Text::operator[](Position position) const {
  const Place place = placeOf(position);
  if (place.offset >= bytes().size())
    return static_cast<char16_t>(base::kReplacement);  // another program wrote into the file
  const char32_t point = utf8At(bytes(), place.offset).point;
  if (place.insidePair) return base::lowSurrogateOf(point);
  return point > 0xFFFF ? base::highSurrogateOf(point) : static_cast<char16_t>(point);
}

void Utf8Text::copy(Position from, Position to, char16_t* out) const {
  char16_t* const end = out + (to - from);
  Place place = placeOf(from);
  if (place.insidePair && out < end) {
    const Utf8Character character = utf8At(bytes(), place.offset);
    *out++ = base::lowSurrogateOf(character.point);
    place.offset += character.bytes;
  }
  const std::size_t after = decode(bytes(), place.offset, out, end);
  std::fill(out, end, static_cast<char16_t>(base::kReplacement));  // another program wrote into the file
  if (from < to && !isHighSurrogate(end[-1]))
    remember({static_cast<std::uint32_t>(to), static_cast<std::uint32_t>(after)});
}

std::size_t Utf8Text::unitsIn(std::size_t from, std::size_t to) const {
  return countUtf8(bytes().data(), bytes().size(), from, to);
}

Utf8Text::Place Utf8Text::walk(std::size_t from, Position units) const {
  const Utf8Step at = walkUtf8(bytes().data(), bytes().size(), from, static_cast<std::size_t>(units));
  return {at.offset, at.left != 0};
}

Utf8Text::Place Utf8Walk::to(Position position) {
  const auto units = static_cast<std::size_t>(position - position_);
  const Utf8Step at = walkUtf8(bytes_.data(), bytes_.size(), offset_, units);
  position_ = position - static_cast<Position>(at.left);
  offset_ = at.offset;
  return {at.offset, at.left != 0};
}

}  // namespace pluvo::text
