#include "zip/archive.h"

#include "base/ascii.h"
#include "base/fresh_memory.h"
#include "damage.h"
#include "opener.h"

#include <libdeflate.h>

#include <algorithm>
#include <memory>
#include <new>
#include <string>
#include <utility>

namespace pluvo::zip {

namespace {

char folded(char c) { return c == '\\' ? '/' : base::asciiLower(c); }

std::string_view withoutSlash(std::string_view name) {
  if (!name.empty() && folded(name.front()) == '/') name.remove_prefix(1);
  return name;
}

struct Decompressor {
  Decompressor() : handle(libdeflate_alloc_decompressor()) {
    if (handle == nullptr) throw std::bad_alloc();
  }
  ~Decompressor() { libdeflate_free_decompressor(handle); }
  Decompressor(const Decompressor&) = delete;
  Decompressor& operator=(const Decompressor&) = delete;
  libdeflate_decompressor* handle;
};

errors::DocumentError damagedMember(const Member& member) {
  return damaged("the contents of its member " + shown(member.name) + " are not what they were");
}

base::Bytes inflated(base::ByteSpan packed, const Member& member) {
  const auto contents = base::freshMemory(member.size + 1);
  contents[static_cast<std::ptrdiff_t>(member.size)] = base::Bytes::kBehind;
  thread_local const Decompressor decompressor;  // clearing a new one takes longer than most parts
  std::size_t used = 0;
  const libdeflate_result result = libdeflate_deflate_decompress_ex(
      decompressor.handle, packed.data(), packed.size(), contents.get(), member.size, &used, nullptr);
  if (result != LIBDEFLATE_SUCCESS || used != packed.size()) throw damagedMember(member);
  return {base::ByteSpan(contents.get(), member.size), contents, nullptr};
}

}  // namespace

int compareNames(std::string_view a, std::string_view b) {
  a = withoutSlash(a);
  b = withoutSlash(b);
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    if (a[i] == b[i]) continue;
    if (const int difference = folded(a[i]) - folded(b[i]); difference != 0) return difference;
  }
  return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

Archive Archive::open(base::Bytes bytes, const Limits& limits) {
  return openArchive(std::move(bytes), limits);
}

const Member* Archive::find(std::string_view name) const {
  const auto at = std::lower_bound(byName_.begin(), byName_.end(), name,
                                   [&](std::uint32_t index, std::string_view sought) {
                                     return compareNames(members_[index].name, sought) < 0;
                                   });
  if (at == byName_.end() || compareNames(members_[*at].name, name) != 0) return nullptr;
  return &members_[*at];
}

base::Bytes Archive::read(const Member& member) const {
  if (member.size > memberSize_) {
    throw errors::DocumentError(
        errors::Problem::tooLarge,
        "The document's part " + shown(member.name) + " is too large to be worked on; divide the document.");
  }
  const base::ByteSpan packed = bytes_.view.subspan(member.data, member.packedSize);
  base::Bytes contents;
  if (member.method == Method::deflated) {
    contents = inflated(packed, member);
  } else if (member.method == Method::stored) {
    if (packed.size() != member.size) throw damagedMember(member);
    contents = {packed, bytes_.owner, bytes_.file};
  } else {
    throw errors::DocumentError(
        errors::Problem::unsupported,
        "The document's part " + shown(member.name) +
            " is compressed by a method that documents do not use; let a word processor "
            "save the document anew.");
  }
  if (libdeflate_crc32(0, contents.view.data(), contents.view.size()) != member.crc)
    throw damagedMember(member);
  return contents;
}

}  // namespace pluvo::zip
