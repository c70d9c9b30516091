#pragma once

#include "scan.h"
#include "text/byte_coding.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::text {

/// A text searched for as it looks in the bytes of an encoding. A sign may have forms of several lengths: k,
/// K and the sign for kelvin, or CR LF and LF.
///
/// Probes are of bytes that lie at fixed distances from one sign, the anchor; the signs on both its sides are
/// compared from there.
class ByteNeedle {
 public:
  /// The canonical form of each byte; see Needle.
  using NarrowForms = std::array<char16_t, 256>;
  using Bytes = std::span<const std::uint8_t>;

  /// Units in canonical form; forms and coding, which is null for UTF-8, must outlive this.
  ByteNeedle(std::u16string_view units, bool matchCase, const NarrowForms& forms, const ByteCoding* coding);

  /// None where it cannot be searched for in bytes. It holds half of a pair, a line feed that is no line end,
  /// or in UTF-16 any line end, or has too many forms.
  const std::optional<ProbePair<std::uint8_t>>& probes() const { return probes_; }
  /// Whether it holds a unit that the encoding has not.
  bool isImpossible() const { return isImpossible_; }
  /// How many bytes lie after the anchor's first, that one included, at the least.
  std::size_t leastFromAnchor() const { return leastFromAnchor_; }

  /// Bytes of a match: [from, to).
  struct Match {
    std::size_t from = kNone;
    std::size_t to = kNone;
  };
  /// The match whose anchor stands at an offset; kNone where there is none. Adds to work how many signs were
  /// compared.
  /// Tells as well by which bytes it went, where the text has forms; none where it went by the end of the
  /// text.
  Match matchAt(Bytes bytes, std::size_t anchor, std::size_t& work, Match& compared) const;
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  /// Whether the bytes of a match are a match wherever a unit begins. Not so of line ends, where bytes beside
  /// them count. Of a text with one form nobody needs to know.
  bool hasForms() const { return exact_.empty() && !hasMark_; }
  /// Whether bytes that are no match are none anywhere. In other encodings they may begin within a unit.
  bool hasRefusals() const { return hasForms() && coding_ == nullptr; }
  /// Whether bytes stand at an offset, where a unit has to begin.
  bool isAt(Bytes bytes, std::size_t from, std::string_view form, std::size_t& work) const;

 private:
  /// A character, or half of one, and all the ways to write it.
  struct Sign {
    std::vector<std::string> forms;
    bool isMark = false;

    std::size_t least() const;
    bool isFixed() const;
  };
  static std::vector<Sign> signsOf(std::u16string_view units, bool matchCase);
  std::vector<Sign> signsIn(const ByteCoding& coding, std::u16string_view units) const;
  std::size_t rarityIn(const Sign& sign, std::size_t byte) const;
  void choose(const std::vector<Sign>& signs);
  bool is(char32_t point, std::size_t sign) const;
  Match matchInCoding(Bytes bytes, std::size_t anchor, std::size_t& work) const;

  bool matchCase_;
  const NarrowForms& forms_;
  const ByteCoding* coding_;
  bool isImpossible_ = false;
  bool hasMark_ = false;
  std::vector<Sign> coded_;  ///< of other encodings than UTF-8
  std::u32string signs_;     ///< canonical
  /// The bytes, where there is but one way to write it; and of them those in front of the anchor.
  std::string exact_;
  std::size_t exactBefore_ = 0;
  std::size_t anchor_ = 0;  ///< index of the sign
  std::size_t leastFromAnchor_ = 0;
  std::optional<ProbePair<std::uint8_t>> probes_;
};

/// Finds the matches in bytes one after the other.
class ByteMatcher {
 public:
  ByteMatcher(const ByteNeedle& needle, ByteNeedle::Bytes bytes)
      : needle_(&needle),
        bytes_(bytes),
        allPlaces_(needle.isImpossible() || bytes.size() < needle.leastFromAnchor()
                       ? 0
                       : bytes.size() - needle.leastFromAnchor() + 1),
        places_(allPlaces_) {}

  /// From now on finding none says that no anchor stands in front of a place. One at or after it may be told.
  void endBefore(std::size_t place) { places_ = std::min(place, allPlaces_); }

  /// The next one; ByteNeedle::kNone where there is none.
  ByteNeedle::Match next();
  /// Whether comparing made much more work than reading on, so that it stopped in front of a place.
  std::optional<std::size_t> gaveUpAt() const { return gaveUpAt_; }

 private:
  /// Bytes that were compared.
  struct Compared {
    std::string bytes;
    std::size_t before = 0;  ///< so many of them lie in front of the anchor
    bool isMatch = false;
  };
  ByteNeedle::Match matchAt(std::size_t anchor);

  const ByteNeedle* needle_;
  ByteNeedle::Bytes bytes_;
  std::size_t allPlaces_;  ///< where an anchor could stand: [0, allPlaces_)
  std::size_t places_;     ///< and is looked for
  std::size_t position_ = 0;
  Hits hits_;
  std::size_t work_ = 0;
  std::optional<std::size_t> gaveUpAt_;
  std::array<Compared, 4> compared_;  ///< the last ones, since a text mostly has few
  std::size_t oldest_ = 0;
};

}  // namespace pluvo::text
