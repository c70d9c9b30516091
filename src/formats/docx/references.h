#pragma once

#include "package.h"

#include <string>
#include <string_view>
#include <unordered_set>

namespace pluvo::docx {

/// The bookmarks that fields and links refer to, in the main part, notes, comments, headers and footers.
class BookmarkReferences {
 public:
  BookmarkReferences(const Package& package, base::ByteSpan mainPart);

  bool contain(std::string_view bookmark) const;

 private:
  void addPart(base::ByteSpan part, const std::string& name);
  void addWords(std::string_view instruction);

  std::unordered_set<std::string> names_;  ///< in small letters: capitals do not count
};

}  // namespace pluvo::docx
