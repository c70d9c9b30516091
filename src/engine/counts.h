#pragma once

#include <cstdint>

namespace pluvo::engine {

/// What a pass did so far. Both count under overflow checks.
class Counts {
 public:
  void reset(bool liftLimits);
  void countOperated();
  /// 16 bits wide unless the limits are lifted.
  void countSkipped();

  std::int32_t operated() const { return operated_; }
  std::int32_t skipped() const { return skipped_; }
  std::int32_t found() const;

 private:
  std::int32_t operated_ = 0;
  std::int32_t skipped_ = 0;
  bool liftLimits_ = false;
};

}  // namespace pluvo::engine
