#pragma once

#include "document/document.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace pluvo::desktop {

/// A document before each of its last passes, to go back to and forth again. A snapshot shares the original
/// text and holds what was edited.
class History {
 public:
  using Snapshot = document::Document::Snapshot;

  void passBegins() { changed_ = false; }
  /// The pass changed the document, which was so before.
  void keep(Snapshot before);

  /// Whether the pass that began last has changed it, and nothing was taken back since.
  bool passChanged() const { return changed_; }
  bool canUndo() const { return !undo_.empty(); }
  bool canRedo() const { return !redo_.empty(); }
  /// Takes the last pass back, or makes it again; one of the two above must hold.
  void undo(document::Document& document) { move(document, undo_, redo_); }
  void redo(document::Document& document) { move(document, redo_, undo_); }

 private:
  using Snapshots = std::vector<Snapshot>;
  static constexpr std::size_t kMost = 20;

  void move(document::Document& document, Snapshots& from, Snapshots& to);

  Snapshots undo_;
  Snapshots redo_;
  bool changed_ = false;
};

}  // namespace pluvo::desktop
