#pragma once

#include "base/little_endian.h"
#include "cfb/compound_file.h"

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace pluvo::cfb {

/// A path, "Storage/Stream", and the contents. A storage comes before what lies in it, with nothing in it.
using Streams = std::vector<std::pair<std::string, std::string>>;

/// A compound file without streams' contents: a header, the table of sectors, the directory.
inline std::vector<std::uint8_t> emptyCompoundFile(const Streams& streams, unsigned shift = 9) {
  const std::size_t sector = std::size_t{1} << shift;
  const std::size_t sectors = (streams.size() + 1) * 128 / sector + 1;
  std::vector<std::uint8_t> file((2 + sectors) * sector);
  const auto set = [&](std::size_t at, auto value) { base::put(std::span(file), at, value); };
  for (std::size_t i = 0; i < 8; ++i)
    file[i] = static_cast<std::uint8_t>("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"[i]);
  set(0x1A, static_cast<std::uint16_t>(shift == 9 ? 3 : 4));
  set(0x1E, static_cast<std::uint16_t>(shift));
  set(0x20, std::uint16_t{6});
  set(0x2C, 1U);
  set(0x30, 1U);
  set(0x38, 4096U);
  set(0x44, ~1U);
  for (std::size_t i = 1; i < 109; ++i) set(0x4C + 4 * i, ~0U);
  set(sector, ~2U);
  for (std::size_t i = 1; i < sector / 4; ++i)
    set(sector + 4 * i, i < sectors ? static_cast<std::uint32_t>(i + 1) : i == sectors ? ~1U : ~0U);
  const auto entryAt = [&](std::size_t id) { return 2 * sector + 128 * id; };
  const auto name = [&](std::size_t id, const std::string& text, std::uint8_t type) {
    for (std::size_t i = 0; i < text.size(); ++i)
      file[entryAt(id) + 2 * i] = static_cast<std::uint8_t>(text[i]);
    set(entryAt(id) + 0x40, static_cast<std::uint16_t>(2 * text.size() + 2));
    file[entryAt(id) + 0x42] = type;
  };
  for (std::size_t id = 0; id < sectors * sector / 128; ++id)
    for (const std::size_t link : {0x44U, 0x48U, 0x4CU}) set(entryAt(id) + link, ~0U);
  name(0, "Root Entry", 5);
  std::map<std::string, std::size_t> last = {{"", entryAt(0) + 0x4C}};  // where the next one is linked to
  for (std::size_t i = 0; i < streams.size(); ++i) {
    const auto& [path, contents] = streams[i];
    const std::size_t slash = path.rfind('/');
    std::size_t& link = last[slash == std::string::npos ? "" : path.substr(0, slash)];
    set(link, static_cast<std::uint32_t>(i + 1));
    link = entryAt(i + 1) + 0x48;
    const bool isStorage = i + 1 < streams.size() && streams[i + 1].first.starts_with(path + "/");
    name(i + 1, path.substr(slash + 1), isStorage ? 1 : 2);
    if (isStorage) last[path] = entryAt(i + 1) + 0x4C;
  }
  return file;
}

/// A compound file of version 3 or 4 with these streams.
inline std::string compoundFile(const Streams& streams, unsigned shift = 9) {
  const CompoundFile file = CompoundFile::open(base::Bytes::of(emptyCompoundFile(streams, shift)));
  std::vector<Change> changes;
  for (Id id = 1; id <= streams.size(); ++id) {
    const std::string& contents = streams[id - 1].second;
    if (file.entries()[id].kind == Entry::Kind::stream)
      changes.push_back({id, {{reinterpret_cast<const std::uint8_t*>(contents.data()), contents.size()}}});
  }
  base::MemoryOutput out;
  rewrite(file, changes, out);
  return {out.bytes().begin(), out.bytes().end()};
}

}  // namespace pluvo::cfb
