#pragma once

#include "markup.h"
#include "tokens.h"

#include <string>
#include <vector>

namespace pluvo::formats::html {

/// The bytes to leave out, after all that is written, and those in their place.
struct Cut {
  Extent bytes;
  bool divides = false;  ///< text in front of it from what comes: something has to stand for it
  std::string in = {};
};

/// Bytes that go. A block's tag is met before it is known whether it goes.
class Cuts {
 public:
  /// Of the texts in elements that main text passes by, what becomes of them, in order.
  explicit Cuts(std::vector<Cut> others) : others_(std::move(others)) {}

  void add(Extent bytes, bool divides = false) { cuts_.push_back({bytes, divides}); }
  /// The other texts in an element.
  void addWithin(Extent holder);
  /// Writes all up to the last of them, before anything after them is written.
  void writeOut(Markup& markup);

 private:
  std::vector<Cut> cuts_;
  std::vector<Cut> others_;
};

}  // namespace pluvo::formats::html
