#pragma once

#include "document/model.h"

#include <cstddef>
#include <string>
#include <vector>

namespace pluvo::desktop {

/// A document before each of its last passes, to go back to and forth again. A snapshot shares the original
/// text and holds what was edited.
class History {
 public:
  /// A pass begins; the document is kept when the pass first changes it.
  void passBegins() {
    awaited_ = true;
    changed_ = false;
  }
  /// The document is about to change.
  void keep(const document::Model& model);

  /// Whether the pass that began last has changed it, and nothing was taken back since.
  bool passChanged() const { return changed_; }
  bool canUndo() const { return !undo_.empty(); }
  bool canRedo() const { return !redo_.empty(); }
  /// Takes the last pass back, or makes it again; one of the two above must hold.
  void undo(document::Model& model) { move(model, undo_, redo_); }
  void redo(document::Model& model) { move(model, redo_, undo_); }

 private:
  using Snapshots = std::vector<document::Model::Snapshot>;
  static constexpr std::size_t kMost = 20;

  void move(document::Model& model, Snapshots& from, Snapshots& to);

  Snapshots undo_;
  Snapshots redo_;
  bool awaited_ = false;
  bool changed_ = false;
};

}  // namespace pluvo::desktop
