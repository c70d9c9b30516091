#include "base/names.h"
#include "base/utf.h"
#include "dialog/workplace.h"
#include "formats/docx/document_builder.h"
#include "formats/docx/encrypted.h"
#include "memory/application.h"
#include "multifile/file_driver.h"
#include "storage/files/scratch.h"
#include "store/opener.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <deque>
#include <filesystem>

namespace pluvo::multifile {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A run over the files of a folder that goes when the test ends; every "A" becomes "B".
class RealFiles : public testing::Test {
 protected:
  RealFiles() {
    work.engine.stepper(std::make_shared<FileDriver>());
    work.engine.MultiFileRun(true);
    work.engine.Masks(u"*.*");
    work.engine.StartingDirectory(base::nameText(scratch.path("")));
    work.ask({.begin = u"A", .operation = engine::kReplace, .text = u"B"});
    work.forms.user = [this](forms::Form& form) {
      if (typed.empty()) return forms::press(form, u"cmdCancel");
      dynamic_cast<forms::TextBox&>(*form.control(u"txtPassword")).Text(typed.front());
      typed.pop_front();
      forms::press(form, u"cmdProceed");
    };
  }

  std::vector<std::u16string> found() { return work.engine.GetFiles(true, 32000); }
  void run() { work.engine.MultiPLUVO(found()); }
  std::string part(const std::string& file, const char* name = "word/document.xml") const {
    const std::string bytes = scratch.get(file);
    return docx::part(base::Bytes::of({bytes.begin(), bytes.end()}), name);
  }
  /// The titles of the boxes shown.
  std::vector<std::string> titles() const {
    std::vector<std::string> all;
    for (const auto& box : work.boxes.shown) all.push_back(base::utf8(box.title.value_or(u"")));
    return all;
  }

