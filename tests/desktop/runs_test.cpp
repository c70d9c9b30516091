#include "formats/docx/document_builder.h"
#include "formats/docx/encrypted.h"
#include "used_window.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <QDesktopServices>
#include <QLabel>
#include <QListView>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QTextBrowser>
#include <cstdlib>

namespace pluvo::desktop {
namespace {

using testing::HasSubstr;

constexpr const char* kBefore = "one [a]secret[b] two\n";
constexpr const char* kAfter = "one  two\n";

/// Runs over the files of a folder that delete each block, and what they leave.
class RunsOverFiles : public UsedWindow {
 protected:
  RunsOverFiles() { ::setenv("XDG_STATE_HOME", state_.path("").c_str(), 1); }
  ~RunsOverFiles() override { ::unsetenv("XDG_STATE_HOME"); }

  void put(int files) {
    for (int i = 0; i < files; ++i) scratch.put(nameOf(i), kBefore);
  }
  static std::string nameOf(int file) { return std::string(1, static_cast<char>('a' + file)) + ".txt"; }
  std::string contents(int files) const {
    std::string all;
    for (int i = 0; i < files; ++i) all += scratch.get(nameOf(i)) == kBefore ? '.' : 'x';
    return all;
  }
  void askForDeletion(bool quiet) {
    ask("[a]", "Delete");
    type("txtEndText", "[b]");
    tick("chkQuiteMode", quiet);
    askOver(scratch.path(""));
  }
  /// The statistics of a document.
  void expectStatistics(const char* button) {
    expectBox([button](QWidget& box) { press(box, button); });
  }
  bool isEnabled(const char* entry) {
    for (const QAction* action : window->findChildren<QAction*>())
      if (action->text() == QString::fromUtf8(entry)) return action->isEnabled();
    return false;
  }
  void restart() {
    window = std::make_unique<MainWindow>(machinePlaces(), Choosers{});
    window->show();
  }
  std::string status() const { return window->statusBar()->currentMessage().toStdString(); }

