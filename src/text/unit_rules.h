#pragma once

#include "checkpoints.h"
#include "text/pieces.h"
#include "text/positions.h"
#include "text/run_map.h"
#include "text/visible.h"

#include <functional>
#include <optional>

/// What Checkpoints count: where words, sentences and paragraphs start, and visible characters. The rules are
/// told in text/units.h.
namespace pluvo::text {

struct UnitText {
  const PieceText* text;
  /// Asked at characters 7 and 12.
  std::function<bool(Position)> endsParagraph;

  bool isMark(Position position, char16_t unit) const {
    if (unit == kCellMark || unit == kPageBreak) return endsParagraph(position);
    return unit == kParagraphMark;
  }
};

/// Whether a word starts somewhere depends on the few characters around it only.
class WordRule {
 public:
  static constexpr std::size_t kStates = 1;
  static constexpr std::uint8_t kFirstState = 0;

  explicit WordRule(const UnitText* text) : text_(text) {}
  Position length() const { return text_->text->length(); }
  Summary<1> summarise(Position from, Position to) const;
  Position nth(Position from, Position to, std::uint8_t state, Position n) const;

 private:
  const UnitText* text_;
};

/// Whether a sentence starts somewhere depends on how the text in front of it ends, whatever its length.
class SentenceRule {
 public:
  enum State : std::uint8_t {
    kWithin,
    kAfterStop,    ///< and the closing marks that follow it
    kAfterBlanks,  ///< that follow a stop
    kAfterMark,    ///< or at the start of the text
  };
  static constexpr std::size_t kStates = 4;
  static constexpr std::uint8_t kFirstState = kAfterMark;

  explicit SentenceRule(const UnitText* text) : text_(text) {}
  Position length() const { return text_->text->length(); }
  Summary<4> summarise(Position from, Position to) const;
  std::optional<Position> count(Position seen, Position from, Position to) const;
  Position nth(Position from, Position to, std::uint8_t state, Position n) const;

 private:
  const UnitText* text_;
};

/// A paragraph starts after every mark.
class ParagraphRule {
 public:
  static constexpr std::size_t kStates = 1;
  static constexpr std::uint8_t kFirstState = 0;

  explicit ParagraphRule(const UnitText* text) : text_(text) {}
  Position length() const { return text_->text->length(); }
  Summary<1> summarise(Position from, Position to) const;
  Position nth(Position from, Position to, std::uint8_t state, Position n) const;

 private:
  const UnitText* text_;
};

class VisibleRule {
 public:
  static constexpr std::size_t kStates = 1;
  static constexpr std::uint8_t kFirstState = 0;

  VisibleRule(const RunMap<Visibility>* visibility, View view) : visibility_(visibility), view_(view) {}
  Position length() const { return visibility_->length(); }
  Summary<1> summarise(Position from, Position to) const;
  Position nth(Position from, Position to, std::uint8_t state, Position n) const;

 private:
  const RunMap<Visibility>* visibility_;
  View view_;
};

}  // namespace pluvo::text
