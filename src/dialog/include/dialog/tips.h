#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace pluvo::dialog {

class RandomSource {
 public:
  virtual ~RandomSource() = default;
  /// Starts a new sequence, from the time.
  virtual void seedFromTimer() = 0;
  /// At least 0 and less than 1.
  virtual float draw() = 0;
};

std::unique_ptr<RandomSource> machineRandomSource();

std::vector<std::u16string> usageTips();
/// One of them.
std::u16string usageTip(RandomSource& random);

}  // namespace pluvo::dialog
