#pragma once

#include "text/positions.h"

namespace pluvo::document {

/// Is told of every change of a model, whoever makes it.
class Observer {
 public:
  virtual ~Observer() = default;
  /// The text or the highlight is about to change. May come several times for one edit.
  virtual void aboutToChange() {}
  virtual void replaced(text::Span /*span*/, text::Position /*newLength*/) {}
  virtual void highlighted(text::Span /*span*/) {}
};

}  // namespace pluvo::document
