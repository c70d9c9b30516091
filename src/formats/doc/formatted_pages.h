#pragma once

#include "base/bytes.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace pluvo::doc {

/// The properties of characters, or of paragraphs, by the place of their text in the WordDocument stream.
/// They lie in pages of 512 bytes; a table says which page is for which bytes.
class FormattedPages {
 public:
  enum class Of : std::uint8_t { characters, paragraphs };

  /// Bytes with the same properties. Where nothing is said there are none, and the style is 0.
  struct Run {
    std::uint32_t from = 0;
    std::uint32_t to = 0;
    std::uint16_t style = 0;  ///< of paragraphs
    base::ByteSpan properties;
  };

  /// Throws DocumentError: damaged where a page lies outside the stream, or where none of them is a page of
  /// formatting.
  FormattedPages(Of of, base::ByteSpan document, base::ByteSpan table);

  Of of() const { return of_; }

  /// Where a run was found.
  struct Place {
    std::size_t entry = 0;
    std::size_t run = 0;
  };
  /// The run of a byte. It is sought where one was found last, and then right after that.
  Run at(std::uint32_t byte, Place& last) const;

  /// From which byte on a page is for the text.
  struct Entry {
    std::uint32_t from = 0;
    std::uint32_t page = 0;
  };
  /// Front to back, with one more that says where the last ends; none where there is no table.
  const std::vector<Entry>& entries() const { return entries_; }

  struct Extent {
    std::uint32_t from = 0;
    std::uint32_t to = 0;
    bool holds(std::uint32_t byte) const { return from <= byte && byte < to; }
  };
  /// The bytes that the page of a byte is for; none where the page says otherwise than the table, or its runs
  /// are in disorder.
  Extent soundPageAt(std::uint32_t byte) const;

  static constexpr std::size_t kPage = 512;
  /// Calls visit(place) with where each page begins.
  template <class Visit>
  void forEachPage(Visit visit) const {
    for (std::size_t i = 0; i + 1 < entries_.size(); ++i) visit(std::size_t{entries_[i].page} * kPage);
  }

 private:
  bool isPage(std::size_t entry) const;
  Run onPage(std::uint32_t byte, Place& place) const;
  Run withProperties(base::ByteSpan page, std::size_t index, Run run) const;

  Of of_;
  base::ByteSpan document_;
  std::vector<Entry> entries_;  ///< and one after the last
};

}  // namespace pluvo::doc
