#pragma once

#include "text/positions.h"

namespace pluvo::document {

class Story;

/// Is told of every change of a document's stories.
class Observer {
 public:
  virtual ~Observer() = default;
  /// The text or the highlight is about to change. May come several times for one edit.
  virtual void aboutToChange() {}
  virtual void replaced(const Story& /*story*/, text::Span /*span*/, text::Position /*newLength*/) {}
  virtual void highlighted(const Story& /*story*/, text::Span /*span*/) {}
};

}  // namespace pluvo::document
