#pragma once

#include "text/pieces.h"
#include "text/run_map.h"
#include "text/visible.h"

#include <memory>

namespace pluvo::text {

class Gathered;

/// The characters that a view shows, put end to end: for many finds in a text that hides something every few
/// words. It has a copy of them, and is good until the text or its visibility changes.
class VisibleText {
 public:
  /// Of a text that lies in units.
  VisibleText(const Stretch& whole, const RunMap<Visibility>& visibility, View view);

  const Gathered& gathered() const { return *gathered_; }

 private:
  std::shared_ptr<const Gathered> gathered_;
};

}  // namespace pluvo::text
