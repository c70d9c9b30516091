#pragma once

#include "dispatch.h"
#include "word/word_processor.h"

#include <memory>
#include <optional>

namespace pluvo::word_com {

/// One step to undo, where Word has such (2010 and later); unless the user is to see what goes on, Word's
/// windows are not drawn meanwhile. Nothing of it is worth a fault.
class ComBatch final : public word::Batch {
 public:
  ComBatch(const Object& application, bool seen);
  ComBatch(const ComBatch&) = delete;
  ComBatch& operator=(const ComBatch&) = delete;
  ~ComBatch() override;

 private:
  Object application_;
  std::optional<bool> wasUpdating_;
  std::optional<Object> undoRecord_;
};

}  // namespace pluvo::word_com
