#pragma once

#include "engine/observer.h"
#include "engine/pass_result.h"
#include "errors/guarded.h"

namespace pluvo::engine {

/// Where a pass is, and where its faults go: each procedure works within errors::guarded over it.
class Trail {
 public:
  Trail(Observer& observer, PassResult& result) : observer_(observer), result_(result) {}

  void enter(errors::Tag tag) { tag_ = tag; }
  void report(const errors::Fault& fault) {
    ++result_.faults;
    observer_.failed(fault, tag_);
  }
  errors::Tag tag() const { return tag_; }

 private:
  Observer& observer_;
  PassResult& result_;
  errors::Tag tag_{u""};
};

}  // namespace pluvo::engine
