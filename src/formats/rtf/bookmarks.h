#pragma once

#include "document/kept.h"
#include "reader.h"

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace pluvo::rtf {

/// Bookmarks that go with the text they mark: all of it went, and no field names them.
class DepartedBookmarks {
 public:
  DepartedBookmarks(std::string_view file, const std::vector<TextMap::Bookmark>& bookmarks,
                    const document::Dropped& dropped);

  /// By the bytes of a name.
  bool contain(std::string_view name) const { return !names_.empty() && names_.contains(plain(name)); }

 private:
  static std::string plain(std::string_view name);

  std::unordered_set<std::string> names_;
};

}  // namespace pluvo::rtf
