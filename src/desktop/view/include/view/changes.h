#pragma once

#include "document/document.h"
#include "text/positions.h"

#include <cstddef>
#include <map>
#include <memory>
#include <vector>

namespace pluvo::view {

using text::Position;
using text::Span;

/// The unit that a view lays out: a paragraph outside tables, or part of a long one. Of a table it is a row
/// of the outermost, with all it holds.
struct Block {
  Position from = 0;
  bool isRow = false;
  bool continues = false;  ///< it is not the first of its paragraph
};

/// A stretch of a text as it was, and the one that stands in its place.
struct Exchange {
  Span gone;
  Span come;
};

/// Where a position of a text is after exchanges, which are in order; if its stretch has gone, where that
/// began.
Position positionAfter(const std::vector<Exchange>& exchanges, Position before);

/// Blocks as they were, and those that stand in their place.
struct Patch {
  Exchange text;
  std::vector<Block> blocks;
};

/// The changes of one story. Both lists are in order, and no two of one touch.
struct StoryChange {
  std::size_t story = 0;
  std::vector<Exchange> touched;  ///< text, or its highlight
  std::vector<Patch> patches;
};

using Changes = std::vector<StoryChange>;

class BlockFinder;

/// Notes what becomes of a document, in the thread that edits it, for a view that shows it in another. What
/// costs time is done here: to look through the text that was edited.
class ChangeLog {
 public:
  /// Looks through main text. The document outlives the log.
  explicit ChangeLog(const document::Document& document);
  ~ChangeLog();

  /// Of main text, as the last changes that were taken left it.
  const std::vector<Block>& blocks() const;

  void replaced(std::size_t story, Span span, Position newLength);
  void highlighted(std::size_t story, Span span);
  /// All since the last time.
  Changes take();

 private:
  /// Of one story, since the last time.
  struct Noted;
  Noted& of(std::size_t story);

  const document::Document& document_;
  std::unique_ptr<BlockFinder> mainText_;
  std::map<std::size_t, std::unique_ptr<Noted>> noted_;  ///< by the story's number
};

}  // namespace pluvo::view
