#include "names_from.h"

#include "text_input.h"
#include "usage_error.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace pluvo::cli {
namespace {

constexpr std::size_t kMostBytes = 64U << 20U;
const std::string kOption = "--files-from";

/// Gives the names as they are read, so that a list may be larger than the memory.
template <class Take>
void forEachName(const std::string& path, bool nullEnded, Take take) {
  const File file = openGiven(path, kOption);
  const char end = nullEnded ? '\0' : '\n';
  std::string name;
  const auto ended = [&] {
    if (!nullEnded && !name.empty() && name.back() == '\r') name.pop_back();
    if (!name.empty()) take(std::exchange(name, {}));
  };
  const auto tooLong = [&] { return UsageError(kOption + ": a name in " + path + " is over 64 MiB."); };
  std::array<char, 65536> buffer = {};
  while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), file.get())) {
    std::string_view bytes(buffer.data(), count);
    if (!nullEnded && bytes.find('\0') != std::string_view::npos)
      throw UsageError(kOption + ": the names end with zero bytes; add --null.");
    for (std::size_t at = 0; (at = bytes.find(end)) != std::string_view::npos; bytes.remove_prefix(at + 1)) {
      name += bytes.substr(0, at);
      ended();
    }
    name += bytes;
    if (name.size() > kMostBytes) throw tooLong();
  }
  if (std::ferror(file.get()) != 0)
    throw UsageError(kOption + ": cannot read " + path + ": " + std::strerror(errno) + ".");
  ended();
}

class Names {
 public:
  explicit Names(const std::string& path) : path_(path) {}

  void add(std::string name) {
    bytes_ += name.size() + 1;
    if (bytes_ > kMostBytes)
      throw UsageError(kOption + ": the names in " + path_ +
                       " are over 64 MiB; take slices of them with --slice, or a shorter list.");
    names_.push_back(std::move(name));
  }
  std::vector<std::string> taken() { return std::move(names_); }

 private:
  const std::string& path_;
  std::vector<std::string> names_;
  std::size_t bytes_ = 0;
};

}  // namespace

std::vector<std::string> namesFrom(const std::string& path, bool nullEnded) {
  Names names(path);
  forEachName(path, nullEnded, [&](std::string name) { names.add(std::move(name)); });
  return names.taken();
}

std::vector<std::string> namesOfSlice(const std::string& path, bool nullEnded, runs::SliceKeys& keys,
                                      runs::ListDigest& list) {
  Names names(path);
  forEachName(path, nullEnded, [&](std::string name) {
    const std::string key = keys.keyOf(name);
    ++list.count;
    list.names += runs::stableHash(name);
    list.keys += runs::stableHash(key);
    if (keys.takes(key)) names.add(std::move(name));
  });
  return names.taken();
}

}  // namespace pluvo::cli
