#include "doc/doc_format.h"
#include "document/document.h"
#include "formats/doc/encrypted_doc.h"
#include "storage/files/as_text.h"
#include "support/notation.h"
#include "word_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pluvo::doc {
namespace {

using encryption::kVectorPassword;
using testing::HasSubstr;

std::vector<Way> ways() {
  return {{"obfuscation", ""},
          {"RC4", encryption::fromHex(encryption::kRc4Header)},
          {"40 bits", encryption::fromHex(encryption::kRc4Header40)},
          {"128 bits", encryption::fromHex(encryption::kRc4Header128)}};
}

/// More than a stretch of each stream.
std::string fileBy(const Way& way) {
  DocBuilder builder;
  builder.notation("a secret text<7: marked>¶");
  builder.data = std::string(2000, 'd');
  builder.streams = {{"Beside", "what others keep"}};
  return Encrypter(way).build(builder, std::string(600, 'p'));
}

/// Asks for a password; counts how often one is tried.
struct Asked {
  std::u16string password;
  int tried = 0;
  formats::Hint hint() {
    formats::Hint hint;
    hint.findKey = [this](const formats::Lock& lock) {
      EXPECT_LT(lock.hashes(), 10U);
      ++tried;
      return lock.keyBy(base::SecretText(std::u16string(password)));
    };
    return hint;
  }
};

Streams opened(const std::string& file, std::u16string_view password = kVectorPassword) {
  return Streams::open(files::bytesOf(file), Asked{std::u16string(password)}.hint());
}

std::string streamOf(const std::string& file, const char* name) {
  const cfb::CompoundFile opened = cfb::CompoundFile::open(files::bytesOf(file));
  return files::textOf(opened.read(*opened.stream(name)).view);
}

TEST(Encryption, IsOpenedByItsPasswordAlone) {
  for (const Way& way : ways()) {
    SCOPED_TRACE(way.name);
    const std::string file = fileBy(way);
    EXPECT_THAT(file, Not(HasSubstr("secret")));
    EXPECT_THAT(files::refusalOf([&] { DocFormat().read(files::bytesOf(file)); }), HasSubstr("password: "));
    Asked wrong{u"wrong"};
    EXPECT_THAT(files::refusalOf([&] { DocFormat().read(files::bytesOf(file), wrong.hint()); }),
                HasSubstr("password: "));
    EXPECT_EQ(wrong.tried, 1);

    Asked right{std::u16string(kVectorPassword)};
    formats::Hint hint = right.hint();
    for (int times = 0; times < 2; ++times) {
      formats::Opened opened = DocFormat().read(files::bytesOf(file), hint);
      const document::Document document(std::move(opened.stories), opened.source);
      EXPECT_EQ(notation::print(document.mainText()), "a secret text<7: marked>¶");
      hint = opened.again;
    }
    formats::Opened opened = DocFormat().read(files::bytesOf(file), hint);
    document::Document document(std::move(opened.stories), opened.source);
    document.mainText().insertBefore(2, u"very ");
    base::MemoryOutput out;
    opened.source->write(document, out);
    EXPECT_THAT(files::textOf(out.bytes()), Not(HasSubstr("very")));
    const document::Document again(DocFormat().read(files::bytesOf(files::textOf(out.bytes())), hint).stories,
                                   opened.source);
    EXPECT_EQ(notation::print(again.mainText()), "a very secret text<7: marked>¶");
    EXPECT_EQ(right.tried, 1) << "the key of the first reading opens it again";

    // The key of another kind of document.
    hint.key = std::make_shared<const formats::Key>(base::SecretBytes(std::vector<std::uint8_t>(16)));
    EXPECT_THAT(files::refusalOf([&] { DocFormat().read(files::bytesOf(file), hint); }),
                HasSubstr("password: "));
  }
}

TEST(Encryption, IsWrittenAnewUnderANewSalt) {
  for (const Way& way : ways()) {
    SCOPED_TRACE(way.name);
    const std::string file = fileBy(way);
    const Streams before = opened(file);
    const std::string added(700, 'n');
    const base::Bytes more = files::bytesOf(added);
    const std::array<cfb::Change, 2> changes = {{{before.ids.document, {before.document.view, more.view}},
                                                 {*before.file.find("Beside"), {base::ByteSpan()}}}};
    base::MemoryOutput out;
    before.rewrite(changes, out);
    const std::string now = files::textOf(out.bytes());
    const Streams after = opened(now);
    EXPECT_EQ(files::textOf(after.document.view), files::textOf(before.document.view) + added);
    EXPECT_EQ(files::textOf(after.tables.view).substr(way.header.size()),
              files::textOf(before.tables.view).substr(way.header.size()));
    EXPECT_EQ(files::textOf(after.data.view), files::textOf(before.data.view));
    EXPECT_EQ(streamOf(now, "Beside"), "");
    EXPECT_EQ(streamOf(now, "WordDocument").substr(0, 68), files::textOf(before.document.view).substr(0, 68));
    const auto sets = after.encrypted->propertySets(after.file);
    ASSERT_EQ(sets.size(), way.header.size() > 60 ? 1U : 0U);
    for (const base::Bytes& set : sets) EXPECT_EQ(files::textOf(set.view), std::string(600, 'p'));

    const bool isSalted = !way.header.empty();
    for (const char* const name : {"WordDocument", "1Table", "Data"}) {
      const std::string old = streamOf(file, name), anew = streamOf(now, name);
      const std::size_t open = name[0] == 'W' ? 68 : name[0] == '1' ? way.header.size() : 0;
      EXPECT_EQ(old.substr(open, 200) != anew.substr(open, 200), isSalted) << name;
    }
    EXPECT_EQ(streamOf(file, "1Table").substr(0, way.header.size()) !=
                  streamOf(now, "1Table").substr(0, way.header.size()),
              isSalted);
    EXPECT_TRUE(sets.empty() ||
                streamOf(file, "encryption").substr(8) != streamOf(now, "encryption").substr(8));
    EXPECT_THAT(files::refusalOf([&] { opened(now, u"wrong"); }), HasSubstr("password: "));
  }
}

TEST(Encryption, RefusesHeadersAndListsThatLeadNowhere) {
  const Way way = ways().back();
  const auto refusal = [](DocBuilder builder) { return files::refusalOf([&] { opened(builder.build()); }); };
  DocBuilder builder;
  builder.notation("text¶");
  builder.flags |= Fib::kEncrypted;
  EXPECT_THAT(refusal(builder), HasSubstr("damaged: ")) << "no header";
  builder.key = 1U << 20U;
  EXPECT_THAT(refusal(builder), HasSubstr("tables is cut off"));
  builder.key = 8;
  builder.front = std::string("\4\0\4\0\0\0\0\0", 8);
  EXPECT_THAT(refusal(builder), HasSubstr("unsupported: "));

  for (const auto& [at, value] : {std::pair(0, 0xFFFFFFU), std::pair(0, 2U), std::pair(4, 2U)}) {
    DocBuilder whole;
    whole.notation("text¶");
    whole.streams = {{"encryption", streamOf(fileBy(way), "encryption")}};
    whole.streams.front().second.replace(static_cast<std::size_t>(at), 4, number(value));
    const Streams streams = opened(Encrypter(way).build(whole, ""));
    EXPECT_THAT(files::refusalOf([&] { streams.encrypted->propertySets(streams.file); }),
                HasSubstr("damaged: "));
    base::MemoryOutput out;
    EXPECT_THAT(files::refusalOf([&] { streams.rewrite({}, out); }), HasSubstr("damaged: "));
  }
}

}  // namespace
}  // namespace pluvo::doc
