#pragma once

#include "base/same_bytes.h"
#include "characters.h"
#include "needle.h"
#include "scan.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <optional>

namespace pluvo::text {

/// The units of a contiguous text in canonical form, for the three ways a text can lie.
struct NarrowUnits {
  using Unit = std::uint8_t;
  const Unit* raw;
  const char16_t* forms;
  char16_t operator[](std::size_t i) const { return forms[raw[i]]; }
};
struct WideUnits {
  using Unit = char16_t;
  const Unit* raw;
  char16_t operator[](std::size_t i) const { return asLineEnd(raw[i]); }
};
struct FoldedWideUnits {
  using Unit = char16_t;
  const Unit* raw;
  char16_t operator[](std::size_t i) const {
    return asLineEnd(raw[i] < 0x80 ? foldAscii(raw[i]) : foldCase(raw[i]));
  }
};

/// Finds the matches of a needle in a contiguous text one after the other, overlapping ones too.
///
/// Places where two probes pass are found many at a time and then compared in full. Where that makes much
/// more work than reading on (aaaa…ab in aaaa…), the rest is searched by the linear method of Knuth, Morris
/// and Pratt.
template <class Units>
class Matcher {
 public:
  using Unit = typename Units::Unit;

  /// From what Units are made of.
  template <class... Parts>
  Matcher(const Needle& needle, const Shape<Unit>& shape, std::size_t length, Parts... parts)
      : needle_(&needle), units_{parts...}, length_(length) {
    if (shape.impossible || needle.length() > length) {
      length_ = 0;
    } else {
      allPlaces_ = places_ = length - needle.length() + 1;
      probes_ = shape.probes;
      if (!shape.exact.empty()) exact_ = shape.exact.data();
    }
  }

  /// From now on none() says that no match starts in front of a place; one at or after it may be told. Not
  /// where it is linear.
  void endBefore(std::size_t place) { places_ = std::min(place, allPlaces_); }
  /// Whether it has no probes, or goes on without them.
  bool isLinear() const { return !probes_; }

  /// Where the next match starts; none() when there is no more.
  std::size_t next() {
    if (length_ == 0) return none();
    return probes_ ? nextProbed() : nextLinear();
  }
  static constexpr std::size_t none() { return static_cast<std::size_t>(-1); }

 private:
  /// Comparing may cost so many units for each unit passed, and so many more.
  static constexpr std::size_t kWorkPerUnit = 4;
  static constexpr std::size_t kFreeWork = 4096;

  std::size_t nextProbed() {
    while (true) {
      while (hits_.places != 0) {
        const std::size_t place = hits_.start + static_cast<std::size_t>(std::countr_zero(hits_.places));
        hits_.places &= hits_.places - 1;
        const bool matches = matchesAt(place);
        if (work_ > kWorkPerUnit * place + kFreeWork) {
          probes_.reset();
          position_ = place + 1;
        }
        if (matches) return place;
        if (!probes_) return nextLinear();
      }
      if (position_ >= places_) return none();
      hits_ = nextHits(units_.raw, position_, places_, *probes_);
      position_ = std::min(hits_.start + kHitsWidth, places_);
    }
  }

  bool matchesAt(std::size_t place) {
    if (exact_ != nullptr) return isAt(place, exact_);
    if (known_ != nullptr && isAt(place, known_)) return true;
    const char16_t* wanted = needle_->units();
    std::size_t i = 0;
    while (i < needle_->length() && units_[place + i] == wanted[i]) ++i;
    work_ += i;
    if (i < needle_->length()) return false;
    known_ = units_.raw + place;
    return true;
  }

  /// Whether the text has just these units there, as many as the needle.
  bool isAt(std::size_t place, const Unit* wanted) {
    constexpr std::size_t kFront = 16;
    const Unit* const at = units_.raw + place;
    const std::size_t front = std::min(needle_->length(), kFront);
    if (!base::sameBytes(at, wanted, front * sizeof(Unit))) return false;
    work_ += needle_->length() / kFront;
    return base::sameBytes(at + front, wanted + front, (needle_->length() - front) * sizeof(Unit));
  }

  std::size_t nextLinear() {
    const char16_t* wanted = needle_->units();
    const auto& borders = needle_->borders();
    while (position_ < length_) {
      const char16_t unit = units_[position_++];
      while (matched_ > 0 && (matched_ == needle_->length() || unit != wanted[matched_])) {
        matched_ = borders[matched_];
      }
      if (unit == wanted[matched_]) ++matched_;
      if (matched_ == needle_->length()) return position_ - matched_;
    }
    return none();
  }

  const Needle* needle_;
  Units units_;
  const Unit* exact_ = nullptr;  ///< the needle's units, where those of the text are as they must be
  const Unit* known_ = nullptr;  ///< the last match that was compared unit by unit, as the text has it
  std::size_t length_;
  std::size_t allPlaces_ = 0;  ///< where a match could start: [0, allPlaces_)
  std::size_t places_ = 0;     ///< and is looked for
  std::optional<ProbePair<Unit>> probes_;
  std::size_t position_ = 0;  ///< of the first unit not read yet
  Hits hits_;
  std::size_t work_ = 0;
  std::size_t matched_ = 0;  ///< linear method: so many units in front of position_ match
};

/// Calls search with the matcher that suits the stretch, and returns its result.
template <class Search>
auto withMatcher(const Needle& needle, const Stretch& stretch, Search search) {
  const auto length = static_cast<std::size_t>(stretch.length);
  if (stretch.wide == nullptr) {
    return search(Matcher<NarrowUnits>(needle, needle.narrow(stretch.lineFeedIsMark), length, stretch.narrow,
                                       needle.narrowForms(stretch.lineFeedIsMark).data()));
  }
  if (needle.matchCase()) {
    return search(Matcher<WideUnits>(needle, needle.wide(), length, stretch.wide));
  }
  return search(Matcher<FoldedWideUnits>(needle, needle.wide(), length, stretch.wide));
}

}  // namespace pluvo::text