  files::Scratch scratch;
  std::deque<std::u16string> typed;
  /// Where a read-only document is saved; nowhere without.
  std::optional<std::string> saveAs;
  std::shared_ptr<memory::MemoryApplication> application = std::make_shared<memory::MemoryApplication>(
      std::make_shared<store::StoreOpener>(store::Store(), [this](const std::string&) { return saveAs; }));
  dialog::Workplace work{application};
};

TEST_F(RealFiles, ThatMayNotBeWrittenAreSavedUnderAnotherName) {
  chmod(scratch.put("a.txt", "A").c_str(), 0444);
  scratch.put("b.txt", "A");
  scratch.put(".~lock.b.txt#", "");
  scratch.put("c.txt", "A");
  scratch.put("~$c.txt", "");
  work.engine.Masks(u"?.txt");

  work.boxes.answer("nnn");
  run();
  EXPECT_EQ(titles(), std::vector<std::string>(3, "Read Only File"));
  EXPECT_EQ(application->count(), 0);
  EXPECT_EQ(scratch.names().size(), 5U);

  saveAs = scratch.path("new.txt");
  work.boxes.answer("ynn");
  run();
  EXPECT_EQ(scratch.get("a.txt"), "A");
  EXPECT_EQ(scratch.get("new.txt"), "B");

  work.boxes.shown.clear();
  saveAs.reset();
  work.boxes.answer("nyyyn");
  run();
  EXPECT_THAT(titles(), ElementsAre("Read Only File", "Read Only File", "Save As Cancelled.",
                                    "Read Only File", "Save As Cancelled."));
  EXPECT_EQ(application->count(), 1) << "c.txt, which the user did not want closed";
  EXPECT_EQ(scratch.get("b.txt") + scratch.get("c.txt"), "AA");
  EXPECT_THAT(work.reports, IsEmpty());
}

TEST_F(RealFiles, ThatCannotBeOpenedDoNotStopTheRun) {
  scratch.put("a.docx", "no package");
  scratch.put("b.docx", docx::encrypted(docx::fileOf("A")));
  scratch.put("~$c.txt", "A");
  scratch.put("z.txt", "A");
  work.boxes.answer("y");
  run();
  EXPECT_THAT(titles(), ElementsAre("Potential Temporary File")) << "no question about a password";
  EXPECT_THAT(work.reports, ElementsAre("5792 cpf:44", "4605 cpf:44"));
  EXPECT_EQ(scratch.get("z.txt"), "B");
  EXPECT_EQ(scratch.get("~$c.txt"), "A");

  work.boxes.answer("n");
  run();
  EXPECT_EQ(scratch.get("~$c.txt"), "B") << "the user said to process it";
}

/// What the word processor's own question is answered with; at the end, or for a "-", with Cancel.
TEST_F(RealFiles, ThatAreEncryptedAreOpenedWithTheirPassword) {
  const std::string file = docx::encrypted(docx::fileOf("A"));
  const std::u16string right(encryption::kVectorPassword);
  const struct {
    std::deque<std::u16string> typed;
    const char* answers;
    int boxes;
    std::string changed;                             ///< of the two files
  } cases[] = {{{right}, "", 0, "ab"},               // which the second has, too
               {{u"x", right}, "y", 1, "ab"},        // wrong; try again: yes
               {{u"x", u"y", right}, "yn", 2, "b"},  // again wrong; try again: no
               {{u"-", right}, "", 0, "b"},          // cancelled: skipped without a word
               {{}, "", 0, ""}};
  for (const auto& [passwords, answers, boxes, changed] : cases) {
    for (const char* name : {"a.docx", "b.docx"}) scratch.put(name, file);
    auto opener = std::make_shared<store::StoreOpener>(store::Store(), nullptr);
    opener->passwordChooser(
        [typed = passwords](const std::string&,
                            store::PasswordFor) mutable -> std::optional<base::SecretText> {
          if (typed.empty()) return std::nullopt;
          const std::u16string next = std::exchange(typed.front(), {});
          typed.pop_front();
          if (next == u"-") return std::nullopt;
          return base::SecretText(std::u16string(next));
        });
    dialog::Workplace place(std::make_shared<memory::MemoryApplication>(opener));
    place.engine.stepper(std::make_shared<FileDriver>());
    place.engine.MultiFileRun(true);
    place.ask({.begin = u"A", .operation = engine::kReplace, .text = u"B"});
    place.boxes.answer(answers);
    place.engine.MultiPLUVO({base::nameText(scratch.path("a.docx")), base::nameText(scratch.path("b.docx"))});
    EXPECT_EQ(place.boxes.shown.size(), static_cast<std::size_t>(boxes));
    for (const auto& box : place.boxes.shown) EXPECT_EQ(box.title, u"Incorrect Open/Modify Password");
    EXPECT_THAT(place.reports, IsEmpty());
    for (const std::string name : {"a", "b"}) {
      const std::string now = scratch.get(name + ".docx");
      EXPECT_EQ(now != file, changed.find(name) != std::string::npos) << name;
      EXPECT_THAT(docx::part(docx::bytesIn(docx::decrypted(now)), "word/document.xml"),
                  HasSubstr(now == file ? "<w:t>A</w:t>" : "<w:t>B</w:t>"));
    }
  }
}

/// Of each file that asks: what the word processor's questions are answered with, then the boxes of the run.
TEST_F(RealFiles, ThatReserveChangesAreReadOnlyForWhoDoesNotKnow) {
  const std::string reserved = docx::reserved("A"), recommending = docx::recommendingReading("A");
  const struct {
    const std::string& file;
    std::deque<std::u16string> typed;  ///< "-" for none
    bool reads;                        ///< as the file recommends
    const char* answers;
    std::vector<std::string> titles;
    bool saves, savesElsewhere;
  } cases[] = {
      {reserved, {u"right"}, false, "", {}, true, false},
      {reserved, {u"wrong", u"right"}, false, "y", {"Incorrect Open/Modify Password"}, true, false},
      {reserved, {u"wrong"}, false, "n", {"Incorrect Open/Modify Password"}, false, false},
      {reserved, {u"-"}, false, "n", {"Read Only File"}, false, false},
      {reserved, {u"-"}, false, "y", {"Read Only File"}, false, true},
      {recommending, {}, false, "", {}, true, false},
      {recommending, {}, true, "n", {"Read Only File"}, false, false},
      {recommending, {}, true, "y", {"Read Only File"}, false, true},
  };
  for (const auto& it : cases) {
    SCOPED_TRACE(&it - cases);
    const std::u16string path = base::nameText(scratch.put("a.docx", it.file));
    std::filesystem::remove(scratch.path("new.docx"));
    auto opener = std::make_shared<store::StoreOpener>(
        store::Store(), [this](const std::string&) { return scratch.path("new.docx"); });
    opener->passwordChooser([typed = it.typed](const std::string&, store::PasswordFor what) mutable {
      EXPECT_EQ(what, store::PasswordFor::changing);
      const std::u16string next = typed.empty() ? u"-" : std::exchange(typed.front(), {});
      if (!typed.empty()) typed.pop_front();
      return next == u"-" ? std::nullopt : std::optional(base::SecretText(std::u16string(next)));
    });
    opener->readingChooser([&](const std::string&) { return it.reads; });
    dialog::Workplace place(std::make_shared<memory::MemoryApplication>(opener));
    place.engine.stepper(std::make_shared<FileDriver>());
    place.engine.MultiFileRun(true);
    place.ask({.begin = u"A", .operation = engine::kReplace, .text = u"B"});
    place.boxes.answer(it.answers);
    place.engine.MultiPLUVO({path});
    std::vector<std::string> shown;
    for (const auto& box : place.boxes.shown) shown.push_back(base::utf8(box.title.value_or(u"")));
    EXPECT_EQ(shown, it.titles);
    EXPECT_EQ(scratch.get("a.docx") != it.file, it.saves);
    EXPECT_EQ(std::filesystem::exists(scratch.path("new.docx")), it.savesElsewhere);
    EXPECT_THAT(place.reports, IsEmpty());
  }
}

TEST_F(RealFiles, ThatAreProtectedAreUnlockedWhereThereIsNoPassword) {
  const std::string protection = "<w:documentProtection w:edit=\"forms\" w:enforcement=\"1\"";
  scratch.put("free.docx", docx::fileOf("A", docx::settingsOf(protection + "/>")));
  const std::string locked = docx::fileOf("A", docx::settingsOf(protection + " w:hashValue=\"c2VjcmV0\"/>"));
  scratch.put("locked.docx", locked);
  scratch.put("z.txt", "A");
  typed = {u"anything", u"guess", u"another"};
  work.boxes.answer("ny");
  run();
  EXPECT_THAT(part("free.docx"), HasSubstr("<w:t>B</w:t>"));
  EXPECT_THAT(part("free.docx", "word/settings.xml"), HasSubstr(protection)) << "protected as before";
  EXPECT_EQ(scratch.get("locked.docx"), locked);
  EXPECT_THAT(titles(), ElementsAre("Incorrect Password", "Incorrect Password"));
  EXPECT_EQ(scratch.get("z.txt"), "B");
  EXPECT_THAT(work.reports, IsEmpty());
  EXPECT_EQ(application->count(), 0);
}

TEST_F(RealFiles, OpenOnceAndComeToTheFront) {
  const std::u16string a = base::nameText(scratch.put("a.txt", "A"));
  const std::u16string b = base::nameText(scratch.put("b.txt", "A"));
  const auto documents = application->Documents();
  const auto first = documents->Open(a);
  const auto second = documents->Open(b);
  EXPECT_EQ(first->Path(), base::nameText(scratch.path("").substr(0, scratch.path("").size() - 1)));
  EXPECT_EQ(application->ActiveDocument(), second);
  EXPECT_EQ(documents->Open(a), first);
  EXPECT_EQ(documents->Count(), 2);
  EXPECT_EQ(application->ActiveDocument(), first);
  second->Activate();
  EXPECT_EQ(application->ActiveDocument(), second);
  second->Close(true);
  EXPECT_EQ(application->ActiveDocument(), first);
  for (const auto& refused : {std::function<void()>([&] { second->Close(false); }),
                              std::function<void()>([&] { documents->Item(2); }),
                              std::function<void()>([&] { second->Activate(); })})
    EXPECT_THROW(refused(), errors::Fault);
  EXPECT_THROW(documents->Open(u"/no/such/file.txt"), errors::Fault);
}

}  // namespace
}  // namespace pluvo::multifile
