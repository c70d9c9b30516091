#include "formats/registry.h"

#include "storage/files/as_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace pluvo::formats {
namespace {

/// Recognises files that begin with its name, or that have it as extension if it goes by that.
class NamedFormat final : public Format {
 public:
  NamedFormat(std::string name, bool byExtension) : name_(std::move(name)), byExtension_(byExtension) {}
  std::string_view name() const override { return name_; }
  bool recognises(base::ByteSpan bytes, std::string_view extension) const override {
    if (byExtension_) return extension == name_;
    return std::string(bytes.begin(), bytes.end()).starts_with(name_);
  }
  Opened read(base::Bytes, const Hint&) const override { return {}; }

 private:
  std::string name_;
  bool byExtension_;
};

TEST(Registry, BytesDecideBeforeNamesAndRefusalsSayWhatItIs) {
  Registry registry;
  registry.add(std::make_unique<NamedFormat>("magic", false));
  registry.add(std::make_unique<NamedFormat>("txt", true));
  const auto formatOf = [&](std::string_view bytes, std::string_view path) {
    const std::vector<std::uint8_t> held(bytes.begin(), bytes.end());
    return std::string(registry.formatOf(held, extensionOf(path)).name());
  };
  EXPECT_EQ(formatOf("magic", "a.TXT"), "magic");
  EXPECT_EQ(formatOf("other", "folder.doc/a.TXT"), "txt");

  const struct {
    const char* bytes;
    const char* path;
    const char* said;
  } refused[] = {{"PK\x03\x04", "a.docx", "unsupported: .*zip archive"},
                 {"{\\rtf1", "a.doc", "unsupported: .*an RTF document, whatever its name says, and"},
                 {"{\\rtf1", "a.RTF", "unsupported: .*an RTF document and"},
                 {"%PDF-1.4", "folder.txt/pdf", "unsupported: .*a PDF"},
                 {"plain", "a.docx", "damaged: .*\"\\.docx\""},
                 {"", "a.rtf", "damaged: .*\"\\.rtf\""},
                 {"plain", "a.xyz", "unsupported: .*\"\\.xyz\""}};
  for (const auto& it : refused)
    EXPECT_THAT(files::refusalOf([&] { formatOf(it.bytes, it.path); }), testing::ContainsRegex(it.said));
}

TEST(Registry, Extensions) {
  const std::pair<const char*, const char*> cases[] = {{"folder.doc/Letter.TXT", "txt"},
                                                       {"a.tar.gz", "gz"},
                                                       {"folder.doc/letter", ""},
                                                       {"folder/.profile", ""},
                                                       {"letter.", ""}};
  for (const auto& [path, extension] : cases) EXPECT_EQ(extensionOf(path), extension);
}

}  // namespace
}  // namespace pluvo::formats
