#pragma once

#include "document/kept.h"
#include "splicer.h"

#include <vector>

namespace pluvo::rtf {

/// The words that define the rows and cells of a table. Those of rows that go, go.
class RowDefinitions {
 public:
  RowDefinitions(Splicer& splicer, const std::vector<text::Span>& rows, const document::Dropped& dropped);

  /// A word of the walk, and the original position that it stands before.
  void word(const Token& token, text::Position position);
  /// Something that is no word.
  void interrupt() { isAmid_ = false; }

  /// Whether a row is defined directly before a position; then its first word begins there, and the highlight
  /// in the new bytes was that.
  bool standBefore(text::Position position) const { return position_ == position; }
  std::size_t begin() const { return begin_; }
  std::uint8_t highlight() const { return highlight_; }

 private:
  bool isDropped(text::Position position);

  Splicer& splicer_;
  std::vector<text::Span> dropped_;
  std::size_t next_ = 0;
  bool isAmid_ = false;
  std::size_t begin_ = 0;
  text::Position position_ = -1;
  std::uint8_t highlight_ = 0;
};

}  // namespace pluvo::rtf
