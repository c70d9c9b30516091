#include "cfb/compound_file.h"

#include "base/ascii.h"
#include "base/shown.h"
#include "base/utf.h"
#include "layout.h"
#include "opener.h"

#include <algorithm>

namespace pluvo::cfb {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kMark = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv;

bool isNamed(const Entry& entry, std::string_view name) {
  return std::ranges::equal(entry.name, name, [](char16_t unit, char c) {
    return unit < 0x80 && base::asciiLower(static_cast<char>(unit)) == base::asciiLower(c);
  });
}

errors::DocumentError brokenStream(const Entry& entry) {
  return damaged("its stream \"" + base::shown(base::utf8(entry.name)) +
                 "\" is broken off or runs in circles");
}

/// Bytes from sectors. Nothing where the sectors lack some.
std::optional<base::Bytes> gathered(const base::Bytes& from, std::span<const Run> runs, unsigned shift,
                                    std::uint64_t skipped, std::uint64_t size) {
  std::vector<base::ByteSpan> pieces;
  std::uint64_t left = size;
  for (const Run& run : runs) {
    const std::uint64_t begin = (std::uint64_t{run.first} + skipped) << shift;
    const std::uint64_t wanted = std::min(left, std::uint64_t{run.count} << shift);
    if (begin > from.view.size() || wanted > from.view.size() - begin) return std::nullopt;
    pieces.push_back(from.view.subspan(begin, wanted));
    left -= wanted;
  }
  if (pieces.size() <= 1)
    return base::Bytes{pieces.empty() ? base::ByteSpan() : pieces.front(), from.owner, from.file};
  std::vector<std::uint8_t> all;
  all.reserve(static_cast<std::size_t>(size) + 1);
  for (const base::ByteSpan piece : pieces) all.insert(all.end(), piece.begin(), piece.end());
  return base::Bytes::of(std::move(all));
}

}  // namespace

bool isCompoundFile(base::ByteSpan bytes) {
  return bytes.size() >= header::kSize &&
         std::equal(kMark.begin(), kMark.end(), bytes.begin(),
                    [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
}

CompoundFile CompoundFile::open(base::Bytes bytes) { return Opener(std::move(bytes)).open(); }

std::optional<Id> CompoundFile::find(Id storage, std::string_view path) const {
  const std::size_t slash = std::min(path.find('/'), path.size());
  const std::string_view name = path.substr(0, slash);
  for (Id id = 1; id < entries_.size(); ++id) {
    const Entry& entry = entries_[id];
    if (entry.kind == Entry::Kind::unused || entry.storage != storage || !isNamed(entry, name)) continue;
    return slash == path.size() ? id : find(id, path.substr(slash + 1));
  }
  return std::nullopt;
}

std::optional<Id> CompoundFile::stream(std::string_view path) const {
  const auto id = find(path);
  return id && entries_[*id].kind == Entry::Kind::stream ? id : std::nullopt;
}

base::Bytes CompoundFile::read(Id stream) const {
  const Entry& entry = entries_[stream];
  const bool isSmall = entry.size < kSmall;
  const unsigned shift = isSmall ? kSmallShift : shift_;
  const auto runs = follow(isSmall ? smallOnes_ : followers_, entry.first, sectorsFor(entry.size, shift));
  const auto contents =
      runs ? gathered(isSmall ? small_ : bytes_, *runs, shift, isSmall ? 0 : 1, entry.size) : std::nullopt;
  if (!contents) throw brokenStream(entry);
  return *contents;
}

bool hasStream(base::ByteSpan bytes, std::string_view path) {
  if (!isCompoundFile(bytes)) return false;
  try {
    return CompoundFile::open({bytes, nullptr, nullptr}).stream(path).has_value();
  } catch (const errors::DocumentError&) {
    return false;
  }
}

}  // namespace pluvo::cfb
