#pragma once

#include "base/bytes.h"
#include "text/positions.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace pluvo::doc {

/// The texts of a document, in the order in which they lie.
enum class Part : std::uint8_t { main, footnotes, headers, macros, comments, endnotes, boxes, headerBoxes };
inline constexpr std::size_t kParts = 8;

/// The tables in the table stream, by their numbers in the information block.
enum class Table : std::uint8_t {
  styles = 1,
  footnoteReferences = 2,
  footnoteTexts = 3,
  commentReferences = 4,
  commentTexts = 5,
  sections = 6,
  headerTexts = 11,
  characterPages = 12,
  paragraphPages = 13,
  properties = 31,
  titles = 32,
  pieces = 33,
  commentAuthors = 36,
  mainShapes = 40,
  headerShapes = 41,
  endnoteReferences = 46,
  endnoteTexts = 47,
  drawings = 50,
  boxTexts = 56,
  headerBoxTexts = 58,
  variables = 60,
  savedBy = 71,
};

/// The file information block, with which the WordDocument stream begins: the document's kind, and where
/// everything lies.
class Fib {
 public:
  /// Walks the block by the counts in it. Throws DocumentError: damaged.
  static Fib read(base::ByteSpan document, std::size_t at = 0);

  enum Flag : std::uint16_t {
    kTemplate = 0x0001,
    kGlossary = 0x0002,
    kSavedInParts = 0x0004,
    kEncrypted = 0x0100,
    kTableOne = 0x0200,
    kReadOnlyRecommended = 0x0400,
    kWriteReservation = 0x0800,
    kObfuscated = 0x8000,
  };
  bool has(Flag flag) const { return (flags_ & flag) != 0; }
  std::uint16_t version() const { return version_; }
  /// The sector of 512 bytes in which the block of a template's glossary lies; 0 where there is none.
  std::uint16_t glossary() const { return glossary_; }
  /// Where the text lay when the document was last saved as a whole.
  std::uint32_t textFrom() const { return textFrom_; }
  std::uint32_t textTo() const { return textTo_; }

  text::Position length(Part part) const { return lengths_[static_cast<std::size_t>(part)]; }
  /// Where a part begins among all of them.
  text::Position begin(Part part) const;
  /// Of all parts, with the mark at the very end that there is where any but the first has text.
  text::Position lengthOfAll() const;

  /// Where a table lies in its stream.
  struct Extent {
    std::uint32_t at = 0;
    std::uint32_t length = 0;
  };
  /// Of all tables, by their numbers.
  const std::vector<Extent>& extents() const { return tables_; }
  const Extent& extent(Table which) const { return tables_[static_cast<std::size_t>(which)]; }
  /// Where in the stream the lengths of texts stand, and the extents.
  std::size_t lengthsAt() const { return lengthsAt_; }
  std::size_t extentsAt() const { return extentsAt_; }
  /// Where the number of bytes in use stands.
  std::size_t sizeAt() const { return sizeAt_; }

  /// The bytes of a table; none where there is no such table. Throws DocumentError: damaged where the stream
  /// does not hold them.
  base::ByteSpan in(base::ByteSpan tables, Table which) const {
    return in(tables, static_cast<std::size_t>(which));
  }
  base::ByteSpan in(base::ByteSpan tables, std::size_t number) const;

 private:
  std::uint16_t flags_ = 0;
  std::uint16_t version_ = 0;
  std::uint16_t glossary_ = 0;
  std::uint32_t textFrom_ = 0;
  std::uint32_t textTo_ = 0;
  std::array<text::Position, kParts> lengths_{};
  std::vector<Extent> tables_;
  std::size_t lengthsAt_ = 0;
  std::size_t extentsAt_ = 0;
  std::size_t sizeAt_ = 0;
};

}  // namespace pluvo::doc
