#pragma once

#include "formatted_pages.h"

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace pluvo::doc {

/// Packs runs of formatting into pages, and puts these after the WordDocument stream.
class PageWriter {
 public:
  using Run = FormattedPages::Run;
  using Entry = FormattedPages::Entry;

  /// The stream must end where a page may begin.
  PageWriter(FormattedPages::Of of, std::vector<std::uint8_t>& document);

  /// The runs front to back, without gaps. Of characters those with the same properties become one.
  void add(const Run& run);
  /// Ends the page at hand; so does leaving out bytes.
  void endPage();

  /// From which byte on each page is for the text.
  const std::vector<Entry>& entries() const { return entries_; }

 private:
  std::string recordOf(const Run& run) const;
  bool isSameAsLast(const Run& run, const std::string& record) const;

  FormattedPages::Of of_;
  std::vector<std::uint8_t>& document_;
  std::vector<Entry> entries_;
  // The page at hand:
  std::vector<std::uint32_t> places_;  ///< of each run, and where the last one ends
  std::vector<std::uint8_t> records_;  ///< where those of each run lie
  std::map<std::string, std::size_t> known_;
  std::array<std::uint8_t, FormattedPages::kPage> page_{};
  std::size_t lowest_ = 0;
  std::string last_;
};

}  // namespace pluvo::doc
