#include "formats/registry.h"

#include "formats/key.h"
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
  } refused[] = {
      {"%PDF-1.4", "folder.txt/pdf", "unsupported: .*a PDF, whatever its name says, and"},
      {"plain", "a.docx", "damaged: The name says \"\\.docx\", but the file does not hold a document"},
      {"", "a.xyz", "damaged: The name says \"\\.xyz\", but the"},
      {"plain", "a.xyz", "unsupported: Files named \"\\.xyz\" are not worked on; give"}};
  for (const auto& it : refused)
    EXPECT_THAT(files::refusalOf([&] { formatOf(it.bytes, it.path); }), testing::ContainsRegex(it.said));

  const struct {
    std::string bytes;
    std::vector<const char*> usual;  ///< extensions
    std::string what;
  } kinds[] = {{"PK\x03\x04", {"ODT", "zip"}, "a zip archive, as .docx and .odt files are"},
               {"PK\x05\x06", {"zip"}, "a zip archive, as .docx and .odt files are"},
               {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1",
                {"doc", "dot"},
                "a Word document of the binary kind (.doc), or an encrypted one"},
               {"{\\rtf1", {"RTF"}, "an RTF document"},
               {"%PDF-1.4", {"pdf"}, "a PDF"},
               {"\x89PNG\r\n\x1A\n", {"png"}, "a picture"},
               {"\xFF\xD8\xFF\xE0", {"jpg", "jpeg"}, "a picture"},
               {"GIF87a", {"gif"}, "a picture"},
               {"GIF89a", {"gif"}, "a picture"},
               {std::string("II*\0\x08", 5), {"tif"}, "a picture"},
               {std::string("MM\0*", 4), {"tiff"}, "a picture"},
               {"\x1F\x8B\x08", {"gz", "tgz"}, "a compressed archive"},
               {"7z\xBC\xAF\x27\x1C", {"7z"}, "a compressed archive"},
               {"Rar!\x1A\x07\x01", {"rar"}, "a compressed archive"},
               {"\x7F\x45LF", {}, "a program"}};
  for (const auto& [bytes, usual, what] : kinds) {
    const auto refusal = [&, &held = bytes](const std::string& extension) {
      return files::refusalOf([&] { formatOf(held, "a." + extension); });
    };
    for (const char* const extension : usual)
      EXPECT_THAT(refusal(extension),
                  testing::StartsWith("unsupported: The file is " + what + " and cannot"));
    EXPECT_THAT(refusal("docx"),
                testing::StartsWith("unsupported: The file is " + what + ", whatever its name says, and"));
  }
}

TEST(Key, IsTheKnownOneOrElseTheOneFound) {
  class OneWord final : public Lock {
   public:
    std::uint64_t hashes() const override { return 1; }
    SharedKey keyBy(const base::SecretText& password) const override {
      return password.text() == u"open" ? derived : nullptr;
    }
    const SharedKey derived = std::make_shared<Key>(base::SecretBytes({1}));
  } lock;
  const auto text = [](std::u16string password) {
    return std::make_shared<Key>(base::SecretText(std::move(password)));
  };
  const auto other = std::make_shared<Key>(base::SecretBytes({2}));
  const KeyFinder finds = [](const Lock& asked) { return asked.keyBy(base::SecretText(u"open")); };
  const KeyFinder findsNone = [](const Lock&) { return SharedKey(); };
  const struct {
    SharedKey known;
    KeyFinder finder;
    SharedKey found;
  } cases[] = {{other, finds, other},           {text(u"open"), {}, lock.derived},
               {text(u"shut"), finds, nullptr}, {nullptr, finds, lock.derived},
               {nullptr, findsNone, nullptr},   {nullptr, {}, nullptr}};
  for (const auto& it : cases) {
    SharedKey found;
    const std::string refusal = files::refusalOf([&] { found = keyOf(lock, it.known, it.finder); });
    EXPECT_EQ(found, it.found);
    EXPECT_THAT(refusal, testing::StartsWith(it.found ? "" : "password: The document is encrypted"));
  }
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
