#include "documents/archive/zip_builder.h"

#include <libdeflate.h>

namespace pluvo::archive {

namespace {

void add(std::string& out, std::uint64_t value, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i) out.push_back(static_cast<char>(value >> (8 * i)));
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
    add(out, flags, 2);
    add(out, method, 2);
    add(out, 0x21004321, 4);
    add(out, crc, 4);
    add(out, packed, 4);
    add(out, size, 4);
  }
};

std::string zip64Extra(std::initializer_list<std::uint64_t> values) {
  std::string extra;
  add(extra, 1, 2);
  add(extra, 8 * values.size(), 2);
  for (const std::uint64_t value : values) add(extra, value, 8);
  return extra;
}

class Builder {
 public:
  Built run(const Zip& zip) {
    for (const Entry& entry : zip.entries) addMember(entry);
    built_.directory = out().size();
    built_.central.resize(zip.entries.size());
    if (zip.directoryReversed) {
      for (std::size_t i = zip.entries.size(); i-- > 0;) addCentral(zip.entries[i], i);
    } else {
      for (std::size_t i = 0; i < zip.entries.size(); ++i) addCentral(zip.entries[i], i);
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
    add(out(), 0x04034b50, 4);
    add(out(), entry.zip64 ? 45 : 20, 2);
    written.addTo(out());
    add(out(), entry.name.size(), 2);
    add(out(), extra.size(), 2);
    out() += entry.name + extra + packed;
    if (entry.descriptor) {
      add(out(), 0x08074b50, 4);
      add(out(), crc, 4);
      add(out(), packed.size(), entry.zip64 ? 8 : 4);
      add(out(), entry.contents.size(), entry.zip64 ? 8 : 4);
    }
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
    add(out(), 0x02014b50, 4);
    add(out(), 0x0314, 2);
    add(out(), entry.zip64 ? 45 : 20, 2);
    common.addTo(out());
    add(out(), entry.name.size(), 2);
    add(out(), extra.size(), 2);
    add(out(), entry.comment.size(), 2);
    add(out(), 0, 2);
    add(out(), 1, 2);
    add(out(), 0x81a40000, 4);
    add(out(), offset, 4);
    out() += entry.name + extra + entry.comment;
  }

  void addEnd(const Zip& zip) {
    const std::size_t count = zip.entries.size();
    const std::size_t size = out().size() - built_.directory;
    built_.end64 = out().size();
    if (zip.zip64End) {
      add(out(), 0x06064b50, 4);
      add(out(), 44, 8);
      add(out(), 0x002d002d, 4);
      add(out(), 0, 8);
      for (const std::size_t value : {count, count, size, built_.directory}) add(out(), value, 8);
      add(out(), 0x07064b50, 4);
      add(out(), 0, 4);
      add(out(), built_.end64, 8);
      add(out(), 1, 4);
    }
    built_.end = out().size();
    add(out(), 0x06054b50, 4);
    add(out(), 0, 4);
    add(out(), zip.zip64End ? 0xffff : count, 2);
    add(out(), zip.zip64End ? 0xffff : count, 2);
    add(out(), zip.zip64End ? 0xffffffff : size, 4);
    add(out(), zip.zip64End ? 0xffffffff : built_.directory, 4);
    add(out(), zip.comment.size(), 2);
    out() += zip.comment;
  }

  Built built_;
  std::vector<Common> commons_;
};

}  // namespace

void Built::set(std::size_t at, std::uint64_t value, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i) bytes.at(at + i) = static_cast<char>(value >> (8 * i));
}

void Built::setMethod(std::size_t member, std::uint16_t value) {
  set16(local[member] + 8, value);
  set16(central[member] + 10, value);
}

void Built::setCrc(std::size_t member, std::uint32_t value) {
  set32(local[member] + 14, value);
  set32(central[member] + 16, value);
}

void Built::setSize(std::size_t member, std::uint32_t value) {
  set32(local[member] + 22, value);
  set32(central[member] + 24, value);
}

void Built::setCount(std::uint16_t value) {
  set16(end + 8, value);
  set16(end + 10, value);
}

Built build(const Zip& zip) { return Builder().run(zip); }

std::vector<Shape> soundShapes() {
  using namespace std::string_literals;
  const auto with = [](auto change) {
    Zip zip{{{"[Content_Types].xml", "<Types/>"},
             {"word/document.xml", std::string(500, 'd') + "ocument"},
             {"word/media/p.png", "picture", false}},
            "",
            false,
            false};
    change(zip);
    return zip;
  };
  const auto each = [](Zip& zip, auto change) {
    for (Entry& entry : zip.entries) change(entry);
  };
  return {
      {"plain", with([](Zip&) {})},
      {"empty members", with([&](Zip& z) { each(z, [](Entry& e) { e.contents.clear(); }); })},
      {"folders", with([](Zip& z) {
         z.entries.insert(z.entries.begin() + 1, {"word/", "", false});
       })},
      {"descriptors", with([&](Zip& z) { each(z, [](Entry& e) { e.descriptor = true; }); })},
      {"ZIP64 members", with([&](Zip& z) { each(z, [](Entry& e) { e.zip64 = true; }); })},
      {"ZIP64 members with descriptors",
       with([&](Zip& z) { each(z, [](Entry& e) { e.zip64 = e.descriptor = true; }); })},
      {"ZIP64 end", with([](Zip& z) { z.zip64End = true; })},
      {"comments", with([&](Zip& z) {
         z.comment = "PK\5\6 is no end here";
         each(z, [](Entry& e) { e.comment = "of a member"; });
       })},
      {"extra fields", with([&](Zip& z) {
         each(z, [](Entry& e) {
           e.localExtra = "\x20\xa2\x04\0abcd"s;
           e.centralExtra = "UT\x05\0\1abcd"s;
         });
       })},
      {"extra fields that are padding",
       with([&](Zip& z) { each(z, [](Entry& e) { e.localExtra = e.centralExtra = "\0\0\0"s; }); })},
      {"UTF-8, level and reserved flags", with([&](Zip& z) { each(z, [](Entry& e) { e.flags = 0x0806; }); })},
      {"directory in another order", with([](Zip& z) { z.directoryReversed = true; })},
      {"bytes between members",
       with([&](Zip& z) { each(z, [](Entry& e) { e.after = "PK\3\4 left over"; }); })},
      {"names that would leave a folder", with([](Zip& z) {
         z.entries.push_back({"../../etc/x", "harmless"});
       })},
  };
}

}  // namespace pluvo::archive
