#include "multifile/originals.h"

#include "file_run.h"
#include "storage/files/scratch.h"

namespace pluvo::multifile {
namespace {

std::u16string separator() { return {static_cast<char16_t>(std::filesystem::path::preferred_separator)}; }

TEST(Originals, LieAsTheyDidInAFolderOfTheRunsOwn) {
  const files::Scratch scratch;
  const auto folder = [&](const char* name) {
    return scratch.at(name).make_preferred().u16string() + separator();
  };
  FileRun run;
  Originals originals(run.work.context, run.work.boxes, folder("data"), separator());
  std::set<std::u16string> folders;
  for (const char* text : {"first", "second"}) {  // within a second, and of the same files
    originals.begin(folder("letters"));
    EXPECT_EQ(originals.told(), u"");
    for (const char* name : {"letters/a.doc", "letters/deep/a.doc", "elsewhere/a.doc"}) {
      scratch.put(name, text);
      EXPECT_TRUE(originals.keep(scratch.at(name).make_preferred().u16string()));
    }
    EXPECT_EQ(originals.told(), u"The originals of 3 files are in " + originals.folder());
    folders.insert(originals.folder());
    for (const char* kept : {"a.doc", "deep/a.doc"}) {
      std::ifstream copy(std::filesystem::path(originals.folder()) / kept);
      EXPECT_EQ(std::string(std::istreambuf_iterator<char>(copy), {}), text) << kept;
    }
  }
  EXPECT_EQ(folders.size(), 2U);
  run.work.boxes.answer("ny");
  EXPECT_FALSE(originals.keep(folder("letters") + u"gone.doc"));
  EXPECT_TRUE(originals.keep(folder("letters") + u"gone.doc"));
}

TEST(Originals, ThatCannotBeCopiedAreAskedAbout) {
  const std::string asked = "open a, activate a, replaced in a, box Original Not Copied, close a";
  for (const auto& [answer, story, left] : {std::tuple{"n", asked, "A¶"}, {"y", asked + " saving", "B¶"}}) {
    FileRun run;
    auto driver = std::make_shared<FileDriver>();
    driver->keepOriginals(std::make_unique<Originals>(run.work.context, run.work.boxes, u"/nowhere/", u"\\"));
    run.engine().stepper(driver);
    run.work.boxes.answer(answer);
    run.file("unchanged").text = "x";
    run.run({"a", "unchanged"});
    EXPECT_EQ(run.told(), story + ", open unchanged, activate unchanged, close unchanged");
    EXPECT_EQ(run.file("a").text, left);
  }
}

}  // namespace
}  // namespace pluvo::multifile
