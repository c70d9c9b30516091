#include "page_writer.h"

#include "base/little_endian.h"
#include "damage.h"

#include <algorithm>

namespace pluvo::doc {

namespace {

constexpr std::size_t kRoom = FormattedPages::kPage - 1;
constexpr std::size_t kPlace = 4;
/// The place of a record, and how high the paragraph is.
constexpr std::size_t kParagraphElement = 13;

std::size_t elementOf(FormattedPages::Of of) {
  return of == FormattedPages::Of::characters ? 1 : kParagraphElement;
}

}  // namespace

PageWriter::PageWriter(FormattedPages::Of of, std::vector<std::uint8_t>& document)
    : of_(of), document_(document), lowest_(kRoom) {}

/// The properties with their size before them; empty where there are none.
std::string PageWriter::recordOf(const Run& run) const {
  const std::string properties(run.properties.begin(), run.properties.end());
  if (of_ == FormattedPages::Of::characters) {
    if (properties.empty()) return {};
    return std::string(1, static_cast<char>(properties.size())) + properties;
  }
  if (properties.empty() && run.style == 0) return {};
  std::string record;
  const std::size_t size = properties.size() + 2;
  if (size % 2 == 0) {
    record = {'\0', static_cast<char>(size / 2)};
  } else {
    record = std::string(1, static_cast<char>((size + 1) / 2));
  }
  record += static_cast<char>(run.style & 0xFFU);
  record += static_cast<char>(run.style >> 8U);
  return record + properties;
}

bool PageWriter::isSameAsLast(const Run& run, const std::string& record) const {
  return of_ == FormattedPages::Of::characters && !records_.empty() && places_.back() == run.from &&
         last_ == record;
}

void PageWriter::add(const Run& run) {
  if (run.from >= run.to) return;
  const std::string record = recordOf(run);
  if (isSameAsLast(run, record)) {
    places_.back() = run.to;
    return;
  }
  const std::size_t head = (records_.size() + 2) * kPlace + (records_.size() + 1) * elementOf(of_);
  const bool isKnown = record.empty() || known_.contains(record);
  const std::size_t size = isKnown ? 0 : (record.size() + 1) / 2 * 2;
  // A record begins at an even place.
  if (head + size > lowest_ / 2 * 2) {
    if (records_.empty()) throw damaged("formatting does not fit on its pages");
    endPage();
    return add(run);
  }
  std::size_t at = 0;
  if (isKnown) {
    if (!record.empty()) at = known_[record];
  } else {
    lowest_ = lowest_ / 2 * 2 - size;
    at = lowest_;
    std::ranges::copy(record, page_.begin() + static_cast<std::ptrdiff_t>(at));
    known_[record] = at;
  }
  if (places_.empty()) places_.push_back(run.from);
  places_.push_back(run.to);
  records_.push_back(static_cast<std::uint8_t>(at / 2));
  last_ = record;
}

void PageWriter::endPage() {
  if (records_.empty()) return;
  const std::span<std::uint8_t> page(page_);
  for (std::size_t i = 0; i < places_.size(); ++i) base::put(page, i * kPlace, places_[i]);
  for (std::size_t i = 0; i < records_.size(); ++i)
    page[places_.size() * kPlace + i * elementOf(of_)] = records_[i];
  page[kRoom] = static_cast<std::uint8_t>(records_.size());
  entries_.push_back({places_.front(), static_cast<std::uint32_t>(document_.size() / FormattedPages::kPage)});
  document_.insert(document_.end(), page.begin(), page.end());
  places_.clear();
  records_.clear();
  known_.clear();
  page_.fill(0);
  lowest_ = kRoom;
}

}  // namespace pluvo::doc
