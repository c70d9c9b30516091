#pragma once

#include "events.h"
#include "open_blocks.h"

#include <cstddef>
#include <vector>

namespace pluvo::formats::html {

/// The tables that are open, with the cell or caption that is open in each. A table begins with its first
/// cell; text between two cells ends it, and what follows is another one.
class OpenTables {
 public:
  OpenTables(const OpenBlocks& blocks, Events& events) : blocks_(blocks), events_(events) {}

  /// A table, cell or caption.
  struct Scope {
    Name name = Name::table;
    std::size_t block = 0;  ///< its number among the open ones
    bool hasBegun = false;  ///< a table: it has cells
    bool rowHasCells = false;
    bool rowHidden = false;
    bool wasBroken = false;        ///< text stood between its cells
    bool endsInParagraph = false;  ///< a cell
  };

  bool any() const { return tables_ > 0; }
  bool isInside() const { return !scopes_.empty(); }
  bool isBetweenCells() const { return isInside() && scopes_.back().name == Name::table; }
  bool isRowHidden() const { return hiddenRows_ > 0; }
  Scope& inner() { return scopes_.back(); }
  /// Blocks up to this number are not closed by end tags within.
  std::size_t floor() const { return scopes_.empty() ? 0 : scopes_.back().block; }

  /// The innermost block is one of these. Throws errors::DocumentError where too many are open.
  void openTable();
  void openCell(Name name) { scopes_.push_back({name, blocks_.size() - 1}); }
  /// In the innermost table, before its block is opened: the first cell begins at the place.
  void beginCell(std::size_t at);
  void hideRow();
  void endRow();
  void interrupt();
  void closeCell() { scopes_.pop_back(); }
  void closeTable(Extent endTag);

 private:
  const OpenBlocks& blocks_;
  Events& events_;
  std::vector<Scope> scopes_;
  std::size_t tables_ = 0;
  std::size_t hiddenRows_ = 0;
};

}  // namespace pluvo::formats::html
