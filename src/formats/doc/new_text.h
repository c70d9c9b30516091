#pragma once

#include "page_writer.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::doc {

/// Text that comes after all there is in the WordDocument stream, and how it looks.
///
/// A stretch that does not end in a paragraph mark has no end of formatting at its end: this would end a
/// paragraph there. The next text lies in the same run, or a mark that no piece stands for.
class NewText {
 public:
  /// The text begins at this byte of the stream.
  explicit NewText(std::uint32_t from) : from_(from) {}

  struct Paragraph {
    std::uint16_t style = 0;
    std::string properties;
    bool operator==(const Paragraph&) const = default;
  };

  /// Returns where a stretch comes to lie, of which the first paragraph looks so. Its characters follow.
  std::uint32_t begin(const Paragraph& first);
  /// Characters of one look.
  void add(std::u16string_view units, const std::string& properties);
  /// The paragraph ends of which they are.
  void endParagraph(const Paragraph& paragraph);
  /// The stretch ends amid a paragraph.
  void endWithin(const Paragraph& paragraph);

  std::uint32_t from() const { return from_; }
  bool empty() const { return bytes_.empty(); }
  std::uint32_t end() const { return from_ + static_cast<std::uint32_t>(bytes_.size()); }

  /// Puts the text into a stream that ends where it begins.
  void write(std::vector<std::uint8_t>& document);
  /// Writes how it looks. Bytes before it, from a byte on, have no looks.
  void writePages(FormattedPages::Of of, std::uint32_t from, PageWriter& pages) const;

 private:
  struct Run {
    std::uint32_t to = 0;
    Paragraph look;  ///< of characters without a style
  };

  void close();

  std::uint32_t from_;
  std::vector<std::uint8_t> bytes_;
  std::vector<Run> characters_;
  std::vector<Run> paragraphs_;
  bool isWithin_ = false;  ///< the last paragraph run has no end yet
};

}  // namespace pluvo::doc
