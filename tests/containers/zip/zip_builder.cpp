#include "containers/zip/zip_builder.h"

#include <libdeflate.h>

#include <algorithm>

namespace pluvo::zip {

namespace {

struct Field {
  std::uint64_t value;
  std::size_t size;  ///< in bytes
};
void add(std::string& out, std::initializer_list<Field> fields) {
  for (const auto& [value, size] : fields) {
    for (std::size_t i = 0; i < size; ++i) out.push_back(static_cast<char>(value >> (8 * i)));
  }
}

std::string deflate(const std::string& contents) {
  libdeflate_compressor* const compressor = libdeflate_alloc_compressor(9);
  std::string packed(libdeflate_deflate_compress_bound(compressor, contents.size()), '\0');
  packed.resize(libdeflate_deflate_compress(compressor, contents.data(), contents.size(), packed.data(),
                                            packed.size()));
  libdeflate_free_compressor(compressor);
  return packed;
}

/// What local header and directory entry have in common, in this order: flags, method, time and date, CRC,
/// sizes.
struct Common {
  std::uint16_t flags, method;
  std::uint32_t crc, packed, size;

  void addTo(std::string& out) const {
    add(out, {{flags, 2}, {method, 2}, {0x21004321, 4}, {crc, 4}, {packed, 4}, {size, 4}});
  }
};

std::string zip64Extra(std::initializer_list<std::uint64_t> values) {
  std::string extra;
  add(extra, {{1, 2}, {8 * values.size(), 2}});
  for (const std::uint64_t value : values) add(extra, {{value, 8}});
  return extra;
}

class Builder {
 public:
  Built run(const Zip& zip) {
    for (const Entry& entry : zip.entries) addMember(entry);
    built_.directory = out().size();
    built_.central.resize(zip.entries.size());
    const std::size_t count = zip.entries.size();
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t entry = zip.directoryReversed ? count - 1 - i : i;
      addCentral(zip.entries[entry], entry);
    }
    addEnd(zip);
    return std::move(built_);
  }

 private:
  std::string& out() { return built_.bytes; }

  void addMember(const Entry& entry) {
    const std::string packed = entry.deflated ? deflate(entry.contents) : entry.contents;
    const std::uint32_t crc = libdeflate_crc32(0, entry.contents.data(), entry.contents.size());
    Common common{entry.flags, static_cast<std::uint16_t>(entry.deflated ? 8 : 0), crc,
                  static_cast<std::uint32_t>(packed.size()),
                  static_cast<std::uint32_t>(entry.contents.size())};
    if (entry.descriptor) common.flags |= 8;
    commons_.push_back(common);
    built_.local.push_back(out().size());

    Common written = common;
    std::string extra = entry.localExtra;
    if (entry.descriptor) written.crc = written.packed = written.size = 0;
    if (entry.zip64) {
      extra = zip64Extra({written.size, written.packed}) + extra;
      written.packed = written.size = 0xffffffff;
    }
    add(out(), {{0x04034b50, 4}, {entry.zip64 ? 45U : 20U, 2}});
    written.addTo(out());
    add(out(), {{entry.name.size(), 2}, {extra.size(), 2}});
    out() += entry.name + extra + packed;
    const std::size_t wide = entry.zip64 ? 8 : 4;
    if (entry.descriptor)
      add(out(), {{0x08074b50, 4}, {crc, 4}, {packed.size(), wide}, {entry.contents.size(), wide}});
    out() += entry.after;
  }

