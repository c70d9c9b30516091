#pragma once

#include "base/bytes.h"
#include "formats/other_texts.h"
#include "text/positions.h"

#include <string>
#include <string_view>

namespace pluvo::docx {

/// Tells pieces of text, many at a time, since a search costs more than most pieces. No match runs from one
/// piece into the next.
class Pieces {
 public:
  Pieces(formats::Unreached kind, formats::OtherTexts& texts) : kind_(kind), texts_(texts) {}

  /// The piece at hand, to be added to.
  std::u16string& units() { return units_; }
  void end() {
    constexpr std::size_t kEnough = std::size_t{1} << 16U;
    if (units_.empty() || units_.back() == text::kCellMark) return;
    units_.push_back(text::kCellMark);
    if (units_.size() >= kEnough) tell();
  }
  void tell() {
    if (!units_.empty()) texts_.unreached(kind_, units_);
    units_.clear();
  }

 private:
  formats::Unreached kind_;
  formats::OtherTexts& texts_;
  std::u16string units_;
};

/// The texts of markup that is read for nothing else. Each takes the pieces on; none tells them.

/// Text in runs, as of charts, sheets, slides, and Word's markup: a paragraph is a piece.
void addRuns(base::ByteSpan part, const std::string& partName, Pieces& pieces);
/// All that is no markup: each element's text, and each attribute's value, is a piece.
void addValues(base::ByteSpan part, const std::string& partName, Pieces& pieces);
/// Of a part of settings the names and values of variables.
void addVariables(base::ByteSpan part, const std::string& partName, Pieces& pieces);
/// Of a part of people their names, and those under which they are known elsewhere.
void addPeople(base::ByteSpan part, const std::string& partName, Pieces& pieces);

}  // namespace pluvo::docx
