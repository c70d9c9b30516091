#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace pluvo::xml {

/// The slots of a table, taken over from a table that is gone. A package has many parts, and clearing slots
/// for each would cost more than reading the small ones. Their old contents are of no use to the new owner,
/// who must be able to tell.
template <class Slot>
class Slots {
 public:
  /// The count is a power of two.
  explicit Slots(std::size_t count) : count_(count) {
    if (!spare().empty()) {
      slots_ = std::move(spare().back());
      spare().pop_back();
    }
    if (slots_.size() < count) slots_.resize(count);
  }
  Slots(const Slots&) = delete;
  Slots& operator=(const Slots&) = delete;
  ~Slots() {
    if (spare().size() < kMostSpare) spare().push_back(std::move(slots_));
  }

  std::size_t size() const { return count_; }
  Slot& operator[](std::size_t i) { return slots_[i]; }
  const Slot& operator[](std::size_t i) const { return slots_[i]; }

 private:
  static constexpr std::size_t kMostSpare = 4;

  static std::vector<std::vector<Slot>>& spare() {
    thread_local std::vector<std::vector<Slot>> spare;
    return spare;
  }

  std::size_t count_;
  std::vector<Slot> slots_;
};

}  // namespace pluvo::xml
