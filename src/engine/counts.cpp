#include "counts.h"

#include "errors/fault.h"
#include "errors/numbers.h"

#include <limits>

namespace pluvo::engine {

namespace {

std::int32_t sum(std::int32_t a, std::int32_t b) {
  const std::int64_t value = std::int64_t{a} + b;
  if (value > std::numeric_limits<std::int32_t>::max()) throw errors::overflow();
  return static_cast<std::int32_t>(value);
}

}  // namespace

void Counts::reset(bool liftLimits) {
  *this = Counts();
  liftLimits_ = liftLimits;
}

void Counts::countOperated() { operated_ = sum(operated_, 1); }

void Counts::countSkipped() {
  const std::int32_t next = sum(skipped_, 1);
  skipped_ = liftLimits_ ? next : errors::narrow(next);
}

std::int32_t Counts::found() const { return sum(operated_, skipped_); }

}  // namespace pluvo::engine
