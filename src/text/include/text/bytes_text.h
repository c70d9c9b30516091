#pragma once

#include "text/byte_coding.h"
#include "text/positions.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace pluvo::text {

/// A text as it lies in the bytes of its file: which unit begins where. CR LF, LF and CR are one paragraph
/// mark each. May be used by several threads.
///
/// The bytes may lie in a file that another program writes into. A reader then gets something other than the
/// text, but of bytes in the file, and as many units as it asked for.
class BytesText {
 public:
  using Bytes = std::span<const std::uint8_t>;

  struct Place {
    std::size_t offset = 0;   ///< of the character's first byte
    bool insidePair = false;  ///< the unit is the second half of the character that begins there
  };

  BytesText(const BytesText&) = delete;
  BytesText& operator=(const BytesText&) = delete;
  virtual ~BytesText() = default;

  Position length() const { return length_; }
  /// Those of the last mark included, where it has any.
  Bytes bytes() const { return bytes_; }
  /// Null for UTF-8.
  virtual const ByteCoding* coding() const = 0;

  /// Where a unit lies; after all bytes for the end of the text.
  virtual Place placeOf(Position position) const = 0;
  /// Which unit begins at an offset, where one does.
  virtual Position positionAt(std::size_t offset) const = 0;
  /// The same, counted from a unit in front of it or from one known before.
  virtual Position positionAfter(Position position, std::size_t offset, std::size_t wanted) const = 0;
  /// Remembers for a while where a unit lies that begins a character: edits begin and end where matches do.
  virtual void learn(Position position, std::size_t offset) const = 0;
  /// Whether a unit begins there: not in the middle of a character or a CR LF.
  virtual bool beginsUnit(std::size_t offset) const = 0;

  virtual char16_t operator[](Position position) const = 0;
  /// The units [from, to).
  virtual void copy(Position from, Position to, char16_t* out) const = 0;

  // Without what is noted, from an offset at which a unit begins:

  /// How many units begin in [from, to).
  virtual std::size_t unitsIn(std::size_t from, std::size_t to) const = 0;
  /// Where the unit lies after so many.
  virtual Place walk(std::size_t from, Position units) const = 0;

 protected:
  BytesText(Bytes bytes, Position length, std::shared_ptr<const void> owner)
      : bytes_(bytes), length_(length), owner_(std::move(owner)) {}

 private:
  Bytes bytes_;
  Position length_;
  std::shared_ptr<const void> owner_;
};

}  // namespace pluvo::text
