#include "runs/slice_keys.h"

#include <system_error>

namespace pluvo::runs {

std::uint64_t stableHash(std::string_view bytes) {
  // FNV-1a, whose low bits are then mixed with all others.
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const char c : bytes) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
  hash = (hash ^ hash >> 33U) * 0xFF51AFD7ED558CCD;
  hash = (hash ^ hash >> 33U) * 0xC4CEB9FE1A85EC53;
  return hash ^ hash >> 33U;
}

std::string SliceKeys::keyOf(const std::string& path) {
  // A folder's name ends in a slash where it is told as one.
  const std::size_t last = path.find_last_not_of('/');
  const std::size_t slash = last == std::string::npos ? 0 : path.rfind('/', last);
  const std::string folder = slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
  const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
  const auto [known, isNew] = folders_.try_emplace(folder);
  if (isNew) {
    try {
      known->second = system_.resolve(folder);
    } catch (const std::system_error&) {
      known->second = folder;  // the document will fail
    }
  }
  return known->second.ends_with('/') ? known->second + name : known->second + "/" + name;
}

bool SliceKeys::takes(const std::string& key) const {
  return slice_.count <= 1 || stableHash(key) % slice_.count == slice_.number - 1;
}

bool SliceKeys::isLink(const std::string& path, const std::string& key) const {
  try {
    return system_.resolve(path) != key;
  } catch (const std::system_error&) {
    return false;  // opening it will tell the fault
  }
}

}  // namespace pluvo::runs
