#pragma once

#include "moved_places.h"
#include "new_tables.h"
#include "plc.h"
#include "word_file.h"

#include <cstddef>
#include <optional>

namespace pluvo::doc {

/// Moves the places in a document's tables along with its text.
class TableMover {
 public:
  TableMover(const Text& text, const MovedPlaces& places, NewTables& tables)
      : text_(text), fib_(text.fib), places_(places), tables_(tables) {}

  /// Moves all there are, and lets those go that programs make out anew. Throws DocumentError: damaged.
  void move();

  /// How many characters a part has now.
  text::Position newLength(Part part) const;

 private:
  text::Position begin(Part part) const;
  text::Position boundary(Part part, text::Position place) const;
  std::optional<text::Position> character(Part part, text::Position place) const;
  text::Position last(Part part, const Plc& plc) const;
  void moveMarks(std::size_t number, Part part, std::size_t elementSize);
  void moveTexts(std::size_t number, Part part, std::size_t elementSize);
  void moveSections();
  void moveHeaders();
  void moveBookmarks(std::size_t begins, std::size_t ends, bool endAtMarks);
  void moveNotes(Table references, std::size_t referenceSize, Table texts, Part part);

  const Text& text_;
  const Fib& fib_;
  const MovedPlaces& places_;
  NewTables& tables_;
};

/// Throws errors::DocumentError: damaged where tables cannot be moved, whatever the edits are.
void requireMovable(const Text& text);

}  // namespace pluvo::doc
