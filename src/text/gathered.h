#pragma once

#include "text/original.h"
#include "text/positions.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace pluvo::text {

/// Stretches put end to end, so that matches across their borders are found. In bytes until the first wide
/// one.
class Gathered {
 public:
  std::size_t length() const { return wide_.empty() ? narrow_.size() : wide_.size(); }
  Stretch stretch() const {
    const auto units = static_cast<Position>(length());
    return wide_.empty() ? Stretch{narrow_.data(), nullptr, units, false}
                         : Stretch{nullptr, wide_.data(), units, false};
  }

  void expect(std::size_t units, std::size_t stretches) {
    narrow_.reserve(units);
    origins_.reserve(stretches);
  }
  void add(Position start, const Stretch& stretch) {
    if (wide_.empty() && stretch.wide == nullptr && !stretch.lineFeedIsMark) {
      origins_.push_back({narrow_.size(), start});
      narrow_.insert(narrow_.end(), stretch.narrow, stretch.narrow + stretch.length);
    } else {
      stretch.copyTo(room(start, stretch.length));
    }
  }
  void add(Position start, const OriginalText& text, Position from, Position to) {
    text.copy(from, to, room(start, to - from));
  }

  void clear() { keepLast(0); }

  void keepLast(std::size_t length) {
    if (length >= this->length()) return;
    const std::size_t dropped = this->length() - length;
    if (wide_.empty()) {
      narrow_.erase(narrow_.begin(), narrow_.begin() + static_cast<std::ptrdiff_t>(dropped));
    } else {
      wide_.erase(0, dropped);
    }
    const auto kept = std::upper_bound(origins_.begin(), origins_.end(), dropped, isBefore) - 1;
    kept->position += static_cast<Position>(dropped - kept->offset);
    kept->offset = dropped;
    origins_.erase(origins_.begin(), length == 0 ? origins_.end() : kept);
    for (Origin& origin : origins_) origin.offset -= dropped;
  }

  /// Where the unit at offset lies in the text.
  Position position(std::size_t offset) const {
    const Origin& origin = *(std::upper_bound(origins_.begin(), origins_.end(), offset, isBefore) - 1);
    return origin.position + static_cast<Position>(offset - origin.offset);
  }
  /// How many of the units lie in front of a position of the text. They were added in the text's order.
  std::size_t offset(Position position) const {
    const auto after = std::upper_bound(origins_.begin(), origins_.end(), position,
                                        [](Position p, const Origin& other) { return p < other.position; });
    if (after == origins_.begin()) return 0;
    const Origin& origin = *(after - 1);
    const std::size_t end = after == origins_.end() ? length() : after->offset;
    return std::min(end, origin.offset + static_cast<std::size_t>(position - origin.position));
  }

 private:
  struct Origin {
    std::size_t offset;
    Position position;
  };
  static bool isBefore(std::size_t offset, const Origin& other) { return offset < other.offset; }

  char16_t* room(Position start, Position length) {
    origins_.push_back({this->length(), start});
    if (wide_.empty()) {
      wide_.assign(narrow_.begin(), narrow_.end());
      narrow_.clear();
    }
    wide_.resize(wide_.size() + static_cast<std::size_t>(length));
    return wide_.data() + wide_.size() - length;
  }

  std::vector<std::uint8_t> narrow_;
  std::u16string wide_;
  std::vector<Origin> origins_;
};

}  // namespace pluvo::text