  void addCentral(const Entry& entry, std::size_t index) {
    built_.central[index] = out().size();
    Common common = commons_[index];
    std::string extra = entry.centralExtra;
    auto offset = static_cast<std::uint32_t>(built_.local[index]);
    if (entry.zip64) {
      extra = zip64Extra({common.size, common.packed, offset}) + extra;
      common.size = common.packed = offset = 0xffffffff;
    }
    add(out(), {{0x02014b50, 4}, {0x0314, 2}, {entry.zip64 ? 45U : 20U, 2}});
    common.addTo(out());
    add(out(), {{entry.name.size(), 2}, {extra.size(), 2}, {entry.comment.size(), 2}});
    add(out(), {{0, 2}, {1, 2}, {0x81a40000, 4}, {offset, 4}});
    out() += entry.name + extra + entry.comment;
  }

  void addEnd(const Zip& zip) {
    const std::size_t count = zip.entries.size();
    const std::size_t size = out().size() - built_.directory;
    built_.end64 = out().size();
    if (zip.zip64End) {
      add(out(), {{0x06064b50, 4}, {44, 8}, {0x002d002d, 4}, {0, 8}});
      add(out(), {{count, 8}, {count, 8}, {size, 8}, {built_.directory, 8}});
      add(out(), {{0x07064b50, 4}, {0, 4}, {built_.end64, 8}, {1, 4}});
    }
    built_.end = out().size();
    const auto orAbove = [&](std::size_t value) { return zip.zip64End ? 0xffffffff : value; };
    add(out(), {{0x06054b50, 4}, {0, 4}, {orAbove(count), 2}, {orAbove(count), 2}, {orAbove(size), 4}});
    add(out(), {{orAbove(built_.directory), 4}, {zip.comment.size(), 2}});
    out() += zip.comment;
  }

  Built built_;
  std::vector<Common> commons_;
};

}  // namespace

void Built::set(std::size_t at, std::uint64_t value, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i) bytes.at(at + i) = static_cast<char>(value >> (8 * i));
}

Built build(const Zip& zip) { return Builder().run(zip); }

std::vector<Shape> soundShapes() {
  using namespace std::string_literals;
  std::vector<Shape> shapes;
  const auto add = [&](const char* what, auto change) {
    Zip zip{{{"[Content_Types].xml", "<Types/>"},
             {"word/document.xml", std::string(500, 'd') + "ocument"},
             {"word/media/p.png", "picture", false}}};
    change(zip);
    shapes.push_back({what, zip});
  };
  const auto addOfEach = [&](const char* what, auto change) {
    add(what, [&](Zip& zip) { std::for_each(zip.entries.begin(), zip.entries.end(), change); });
  };
  add("plain", [](Zip&) {});
  add("folders", [](Zip& z) { z.entries.insert(z.entries.begin() + 1, {"word/", "", false}); });
  add("ZIP64 end", [](Zip& z) { z.zip64End = true; });
  add("a comment that looks like an end", [](Zip& z) { z.comment = "PK\5\6 is no end here"; });
  add("directory in another order", [](Zip& z) { z.directoryReversed = true; });
  add("names that would leave a folder", [](Zip& z) { z.entries.push_back({"../../etc/x", "harmless"}); });
  addOfEach("empty members", [](Entry& e) { e.contents.clear(); });
  addOfEach("descriptors", [](Entry& e) { e.descriptor = true; });
  addOfEach("ZIP64 members", [](Entry& e) { e.zip64 = true; });
  addOfEach("ZIP64 members with descriptors", [](Entry& e) { e.zip64 = e.descriptor = true; });
  addOfEach("comments of members", [](Entry& e) { e.comment = "of a member"; });
  addOfEach("extra fields", [](Entry& e) {
    e.localExtra = "\x20\xa2\x04\0abcd"s;
    e.centralExtra = "UT\x05\0\1abcd"s;
  });
  addOfEach("extra fields that are padding", [](Entry& e) { e.localExtra = e.centralExtra = "\0\0\0"s; });
  addOfEach("UTF-8, level and reserved flags", [](Entry& e) { e.flags = 0x0806; });
  addOfEach("bytes between members", [](Entry& e) { e.after = "PK\3\4 left over"; });
  return shapes;
}

}  // namespace pluvo::zip
