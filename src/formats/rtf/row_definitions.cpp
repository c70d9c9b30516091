#include "row_definitions.h"

#include <algorithm>
#include <array>

namespace pluvo::rtf {

namespace {

bool definesRows(std::string_view word) {
  constexpr std::array<std::string_view, 11> kBeginnings = {
      "tr", "cl", "ts", "irow", "lastrow", "ltrrow", "brdr", "rtlrow", "tbl", "td", "tp"};
  return word.starts_with("cellx") || std::ranges::any_of(kBeginnings, [&](std::string_view beginning) {
           return word.starts_with(beginning);
         });
}

}  // namespace

RowDefinitions::RowDefinitions(Splicer& splicer, const std::vector<text::Span>& rows,
                               const document::Dropped& dropped)
    : splicer_(splicer) {
  for (const text::Span& row : rows) {
    if (!dropped.hold(row)) continue;
    while (!dropped_.empty() && dropped_.back().from >= row.from) dropped_.pop_back();
    dropped_.push_back(row);
  }
}

bool RowDefinitions::isDropped(text::Position position) {
  while (next_ < dropped_.size() && dropped_[next_].to <= position) ++next_;
  return next_ < dropped_.size() && dropped_[next_].from <= position;
}

void RowDefinitions::word(const Token& token, text::Position position) {
  if (token.word == Word::trowd) {
    if (position_ != position) {
      begin_ = token.extent.begin;
      position_ = position;
      highlight_ = splicer_.level().highlight;
    }
    isAmid_ = true;
  }
  const bool isDepth = token.word == Word::itap;
  if (!isAmid_ && !isDepth) return;
  isAmid_ = isAmid_ && definesRows(splicer_.bytes({token.extent.begin + 1, token.extent.end}));
  if ((isAmid_ || isDepth) && isDropped(position)) splicer_.leaveOut(token.extent);
}

}  // namespace pluvo::rtf
