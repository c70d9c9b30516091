#include "files/lock_files.h"

#include "paths.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace pluvo::files {

namespace {

/// Without its first character, which may be several bytes.
std::string_view withoutFirst(std::string_view name) {
  const auto continues = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; };
  std::size_t length = name.empty() ? 0 : 1;
  while (length < name.size() && continues(name[length])) ++length;
  return name.substr(length);
}

/// How many characters are dropped depends on the name's length and the word processor's version.
std::vector<std::string> lockNamesOf(std::string_view name) {
  const std::string_view shorter = withoutFirst(name);
  const std::string whole(name);
  return {".~lock." + whole + "#", "~$" + whole, "~$" + std::string(shorter),
          "~$" + std::string(withoutFirst(shorter))};
}

}  // namespace

std::optional<std::string> lockFileOf(FileSystem& system, const std::string& document) {
  const std::string folder(folderPrefixOf(document));
  for (std::string& name : lockNamesOf(nameIn(document)))
    if (name != nameIn(document) && system.exists(folder + name)) return std::move(name);
  return std::nullopt;
}

}  // namespace pluvo::files
