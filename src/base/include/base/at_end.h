#pragma once

#include <utility>

namespace pluvo::base {

/// Does something when the scope is left, in whatever way. It throws nothing.
template <class Work>
class AtEnd {
 public:
  explicit AtEnd(Work work) : work_(std::move(work)) {}
  AtEnd(const AtEnd&) = delete;
  AtEnd& operator=(const AtEnd&) = delete;
  ~AtEnd() { work_(); }

 private:
  Work work_;
};

}  // namespace pluvo::base
