#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace pluvo::doc {

/// Bytes of a stream.
struct Extent {
  std::size_t from;
  std::size_t to;
};

/// Calls visit(from, to) with the unused parts of an extent. Extents come front to back.
class Unused {
 public:
  explicit Unused(std::vector<Extent> used) : used_(std::move(used)) {
    std::ranges::sort(used_, {}, &Extent::from);
    next_ = used_.begin();
  }

  template <class Visit>
  void forEachIn(Extent extent, Visit visit) {
    std::size_t at = std::max(extent.from, reached_);
    reached_ = std::max(reached_, extent.to);
    while (at < extent.to) {
      while (next_ != used_.end() && next_->to <= at) ++next_;
      const std::size_t end = next_ == used_.end() ? extent.to : std::clamp(next_->from, at, extent.to);
      if (end > at) visit(at, end);
      at = next_ == used_.end() ? extent.to : std::max(end, std::min(next_->to, extent.to));
    }
  }

 private:
  std::vector<Extent> used_;
  std::vector<Extent>::iterator next_;
  std::size_t reached_ = 0;
};

}  // namespace pluvo::doc
