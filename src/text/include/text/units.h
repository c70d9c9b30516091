#pragma once

#include "text/pieces.h"
#include "text/positions.h"
#include "text/run_map.h"
#include "text/visible.h"

#include <functional>
#include <memory>

namespace pluvo::text {

enum class Unit { word, sentence, paragraph };

/// Where a move arrived, and by how many units. It stops at the ends of the text.
struct Move {
  Position position = 0;
  Position moved = 0;
  bool operator==(const Move&) const = default;
};

/// Words, sentences and paragraphs of a text. Each unit reaches from its start to the start of the next; the
/// first starts at 0. All characters of the text take part, hidden ones and field codes too.
///
/// *Marks* are the paragraph mark, and those characters 7 and 12 that are cell and section marks, as
/// endsParagraph tells. A **paragraph** ends after its mark.
///
/// **Words.** A word is one of these, with the blanks after it (a mark has none):
/// - letters, digits and combining marks in a row. An apostrophe (' or ’), an optional hyphen or a zero-width
///   joiner may stand between two of them. A full stop or comma may stand between two of the digits 0 to 9.
///   So don't, 3.14 and 1,000 are one word, well-known is three;
/// - other characters in a row: a full stop, an ellipsis of three full stops and ?!” are one word each;
/// - a mark; a tab, a line, page or column break, a picture, a note or comment reference, a field mark;
/// - blanks after a mark or at the start of the text.
/// Blanks are the space, the non-breaking space and Unicode's other space characters.
///
/// **Sentences.** A sentence ends after its mark. It also ends after a full stop, question mark or
/// exclamation mark that at least one blank follows. Closing marks may stand before the blanks: quotes,
/// brackets, note and comment references, field marks, further full stops … The blanks belong to the
/// sentence. For this, tab and breaks are blanks too. A sentence does not begin with a full stop, question or
/// exclamation mark except after a mark. No list of abbreviations is used: "Dr. Who" is two sentences.
///
/// Costs: a span of a few thousand characters is read. For longer ones there are summaries of pieces of text,
/// made when first needed and kept under edits. So a count or a move is O(log length), whatever the distance
/// and the text.
class Units {
 public:
  /// Both must outlive this object. endsParagraph is asked at characters 7 and 12 only.
  Units(const PieceText& text, std::function<bool(Position)> endsParagraph);
  ~Units();

  /// How many units [from, to) touches; an empty span touches one.
  Position count(Unit unit, Position from, Position to) const;
  /// To the n-th start of a unit (or the end of the text) after position; n >= 0.
  Move forward(Unit unit, Position position, Position n) const;
  /// To the n-th start of a unit in front of position; n >= 0.
  Move backward(Unit unit, Position position, Position n) const;

  /// To be called when [from, to) has been replaced by newLength characters, or when the marks among them
  /// changed.
  void edited(Position from, Position to, Position newLength);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// The characters that a view shows, counted and moved over. Costs as those of Units, in runs of the map.
class VisibleCharacters {
 public:
  /// The map must outlive this object.
  VisibleCharacters(const RunMap<Visibility>& visibility, View view);
  ~VisibleCharacters();

  Position count(Position from, Position to) const;
  /// To the end of the n-th visible character after position, or to the end of the text.
  Move forward(Position position, Position n) const;
  /// To the start of the n-th visible character in front of position, or to the start of the text.
  Move backward(Position position, Position n) const;

  /// To be called when [from, to) of the map has been replaced by newLength positions or given another value.
  void edited(Position from, Position to, Position newLength);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace pluvo::text
