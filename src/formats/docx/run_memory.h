#pragma once

#include "xml/name_resolver.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace pluvo::docx {

/// The ways met last that lead from a text to the text of the next run, by their bytes. A paragraph has many
/// runs and a document few kinds of them; the same bytes under the same declarations lead to the same.
template <class Way>
class RunMemory {
 public:
  /// Of the ways that the bytes begin with, the one remembered last, or null.
  Way* recall(std::string_view bytes, xml::Scope scope) {
    for (Way& way : ways_) {
      if (way.scope == scope && endsAlike(way.bytes, bytes) && bytes.starts_with(way.bytes)) return &way;
    }
    return nullptr;
  }

  void remember(Way way) {
    if (way.bytes.size() < kWord || way.bytes.size() > kLongest) return;
    ways_[next_] = std::move(way);
    next_ = (next_ + 1) % ways_.size();
  }

 private:
  static constexpr std::size_t kLongest = 512;
  static constexpr std::size_t kWord = 8;

  /// Ways begin alike, so that their ends are compared first.
  static bool endsAlike(std::string_view way, std::string_view bytes) {
    return way.size() <= bytes.size() &&
           std::memcmp(way.data() + way.size() - kWord, bytes.data() + way.size() - kWord, kWord) == 0;
  }

  std::array<Way, 16> ways_;
  std::size_t next_ = 0;
};

}  // namespace pluvo::docx
