#include "formats/registry.h"

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
  bool recognises(files::ByteSpan bytes, std::string_view extension) const override {
    if (byExtension_) return extension == name_;
    return std::string(bytes.begin(), bytes.end()).starts_with(name_);
  }
  Opened read(files::Bytes) const override { return {}; }

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
    std::string_view bytes;
    std::string_view path;
    files::Problem problem;
    std::string_view said;
  } refused[] = {{"PK\x03\x04", "a.docx", files::Problem::unsupported, "zip archive"},
                 {"{\\rtf1", "a.doc", files::Problem::unsupported, "an RTF document"},
                 {"%PDF-1.4", "folder.txt/pdf", files::Problem::unsupported, "a PDF"},
                 {"plain", "a.docx", files::Problem::damaged, "\".docx\""},
                 {"<!-- page --><html>", "a.HTM", files::Problem::unsupported, "Web pages (\".htm\")"},
                 {"", "a.rtf", files::Problem::damaged, "\".rtf\""},
                 {"plain", "a.xyz", files::Problem::unsupported, "\".xyz\""}};
  for (const auto& [bytes, path, problem, said] : refused) {
    try {
      formatOf(bytes, path);
      ADD_FAILURE() << path;
    } catch (const files::DocumentError& error) {
      EXPECT_EQ(error.problem(), problem) << path;
      EXPECT_THAT(error.what(), testing::HasSubstr(std::string(said)));
    }
  }
}

TEST(Registry, Extensions) {
  EXPECT_EQ(extensionOf("folder.doc/Letter.TXT"), "txt");
  EXPECT_EQ(extensionOf("a.tar.gz"), "gz");
  EXPECT_EQ(extensionOf("folder.doc/letter"), "");
  EXPECT_EQ(extensionOf("folder/.profile"), "");
  EXPECT_EQ(extensionOf("letter."), "");
}

}  // namespace
}  // namespace pluvo::formats
