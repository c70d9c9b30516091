#pragma once

#include "text/pieces.h"
#include "text/positions.h"
#include "text/run_map.h"
#include "text/units.h"
#include "text/visible.h"
#include "word/enums.h"

#include <functional>

namespace pluvo::document {

/// Counts and moves in the word processor's units; see text::Units for what they are.
class Measures {
 public:
  /// All must outlive this object. endsParagraph is asked at characters 7 and 12 only.
  Measures(const text::PieceText& text, const text::RunMap<text::Visibility>& visibility,
           std::function<bool(text::Position)> endsParagraph);

  /// How many units the span touches: a unit that is touched partly counts as one. Characters are those that
  /// the view shows. An empty span touches no character, and one of every other unit.
  text::Position count(text::Span span, word::WdUnits unit, text::View view) const;
  /// Moves a position by so many units (negative: towards the top), stopping at the ends of the text. The
  /// units moved have the sign of the direction.
  text::Move move(text::Position position, word::WdUnits unit, text::Position count, text::View view) const;

  /// To be called when a span of text and map has been replaced.
  void edited(text::Span replaced, text::Position newLength);

 private:
  const text::VisibleCharacters& characters(text::View view) const {
    return view == text::View::results ? results_ : codes_;
  }

  mutable bool wasAsked_ = false;  ///< else nothing is kept that an edit could change
  text::Units units_;
  text::VisibleCharacters results_;
  text::VisibleCharacters codes_;
};

}  // namespace pluvo::document
