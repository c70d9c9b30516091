#include "text/byte_coding.h"

#include "coded_scan.h"
#include "text/positions.h"

#include <algorithm>
#include <map>

namespace pluvo::text {

using Bytes = std::span<const std::uint8_t>;

namespace {

/// The second bytes of most leads, a row of bits in which those are set that make a unit.
using Row = std::array<bool, 256>;

Row mostCommon(const std::map<Row, int>& rows) {
  const auto isRarer = [](const auto& a, const auto& b) { return a.second < b.second; };
  const auto most = std::max_element(rows.begin(), rows.end(), isRarer);
  return most == rows.end() ? Row{} : most->first;
}

}  // namespace

ByteCoding::~ByteCoding() = default;

ByteCoding::ByteCoding(Kind order) : kind_(order), tables_(std::make_unique<CodingTables>()) {
  tables_->kind = order;
}

ByteCoding::ByteCoding(const std::array<char16_t, 256>& singles) : ByteCoding(singles, {}) {
  tables_->readsUnassigned = true;
  for (std::size_t byte = 0; byte < singles_.size(); ++byte)
    if (singles_[byte] == kNone) singles_[byte] = static_cast<char16_t>(byte);
}

ByteCoding::ByteCoding(const std::array<char16_t, 256>& singles, const std::vector<Lead>& leads)
    : kind_(leads.empty() ? Kind::bytes : Kind::pairs),
      singles_(singles),
      arePairs_(std::make_unique<bool[]>(leads.empty() ? 0 : std::size_t{256} * 256)),
      tables_(std::make_unique<CodingTables>()) {
  tables_->kind = kind_;
  tables_->isPair = arePairs_.get();
  std::map<Row, int> rows;
  const auto rowOf = [](const Lead& lead) {
    Row row{};
    for (std::size_t second = 0; second < row.size(); ++second) row[second] = lead.pairs[second] != kNone;
    return row;
  };
  for (const Lead& lead : leads) {
    const Row row = rowOf(lead);
    pairs_.insert(pairs_.end(), lead.pairs.begin(), lead.pairs.end());
    rows_[lead.byte] = static_cast<std::uint16_t>(pairs_.size() / 256);
    tables_->add(kLead, lead.byte);
    std::copy(row.begin(), row.end(), arePairs_.get() + std::size_t{256} * lead.byte);
    ++rows[row];
  }
  const Row plain = mostCommon(rows);
  for (unsigned byte = 0; byte < 256; ++byte) {
    const auto at = static_cast<std::uint8_t>(byte);
    if (!plain[byte]) tables_->addDoubtful(at);
    if (singles_[byte] != kNone || isLead(at)) continue;
    tables_->add(kNothing, at);
    tables_->add(kUnclear, at);
    tables_->anyNothing = true;
  }
  // Signs and syllables come before ideographs in these encodings, which may begin in the row before the
  // plain ones. Rows that are nearly empty are rare in texts.
  constexpr std::ptrdiff_t kWorthARow = 64;
  std::vector<Lead> kept;
  bool anyPlain = false;
  const auto lacks = [&](const Row& row, unsigned second) { return plain[second] && !row[second]; };
  for (const Lead& lead : leads) {
    const Row row = rowOf(lead);
    bool isPlain = true;
    for (unsigned second = 0; second < row.size(); ++second) isPlain = isPlain && !lacks(row, second);
    anyPlain = anyPlain || isPlain;
    if (isPlain) continue;
    const bool isFull = kept.size() == std::size(tables_->rows);
    if (std::count(row.begin(), row.end(), true) < kWorthARow || (isFull && anyPlain)) {
      tables_->add(kUnclear, lead.byte);
      continue;
    }
    if (isFull) {
      tables_->add(kUnclear, kept.back().byte);
      kept.pop_back();
    }
    kept.push_back(lead);
  }
  for (std::size_t i = 0; i < kept.size(); ++i) {
    tables_->rows[i].lead = kept[i].byte;
    const Row row = rowOf(kept[i]);
    for (unsigned second = 0; second < row.size(); ++second)
      if (lacks(row, second)) tables_->addDoubtful(i, static_cast<std::uint8_t>(second));
  }
  singles_['\n'] = kParagraphMark;
}

ByteCoding::Unit ByteCoding::unitAt(Bytes bytes, std::size_t offset) const {
  char16_t unit = kParagraphMark;
  const std::size_t end = offset + 1;
  if (isUtf16()) {
    if (end < bytes.size()) unit = wideAt(&bytes[offset]);
    const bool pair = unit == u'\r' && end + 2 < bytes.size() && wideAt(&bytes[offset + 2]) == u'\n';
    return {unit == u'\n' ? kParagraphMark : unit, pair ? std::size_t{4} : std::size_t{2}};
  }
  const std::uint8_t first = bytes[offset];  // read once: another program may write into the file
  const std::size_t row = kind_ == Kind::pairs ? rows_[first] : 0;
  if (row != 0 && end < bytes.size()) return {pairs_[256 * (row - 1) + bytes[end]], 2};
  const bool pair = first == '\r' && end < bytes.size() && bytes[end] == '\n';
  return {singles_[first], pair ? std::size_t{2} : std::size_t{1}};
}

std::size_t ByteCoding::decode(Bytes bytes, std::size_t offset, char16_t*& out, const char16_t* end) const {
  // The bytes of a unit that is neither a pair nor the carriage return of a line end.
  const std::size_t step = leastBytes();
  while (out < end && offset + step <= bytes.size()) {
    const std::uint8_t* const at = &bytes[offset];
    const std::size_t most = std::min(static_cast<std::size_t>(end - out), (bytes.size() - offset) / step);
    std::size_t done = 0;
    if (isUtf16()) {
      for (; done < most && (*out = wideAt(at + 2 * done)) != u'\r'; ++done, ++out)
        if (*out == u'\n') *out = kParagraphMark;
    } else {
      for (; done < most && rows_[at[done]] == 0 && at[done] != '\r'; ++done) *out++ = singles_[at[done]];
    }
    offset += done * step;
    if (out == end || offset + step > bytes.size()) break;
    const Unit unit = unitAt(bytes, offset);
    *out++ = unit.unit;
    offset += unit.bytes;
  }
  return std::min(offset, bytes.size());
}

std::vector<std::vector<std::uint8_t>> ByteCoding::formsOf(char16_t unit) const {
  const auto low = static_cast<std::uint8_t>(unit & 0xFFU);
  const auto high = static_cast<std::uint8_t>(unit >> 8U);
  if (kind_ == Kind::littleUnits) return {{low, high}};
  if (kind_ == Kind::bigUnits) return {{high, low}};
  std::vector<std::vector<std::uint8_t>> forms;
  if (unit == kNone) return forms;
  for (std::size_t byte = 0; byte < singles_.size(); ++byte) {
    const auto first = static_cast<std::uint8_t>(byte);
    if (!isLead(first) && singles_[byte] == unit) forms.push_back({first});
    if (!isLead(first)) continue;
    const auto row = pairs_.begin() + std::ptrdiff_t{256} * (rows_[byte] - 1);
    for (auto at = std::find(row, row + 256, unit); at != row + 256; at = std::find(at + 1, row + 256, unit))
      forms.push_back({first, static_cast<std::uint8_t>(at - row)});
  }
  return forms;
}

bool ByteCoding::beginsUnit(Bytes bytes, std::size_t offset, std::size_t& work) const {
  if (isUtf16()) {
    if (offset % 2 != 0) return false;
    return offset < 2 || offset + 2 > bytes.size() || wideAt(&bytes[offset]) != u'\n' ||
           wideAt(&bytes[offset - 2]) != u'\r';
  }
  if (offset == 0 || offset >= bytes.size()) return true;
  if (bytes[offset] == '\n' && bytes[offset - 1] == '\r') return false;
  std::size_t from = offset;
  while (from > 0 && isLead(bytes[from - 1])) --from;
  work += offset - from;
  return (offset - from) % 2 == 0;
}

}  // namespace pluvo::text
