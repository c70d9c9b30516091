#pragma once

#include "spliced_tokens.h"
#include "tables.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::rtf {

/// The bytes of a new version: the old ones up to the end of the table of colours, entries it lacks, and the
/// rest. They are written front to back.
class NewDocument {
 public:
  NewDocument(std::string_view file, const Tables& tables);

  std::size_t copied() const { return out_->copied(); }
  /// Whether new bytes, and none of the old ones, came last.
  bool endsInNew() const { return out_->endsInNew(); }
  /// Whether old bytes end there in a word without a blank is asked of the walk over them.
  template <class Walk>
  void copyTo(std::size_t at, const Walk& walk) {
    if (out_ == &head_ && at >= coloursAt_) beginRest(walk.isOpenEnd(coloursAt_));
    out_->copyTo(at, walk.isOpenEnd(at));
  }
  void leaveOutTo(std::size_t at) { out_->leaveOutTo(at); }
  void put(std::string_view bytes) { out_->put(bytes); }
  /// The bytes copied last are half of a character.
  void isHalf() { out_->isHalf(); }

  bool takesColours(std::size_t at) const { return at >= coloursAt_; }
  /// The word that sets a highlight. Throws a DocumentError (unsupported) in front of the table of colours.
  void putHighlight(std::uint8_t colour);

  void write(base::Output& out);

 private:
  void beginRest(bool isOpenEnded);
  std::int32_t placeOf(std::uint8_t colour);
  std::string newColours() const;

  const Tables& tables_;
  std::size_t coloursAt_;
  SplicedTokens head_;
  SplicedTokens rest_;
  SplicedTokens* out_ = &head_;
  bool isHeadOpenEnded_ = false;
  std::array<std::int32_t, Colours::kWordColours + 1> places_ = {};
  std::vector<std::uint8_t> newColours_;
};

}  // namespace pluvo::rtf
