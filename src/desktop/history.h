#pragma once

#include "document/document.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace pluvo::desktop {

/// A document before each of its last passes, to go back to and forth again. A snapshot shares the original
/// text and holds the edits.
class History {
 public:
  using Snapshot = document::Document::Snapshot;
  enum class Way { back, forth };

  void passBegins() { changed_ = false; }
  /// The pass changed the document, which was so before.
  void keep(Snapshot before);

  /// Whether the pass that began last has changed it, and nothing was taken back since.
  bool passChanged() const { return changed_; }
  bool canUndo() const { return !undo_.empty(); }
  bool canRedo() const { return !redo_.empty(); }
  /// The document as it was before the last pass, or after the one that was taken back last; there is one.
  Snapshot take(Way way);
  /// The document as it was before a step, which the other way leads to again.
  void put(Way way, Snapshot before) { states(way).push_back(std::move(before)); }

 private:
  using Snapshots = std::vector<Snapshot>;
  static constexpr std::size_t kMost = 20;

  Snapshots& states(Way way) { return way == Way::back ? undo_ : redo_; }

  Snapshots undo_;
  Snapshots redo_;
  bool changed_ = false;
};

}  // namespace pluvo::desktop
