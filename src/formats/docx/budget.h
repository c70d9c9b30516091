#pragma once

#include "errors/document_error.h"
#include "zip/archive.h"

#include <algorithm>
#include <cstdint>

namespace pluvo::docx {

/// How much the parts of a package, and packages in it, may unpack for all that. As with a single part, what
/// grows many hundredfold is no sound document, unless it is small.
class Budget {
 public:
  explicit Budget(std::size_t packed)
      : left_(std::min(kLimits.totalSize, std::max(kLimits.freeSize, kLimits.ratio * packed))) {}

  bool spent() const { return spent_; }
  void take(std::uint64_t size) {
    spent_ = spent_ || size > left_;
    if (spent_) {
      throw errors::DocumentError(errors::Problem::tooLarge,
                                  "The parts of the document besides its main text unpack to more than any "
                                  "sound document's; this one "
                                  "and those after it are not looked into.");
    }
    left_ -= size;
  }

 private:
  static constexpr zip::Limits kLimits = {};
  std::uint64_t left_;
  bool spent_ = false;
};

}  // namespace pluvo::docx
