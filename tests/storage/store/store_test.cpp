#include "store/store.h"

#include "corpus.h"
#include "files/reading.h"
#include "storage/files/as_text.h"
#include "storage/files/scratch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include <fstream>
#include <string>

namespace pluvo::store {
namespace {

using files::refusalOf;
using files::Scratch;
using testing::ElementsAre;
using testing::StartsWith;

document::Story& modelOf(const std::unique_ptr<StoredDocument>& opened) {
  return opened->document()->mainText();
}

TEST(Store, SavesWhatChangedAndNothingElse) {
  const Scratch scratch;
  const Store store;
  const auto opened = store.open(scratch.put("a.txt", "one\r\ntwo\r\n"));
  EXPECT_EQ(opened->document()->Name(), u"a.txt");
  chmod(opened->path().c_str(), 0444);
  EXPECT_FALSE(opened->save({".bak", {}}).written) << "unchanged, so that nothing forbids it";
  EXPECT_EQ(opened->obstacle()->problem(), errors::Problem::readOnly);
  chmod(opened->path().c_str(), 0644);

  modelOf(opened).insertBefore(0, u"zero\n");
  EXPECT_FALSE(opened->document()->Saved());
  const auto outcome = opened->save({".bak", {}});
  EXPECT_TRUE(outcome.written);
  EXPECT_TRUE(opened->document()->Saved());
  EXPECT_FALSE(opened->save().written);
  EXPECT_EQ(outcome.backup, scratch.path("a.txt.bak"));
  EXPECT_EQ(scratch.get("a.txt"), "zero\r\none\r\ntwo\r\n");
  EXPECT_EQ(scratch.get("a.txt.bak"), "one\r\ntwo\r\n");

  modelOf(opened).insertBefore(0, u"!");
  opened->save({{}, scratch.path("b.txt")});
  EXPECT_FALSE(opened->document()->Saved());
  opened->save();
  EXPECT_EQ(scratch.get("a.txt"), "!zero\r\none\r\ntwo\r\n");
  EXPECT_EQ(scratch.get("b.txt"), scratch.get("a.txt"));
  EXPECT_THAT(scratch.names(), ElementsAre("a.txt", "a.txt.bak", "b.txt"));
}

TEST(Store, SavesACopyThatCanBeWrittenOfAFileThatCannot) {
  using std::filesystem::perms;
  const Scratch scratch;
  const Store store;
  const std::string original = scratch.put("a.txt", "one\n");
  std::filesystem::permissions(original, perms::owner_read | perms::group_read);
  const auto opened = store.open(original);
  opened->saveAs(scratch.path("b.txt"));
  EXPECT_EQ(std::filesystem::status(scratch.path("b.txt")).permissions(),
            perms::owner_read | perms::owner_write | perms::group_read);
  modelOf(opened).insertBefore(0, u"zero\n");
  opened->save();
  EXPECT_EQ(scratch.get("b.txt"), "zero\none\n");
}

TEST(Store, GoesOnUnderAnotherPathWhateverBecameOfTheFile) {
  const Scratch scratch;
  const Store store;
  const auto opened = store.open(scratch.put("a.txt", "one\n"));
  opened->saveAs(scratch.path("copy.txt"));
  EXPECT_EQ(scratch.get("copy.txt"), "one\n") << "unchanged, and a copy all the same";
  EXPECT_EQ(opened->path(), scratch.path("copy.txt"));

  modelOf(opened).insertBefore(0, u"zero\n");
  std::filesystem::remove(scratch.path("copy.txt"));
  EXPECT_THAT(refusalOf([&] { opened->save(); }), StartsWith("changed: "));
  EXPECT_THAT(refusalOf([&] { opened->saveAs(scratch.path("no folder/b.txt")); }), StartsWith("changed: "));
  EXPECT_FALSE(opened->document()->Saved());
  scratch.put("b.txt", "in the way");
  opened->saveAs(scratch.path("b.txt"));
  EXPECT_EQ(scratch.get("b.txt"), "zero\none\n");
  EXPECT_TRUE(opened->document()->Saved());
  EXPECT_THAT(scratch.names(), ElementsAre("a.txt", "b.txt"));

  scratch.put("b.txt", "somebody else's");
  modelOf(opened).insertBefore(0, u"!");
  EXPECT_THAT(refusalOf([&] { opened->save(); }), StartsWith("changed: "));
  opened->saveAs(scratch.path("b.txt"));
  EXPECT_EQ(scratch.get("b.txt"), "!zero\none\n") << "the user chose that name";

  const auto large = store.open(scratch.put("large.txt", std::string(files::kMappedFrom, 'x')));
  modelOf(large).insertBefore(0, u"!");
  std::filesystem::remove(large->path());
  large->saveAs(scratch.path("rescued.txt"));
  EXPECT_EQ(scratch.get("rescued.txt"), "!" + std::string(files::kMappedFrom, 'x'));

  const auto overwritten = store.open(scratch.path("rescued.txt"));
  std::ofstream(overwritten->path(), std::ios::app) << "more";
  EXPECT_THAT(refusalOf([&] { overwritten->saveAs(scratch.path("c.txt")); }), StartsWith("changed: "));
  EXPECT_FALSE(std::filesystem::exists(scratch.path("c.txt")));

  const auto moved = store.open(scratch.path("rescued.txt"));
  moved->saveAs(scratch.path("d.txt"));
  modelOf(moved).insertBefore(0, u"?");
  std::ofstream(scratch.path("rescued.txt"), std::ios::in) << "other";
  std::filesystem::rename(scratch.path("rescued.txt"), scratch.path("e.txt"));
  EXPECT_THAT(refusalOf([&] { moved->save(); }), StartsWith("changed: "))
      << "the text lies where it was read from";
}

TEST(Store, RefusesWhatItCannotOpen) {
  const Scratch scratch;
  const Store store;
  const auto refusal = [&](const std::string& path) { return refusalOf([&] { store.open(path); }); };
  EXPECT_THAT(refusal(scratch.put("~$letter.txt", "x")), StartsWith("temporary: "));
  EXPECT_THAT(refusal(scratch.put("zip.txt", "PK\x03\x04")), StartsWith("unsupported: "));
  EXPECT_EQ(refusal(scratch.put("plain.doc", "text")), "");
  EXPECT_THAT(refusal(scratch.put("other.doc", std::string("text\0", 5))), StartsWith("damaged: "));
  EXPECT_THAT(refusal(scratch.put("old.dot", std::string("\xDB\xA5\x2D\0", 4))), StartsWith("unsupported: "));
  EXPECT_THAT(refusal(scratch.path("missing.txt")), StartsWith("io: "));
  std::filesystem::resize_file(scratch.put("large.txt", ""), 0x80000000);  // of holes only
  EXPECT_THAT(refusal(scratch.path("large.txt")), StartsWith("too-large: "));
  EXPECT_EQ(refusal(scratch.put("name\xFF.txt", "x")), "") << "names are bytes";
}

TEST(Store, RefusesASaveThatWouldNotReadBackAsTheSameText) {
  const struct {
    std::string bytes;
    std::u16string text;                                      ///< instead of the second character
  } cases[] = {{"\xC3.\xFF", u"©"},                           // without the last byte it would be UTF-8
               {"{.", u"\\rtf1"},                             // would be an RTF document
               {std::string("a\0b\0c\0d\0", 8), u"→→→→→→"}};  // would no longer be told from other bytes
  for (const auto& [bytes, text] : cases) {
    const Scratch scratch;
    const auto opened = Store().open(scratch.put("a.txt", bytes), {.hint = {"Windows-1252"}});
    auto& model = modelOf(opened);
    model.replace({1, model.length() - 1}, text, text::View::results);
    EXPECT_THAT(refusalOf([&] { opened->save(); }), StartsWith("encoding: "))
        << testing::PrintToString(bytes);
    EXPECT_EQ(scratch.get("a.txt"), bytes);
    EXPECT_THAT(scratch.names(), ElementsAre("a.txt"));
  }
}

TEST(Store, NoticesThatTheFileChanged) {
  const Scratch scratch;
  const Store store;
  for (const std::size_t size : {std::size_t{10}, std::size_t{4 * files::kMappedFrom}}) {
    const auto opened = store.open(scratch.put("a.txt", std::string(size, 'x')));
    EXPECT_NO_THROW(opened->requireUnchangedFile());
    modelOf(opened).insertBefore(0, u"!");
    std::filesystem::resize_file(opened->path(), 3);
    EXPECT_THAT(refusalOf([&] { opened->requireUnchangedFile(); }), StartsWith("changed: "));
    EXPECT_THAT(refusalOf([&] { opened->save(); }), StartsWith("changed: "));
    EXPECT_EQ(scratch.get("a.txt"), "xxx");
    std::filesystem::remove(opened->path());
    EXPECT_THAT(refusalOf([&] { opened->save(); }), StartsWith("changed: "));
    EXPECT_EQ(scratch.names().size(), 0U);
  }
}

TEST(Store, AFullDiskLeavesTheOldText) {
  const Scratch scratch;
  const std::string disk = scratch.path("disk");
  std::filesystem::create_directory(disk);
  if (mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=1m") != 0) GTEST_SKIP() << "needs the right to mount";
  const std::string old(600'000, 'a');
  const auto opened = Store().open(scratch.put("disk/a.txt", old));
  modelOf(opened).insertBefore(0, std::u16string(old.size(), u'b'));
  EXPECT_THAT(refusalOf([&] { opened->save({".bak", {}}); }), testing::ContainsRegex("^io: .*no room"));
  EXPECT_EQ(scratch.get("disk/a.txt"), old);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(disk), {}), 1);
  umount2(disk.c_str(), MNT_DETACH);  // the document still has its file
}

TEST(Store, RealTextsSurviveAndTakeAnEdit) {
  const auto corpus = corpusOf({"txt"});
  if (corpus.empty()) GTEST_SKIP() << kNoCorpus;
  const Scratch scratch;
  const Store store;
  for (const auto& file : corpus) {
    SCOPED_TRACE(file.filename());
    const std::string before = files::textOf(bytesOf(file).view);
    scratch.put("a.txt", before);
    const auto opened = store.open(scratch.path("a.txt"));
    auto& model = modelOf(opened);
    const text::Position middle = model.length() / 2;
    const text::Span put = model.insertBefore(middle, u"@@@@");
    opened->save();
    std::string after = scratch.get("a.txt");
    const std::size_t at = after.find("@@@@");
    ASSERT_NE(at, std::string::npos);
    EXPECT_EQ(after.erase(at, 4), before);

    model.replace(put, u"", text::View::results);
    opened->save();
    EXPECT_EQ(scratch.get("a.txt"), before);
  }
}

}  // namespace
}  // namespace pluvo::store
