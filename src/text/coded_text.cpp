#include "text/coded_text.h"

#include "base/at_once.h"
#include "base/utf.h"
#include "coded_scan.h"

#include <algorithm>
#include <vector>

namespace pluvo::text {
namespace {

/// Of all bytes; large ones are looked over in parts, at once. False where they are not what the coding says.
bool scanAll(CodedText::Bytes bytes, const CodingTables& tables, std::size_t rows, CodedScan& all) {
  std::vector<CodedScan> scans(base::partsOf(bytes.size()));
  std::atomic<bool> valid = true;
  const auto rowOf = [&](std::size_t part) { return rows * part / scans.size(); };
  base::atOnce(scans.size(), [&](std::size_t part) {
    CodedScan scan{all.notes, rowOf(part), rowOf(part + 1)};
    if (!codedLooks().survey(bytes.data(), bytes.size(), tables, scan)) valid = false;
    scans[part] = scan;
  });
  for (const CodedScan& scan : scans) {
    // A look that failed has not made all of its notes.
    for (std::size_t row = scan.firstRow; valid && all.units > 0 && row < scan.endRow; ++row)
      all.notes[row] += static_cast<std::uint32_t>(all.units);
    all.units += scan.units;
    all.lineFeeds += scan.lineFeeds;
    all.carriageReturns += scan.carriageReturns;
    all.pairs += scan.pairs;
    all.unassigned = all.unassigned || scan.unassigned;
    all.zeros = all.zeros || scan.zeros;
  }
  return valid;
}

}  // namespace

CodedText::Survey CodedText::survey(Bytes bytes, const std::shared_ptr<const void>& owner,
                                    const ByteCoding& coding) {
  const std::size_t noteCount =
      std::max<std::size_t>((bytes.size() + kCodedInterval - 1) / kCodedInterval, 1);
  auto notes = std::make_unique_for_overwrite<std::uint32_t[]>(noteCount);
  CodedScan scan;
  scan.notes = notes.get();
  Survey survey;
  survey.valid = scanAll(bytes, coding.tables(), noteCount, scan);
  survey.unassigned = scan.unassigned;
  if (!survey.valid) return survey;
  survey.zeros = scan.zeros;
  survey.pairs = static_cast<std::size_t>(scan.pairs);
  survey.lineFeeds = static_cast<std::size_t>(scan.lineFeeds - scan.pairs);
  survey.carriageReturns = static_cast<std::size_t>(scan.carriageReturns - scan.pairs);
  const std::size_t ofMark = coding.isUtf16() ? 0 : 1;
  std::shared_ptr<CodedText> text(new CodedText(Bytes(bytes.data(), bytes.size() + ofMark),
                                                static_cast<Position>(scan.units) + 1, owner, coding));
  const bool isArithmetic = coding.kind() != ByteCoding::Kind::pairs && scan.pairs == 0;
  if (!isArithmetic) text->notes_ = std::move(notes);
  text->noteCount_ = noteCount;
  survey.text = std::move(text);
  return survey;
}

CodedText::Known CodedText::note(std::size_t number) const {
  return {notes_[number] & ~kSecondByte, static_cast<std::uint32_t>(number * kCodedInterval),
          (notes_[number] & kSecondByte) != 0};
}

CodedText::Known CodedText::noteBefore(std::uint32_t position) const {
  const auto* const after = std::upper_bound(
      notes_.get(), notes_.get() + noteCount_, position,
      [](std::uint32_t wanted, std::uint32_t each) { return wanted < (each & ~kSecondByte); });
  return note(std::max<std::size_t>(static_cast<std::size_t>(after - notes_.get()), 1) - 1);
}

CodedText::Known CodedText::knownBefore(std::size_t offset) const {
  const std::size_t number = std::min(offset / kCodedInterval, noteCount_ - 1);
  const Known last = recent();
  return last.offset > offset || last.offset < number * kCodedInterval ? note(number) : last;
}

CodedText::Place CodedText::placeOf(Position position) const {
  if (position >= length()) return {bytes().size(), false};
  const auto wanted = static_cast<std::uint32_t>(position);
  if (notes_ == nullptr) return {wanted * coding_.leastBytes(), false};
  Known from = recent();
  if (wanted - from.position >= kCodedInterval) from = noteBefore(wanted);  // in front of it, too
  const CodedStep at = codedLooks().walk(bytes().data(), bytes().size(), coding_.tables(), from.offset,
                                         from.isSecond, wanted - from.position);
  if (at.left == 0) remember(wanted, at.offset);
  return {at.offset, false};
}

Position CodedText::positionAt(std::size_t offset) const {
  if (notes_ == nullptr) return static_cast<Position>(offset / coding_.leastBytes());
  const Known from = knownBefore(offset);
  const CodedCount count = codedLooks().count(bytes().data(), bytes().size(), coding_.tables(), from.offset,
                                              from.isSecond, offset);
  const std::size_t position = from.position + count.units;
  if (count.begins) remember(position, offset);
  return static_cast<Position>(position);
}

Position CodedText::positionAfter(Position position, std::size_t offset, std::size_t wanted) const {
  const bool isNear = wanted - offset < kCodedInterval;
  return isNear ? position + static_cast<Position>(unitsIn(offset, wanted)) : positionAt(wanted);
}

bool CodedText::beginsUnit(std::size_t offset) const {
  if (notes_ == nullptr) return offset % coding_.leastBytes() == 0;
  if (offset >= bytes().size()) return true;
  const bool isApart = offset > 0 && !coding_.isUtf16() && !coding_.isLead(bytes()[offset - 1]);
  if (isApart && bytes()[offset] != '\n') return true;
  const Known from = knownBefore(offset);
  return codedLooks()
      .count(bytes().data(), bytes().size(), coding_.tables(), from.offset, from.isSecond, offset)
      .begins;
}

char16_t CodedText::operator[](Position position) const {
  char16_t unit = 0;
  copy(position, position + 1, &unit);
  return unit;
}

void CodedText::copy(Position from, Position to, char16_t* out) const {
  char16_t* const end = out + (to - from);
  const std::size_t after = coding_.decode(bytes(), placeOf(from).offset, out, end);
  if (out == end) {
    if (notes_ != nullptr) remember(static_cast<std::size_t>(to), after);
    return;
  }
  std::fill(out, end, static_cast<char16_t>(base::kReplacement));  // another program wrote into the file
  if (to == length()) end[-1] = kParagraphMark;                    // which has no bytes in UTF-16
}

std::size_t CodedText::unitsIn(std::size_t from, std::size_t to) const {
  if (notes_ == nullptr) return (to - from) / coding_.leastBytes();
  return codedLooks().count(bytes().data(), bytes().size(), coding_.tables(), from, false, to).units;
}

CodedText::Place CodedText::walk(std::size_t from, Position units) const {
  const std::size_t most = static_cast<std::size_t>(units) * coding_.leastBytes();
  if (notes_ == nullptr) return {from + std::min(most, bytes().size() - from), false};
  const CodedStep at = codedLooks().walk(bytes().data(), bytes().size(), coding_.tables(), from, false,
                                         static_cast<std::size_t>(units));
  return {at.offset, false};
}

}  // namespace pluvo::text