  files::Scratch state_;
};

TEST_F(RunsOverFiles, AndTheWindowKnowAPasswordThatWasRightOnce) {
  const std::string file = docx::encrypted(docx::fileOf("[a]secret[b]"));
  scratch.put("a.docx", file);
  const auto typing = [this](const std::u16string& password, const char* button) {
    expectBox([password, button](QWidget& box) {
      EXPECT_EQ(box.windowTitle(), QLatin1String("Enter Password"));
      auto* edit = box.findChild<QLineEdit*>();
      ASSERT_NE(edit, nullptr);
      EXPECT_EQ(edit->echoMode(), QLineEdit::Password);
      edit->insert(QString::fromStdU16String(password));  // what has no key, too
      press(box, button);
    });
  };
  const std::u16string right(encryption::kVectorPassword);
  use([&] {
    typing(u"", "cmdCancel");
    openAll({scratch.path("a.docx")});
    typing(u"wrong", "cmdProceed");
    expectAnswer(QMessageBox::No);
    openAll({scratch.path("a.docx")});
    EXPECT_EQ(window->current(), nullptr);

    ask("[a]", "Delete");
    type("txtEndText", "[b]");
    tick("chkQuiteMode");
    type("txtFilePath", scratch.path("").c_str());
    typing(u"wrong", "cmdProceed");
    expectAnswer(QMessageBox::Yes);
    typing(right, "cmdProceed");
    execute();
    settle();
    for (const char* name : {"b.docx", "c.docx"}) scratch.put(name, file);
    execute();
    settle();
    for (const char* name : {"a.docx", "b.docx", "c.docx"})
      EXPECT_EQ(
          docx::part(docx::bytesIn(docx::decrypted(scratch.get(name))), "word/document.xml").find("secret"),
          std::string::npos)
          << name;
    EXPECT_EQ(text(open(scratch.path("c.docx"))), "\r");
  });
}

/// Runs over one document: the text typed into the form, if any, and the answers in the boxes.
TEST_F(RunsOverFiles, AskWhoMayChangeADocument) {
  const std::string reserved = docx::reserved("[a]secret[b]");
  const std::string recommending = docx::recommendingReading("[a]secret[b]");
  const auto no = QMessageBox::No, yes = QMessageBox::Yes;
  const struct {
    const std::string& file;
    std::vector<const char*> typed;  ///< "" is Cancel
    std::vector<QMessageBox::StandardButton> answers;
    bool saves;
  } cases[] = {
      {reserved, {"wrong"}, {no}, false},  // try again?
      {reserved, {""}, {no}, false},       // go on with a read-only file?
      {reserved, {"wrong", "right"}, {yes}, true},
      {reserved, {}, {}, true},        // by the password that is known
      {recommending, {}, {no}, true},  // open to read?
      {recommending, {}, {yes, no}, false},
  };
  use([&] {
    ask("[a]", "Delete");
    type("txtEndText", "[b]");
    tick("chkQuiteMode");
    type("txtFilePath", scratch.path("").c_str());
    for (const auto& it : cases) {
      SCOPED_TRACE(&it - cases);
      scratch.put("a.docx", it.file);
      for (std::size_t i = 0; i < std::max(it.typed.size(), it.answers.size()); ++i) {
        if (i < it.typed.size())
          expectBox([password = it.typed[i]](QWidget& box) {
            EXPECT_EQ(box.windowTitle(), QLatin1String("Enter Password"));
            box.findChild<QLineEdit*>()->insert(QString::fromUtf8(password));
            press(box, *password == '\0' ? "cmdCancel" : "cmdProceed");
          });
        if (i < it.answers.size()) expectAnswer(it.answers[i]);
      }
      execute();
      settle();
      EXPECT_EQ(scratch.get("a.docx") != it.file, it.saves);
    }
  });
}

TEST_F(RunsOverFiles, AreTakenBackAfterARestart) {
  put(4);
  use([&] {
    EXPECT_FALSE(isEnabled("&Undo Last Run …"));
    askForDeletion(true);
    execute();
    settle();
    EXPECT_EQ(contents(4), "xxxx");
    EXPECT_THAT(status(), HasSubstr("4 documents changed"));
  });
  scratch.put("c.txt", "of another program\n");
  restart();
  use([&] {
    const OpenDocument& document = open(scratch.path("a.txt"));
    EXPECT_EQ(text(document), "one  two\r\r");
    expectAnswer(QMessageBox::Cancel);
    menu("&Undo Last Run …");
    EXPECT_EQ(contents(4), "xxxx");
    expectBox([](QWidget& box) {
      EXPECT_THAT(dynamic_cast<QMessageBox&>(box).informativeText().toStdString(),
                  HasSubstr("Delete Selection"));
      for (QAbstractButton* button : box.findChildren<QAbstractButton*>())
        if (button->text() == QLatin1String("&Undo Run")) return button->click();
    });
    expectSaying("c.txt: changed: ");
    menu("&Undo Last Run …");
    EXPECT_EQ(contents(4), "..x.");
    EXPECT_EQ(scratch.get("c.txt"), "of another program\n");
    EXPECT_EQ(text(*window->current()), "one [a]secret[b] two\r\r") << "the tab shows its file";
  });
}

TEST_F(RunsOverFiles, AreReported) {
  put(2);
  scratch.put("damaged.docx", "PK\x03\x04");
  QTextBrowser browser;  // in the place of the desktop's
  QDesktopServices::setUrlHandler(QStringLiteral("file"), &browser, "setSource");
  use([&] {
    EXPECT_FALSE(isEnabled("&Report of Last Run"));
    askForDeletion(true);
    tick("chkFTdoc");
    execute();
    settle();
    const std::string summary = control<QPlainTextEdit>("txtOperationDisplay").toPlainText().toStdString();
    EXPECT_THAT(summary, HasSubstr("1\t\ta.txt"));
    EXPECT_THAT(summary, HasSubstr("damaged.docx: damaged: ")) << "as the command line says it";
    menu("&Report of Last Run");
    for (const char* told : {"a.txt", "secret", "damaged.docx"})
      EXPECT_THAT(browser.toPlainText().toStdString(), HasSubstr(told));
  });
  QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
}

/// Block by block or not, what was not come to is listed, and gone on with.
TEST_F(RunsOverFiles, ThatWereEndedAreGoneOnWith) {
  for (const bool confirmed : {false, true}) {
    put(4);
    restart();
    use([&] {
      askForDeletion(false);
      tick("chkConfirmEach", confirmed);
      expectStatistics("cmdContinue");
      expectStatistics("cmdExit");
      expectSaying("2 documents are left");
      execute();
      if (confirmed) decide("cmdPerform");
      if (confirmed) decide("cmdPerform");
      settle();
      EXPECT_EQ(contents(4), "xx..");
    });
    restart();
    use([&] {
      askForDeletion(true);
      tick("chkConfirmEach", false);
      expectChoice(QStringLiteral("&Go On with Them"));
      menu("Un&finished Documents …");
      EXPECT_EQ(control<QListView>("lbxPotentialFiles").model()->rowCount(), 2);
      execute();
      settle();
      EXPECT_EQ(contents(4), "xxxx");
      EXPECT_FALSE(isEnabled("Un&finished Documents …"));
    });
  }
}

/// With its changes so far, unsaved. The tab or the window may be closed.
TEST_F(RunsOverFiles, LeaveTheDocumentOpenWhoseConfirmationIsClosed) {
  put(3);
  scratch.put("b.txt", std::string(kBefore) + kBefore);
  use([&] {
    askForDeletion(true);
    tick("chkConfirmEach");
    execute();
    decide("cmdPerform");
    decide("cmdPerform");
    ASSERT_EQ(window->current()->name(), QStringLiteral("b.txt"));
    expectSaying("2 documents are left");
    confirmation()->close();
    settle();
    EXPECT_EQ(contents(1), "x");
    EXPECT_EQ(scratch.get("b.txt"), std::string(kBefore) + kBefore);
    ASSERT_NE(window->current(), nullptr);
    EXPECT_EQ(text(*window->current()), "one  two\rone [a]secret[b] two\r\r");
    menu("&Save");
    EXPECT_EQ(scratch.get("b.txt"), std::string(kAfter) + kBefore);
    settle();
    execute();
    ASSERT_NE(confirmation(), nullptr);
  });
  EXPECT_EQ(scratch.get("c.txt"), kBefore);
}

/// A save that fails loses no decision.
TEST_F(RunsOverFiles, LeaveADocumentOpenThatCannotBeSaved) {
  put(2);
  use([&] {
    askForDeletion(false);
    expectBox([this](QWidget& box) {
      scratch.put("a.txt", "of another program\n");
      press(box, "cmdContinue");
    });
    expectSaying("a.txt: changed: ");
    expectSaying("Difficulties closing file:");
    expectStatistics("cmdContinue");
    execute();
    settle();
    EXPECT_EQ(scratch.get("a.txt"), "of another program\n");
    EXPECT_EQ(scratch.get("b.txt"), kAfter);
    ASSERT_NE(window->current(), nullptr);
    EXPECT_EQ(text(*window->current()), "one  two\r\r");
    EXPECT_TRUE(window->current()->changed());
  });
}

TEST_F(RunsOverFiles, BeginWithoutAPlaceForOriginalsOnlyWhereTheUserSaysSo) {
  put(1);
  ::setenv("XDG_STATE_HOME", scratch.put("no folder", "").c_str(), 1);
  use([&] {
    askForDeletion(true);
    for (const bool runs : {false, true}) {
      if (runs) {
        expectChoice(QStringLiteral("&Run without an Undo"));
        expectSaying("report");
      } else {
        expectAnswer(QMessageBox::Cancel);
        expectSaying("The run was not begun.");
      }
      execute();
      settle();
      EXPECT_EQ(contents(1), runs ? "x" : ".");
    }
  });
}

}  // namespace
}  // namespace pluvo::desktop
