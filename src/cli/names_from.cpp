#include "names_from.h"

#include "text_input.h"
#include "usage_error.h"

namespace pluvo::cli {

std::vector<std::string> namesFrom(const std::string& path, bool nullEnded) {
  std::vector<std::string> names;
  const std::string bytes = bytesFrom(path, "--files-from");
  const char end = nullEnded ? '\0' : '\n';
  if (!nullEnded && bytes.find('\0') != std::string::npos)
    throw UsageError("--files-from: the names end with zero bytes; add --null.");
  std::size_t from = 0;
  while (from < bytes.size()) {
    const std::size_t to = std::min(bytes.find(end, from), bytes.size());
    std::string name = bytes.substr(from, to - from);
    if (!nullEnded && !name.empty() && name.back() == '\r') name.pop_back();
    if (!name.empty()) names.push_back(std::move(name));
    from = to + 1;
  }
  return names;
}

}  // namespace pluvo::cli
