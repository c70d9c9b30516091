#include "document_builder.h"
#include "storage/files/as_text.h"
#include "used_window.h"

#include <QtTest/QtTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

namespace pluvo::desktop {
namespace {

using testing::HasSubstr;

constexpr const char* kMinutes = "one [a]secret[b] two\n[a]more[b]\nlast [a]x[b]\n";

std::string docx(std::string_view body) {
  const base::Bytes bytes = docx::documentOf(body);
  return {reinterpret_cast<const char*>(bytes.view.data()), bytes.view.size()};
}

TEST_F(UsedWindow, ServesAUsersWholePath) {
  std::string between;  // so that not all blocks are in sight at once
  std::string filler;
  for (int i = 0; i < 80; ++i) {
    between += docx::p(docx::run("between"));
    filler += "between\r";
  }
  const auto whole = [&](const std::string& first, const std::string& second, const std::string& last) {
    return "one " + first + " two\r" + filler + second + "\rlast " + last + "\r";
  };
  const std::string path = scratch.put(
      "minutes.docx", docx(docx::p(docx::run("one [a]sec") + docx::run("ret[b] two", "<w:b/>")) + between +
                           docx::p(docx::run("[a]more[b]")) + docx::p(docx::run("last [a]x[b]"))));
  const std::string before = whole("[a]secret[b]", "[a]more[b]", "[a]x[b]");
  const std::string after = whole("(gone)", "[a]more[b]", "(gone)");
  use([&] {
    OpenDocument& document = open(path);
    const auto awaits = [&](const char* block) {
      ASSERT_NE(confirmation(), nullptr);
      EXPECT_EQ(selected(document), block);
      const QRect seen = document.view()->selectionRect();
      EXPECT_FALSE(seen.isEmpty());
      EXPECT_FALSE(confirmation()->frameGeometry().intersects(
          seen.translated(document.view()->viewport()->mapToGlobal(QPoint(0, 0)))));
    };
    ask("[a]", "Replace");
    type("txtEndText", "[b]");
    type("txtTextToEnter", "(gone)");
    tick("chkConfirmEach");
    execute();
    awaits("[a]secret[b]");
    EXPECT_FALSE(control<QPushButton>("cmdExecuteFAR").isEnabled()) << "a second run";
    openAll({path});
    EXPECT_THAT(window->statusBar()->currentMessage().toStdString(), HasSubstr("under way"));

    decide("cmdPerform");
    awaits("[a]more[b]");
    EXPECT_EQ(text(document), whole("(gone)", "[a]more[b]", "[a]x[b]")) << "seen at once";
    EXPECT_TRUE(window->isWindowModified());
    decide("cmdSkip");
    awaits("[a]x[b]");
    expectBox([](QWidget& stats) {
      EXPECT_THAT(stats.findChild<QLabel*>("lblStats")->text().toStdString(),
                  testing::AllOf(HasSubstr("Found:3"), HasSubstr("Operated on:2"), HasSubstr("Skipped:1")));
      press(stats, "cmdContinue");
    });
    decide("cmdPerform");
    EXPECT_EQ(confirmation(), nullptr);
    EXPECT_TRUE(control<QPushButton>("cmdExecuteFAR").isEnabled());

    menu("&Save");
    settle();
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_EQ(textInFile(path), after);
    menu("&Undo Last Pass");
    EXPECT_EQ(text(document), before);
    EXPECT_TRUE(window->isWindowModified()) << "the file has the later text";
    menu("&Redo Pass");
    EXPECT_EQ(text(document), after);
    menu("&Undo Last Pass");
    menu("&Save");
    EXPECT_EQ(textInFile(path), before);
  });
}

TEST_F(UsedWindow, PastesWhatIsSelectedInTheDocument) {
  use([&] {
    OpenDocument& document = open(scratch.put("a.txt", kMinutes));
    document.document()->select({4, 16});
    tick("chkControlVButton");
    auto& begin = control<QWidget>("txtBeginText");
    QGuiApplication::clipboard()->setText(QStringLiteral("from the clipboard"));
    begin.setFocus();
    QTest::keyClick(&begin, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(control<QPlainTextEdit>("txtBeginText").toPlainText(), QStringLiteral("[a]secret[b]"));

    document.document()->select({21, 24});
    expectAnswer(QMessageBox::Yes);
    auto& end = control<QPlainTextEdit>("txtEndText");
    end.setFocus();
    QTest::mouseClick(end.viewport(), Qt::RightButton);
    EXPECT_TRUE(QTest::qWaitFor([&] { return end.toPlainText() == QStringLiteral("[a]"); }, kPatience));
  });
}

TEST_F(UsedWindow, RunsOverTheFilesOfAFolder) {
  for (const char* name : {"a.txt", "b.txt", "c.txt", "d.txt"}) scratch.put(name, kMinutes);
  chmod(scratch.path("d.txt").c_str(), 0444);
  use([&] {
    open(scratch.path("a.txt"));
    ask("[a]", "Delete");
    tick("chkQuiteMode");
    askOver(scratch.path(""));
    click("cmdGetPotentialFiles");
    auto& list = control<QListView>("lbxPotentialFiles");
    ASSERT_EQ(list.model()->rowCount(), 4);
    list.setCurrentIndex(list.model()->index(1, 0));
    click("cmdRemoveFiles");
    ASSERT_EQ(list.model()->rowCount(), 3);

    expectAnswer(QMessageBox::Yes);  // d.txt is read-only; to be saved elsewhere
    saveAsNames = {QString::fromStdString(scratch.path("d2.txt"))};
    execute();
    settle();
    const std::string done = "one secret[b] two\nmore[b]\nlast x[b]\n";
    EXPECT_EQ(scratch.get("a.txt"), done);
    EXPECT_EQ(scratch.get("b.txt"), kMinutes) << "taken out of the list";
    EXPECT_EQ(scratch.get("c.txt"), done);
    EXPECT_EQ(scratch.get("d.txt"), kMinutes);
    EXPECT_EQ(scratch.get("d2.txt"), done);
    const std::string summary = control<QPlainTextEdit>("txtOperationDisplay").toPlainText().toStdString();
    for (const char* name : {"a.txt", "c.txt", "d.txt"}) EXPECT_THAT(summary, HasSubstr(name));
    ASSERT_NE(window->current(), nullptr) << "the user's own document stays open";
    EXPECT_EQ(window->current()->name(), QStringLiteral("a.txt"));
    EXPECT_EQ(text(*window->current()).substr(0, 10), "one secret");
  });
}

TEST_F(UsedWindow, TakesNothingBackThatARunLeftOnDisk) {
  scratch.put("dir/b.txt", kMinutes);
  use([&] {
    OpenDocument& document = open(scratch.put("a.txt", kMinutes));
    tick("chkQuiteMode");
    ask("[a]", "Delete");
    execute();
    ask("[b]", "Delete");
    askOver(scratch.path("dir"));
    execute();
    settle();
    EXPECT_EQ(scratch.get("dir/b.txt"), "one [a]secret two\n[a]more\nlast [a]x\n");
    const auto refuses = [&] {
      const std::string before = text(document);
      menu("&Undo Last Pass");
      EXPECT_THAT(window->statusBar()->currentMessage().toStdString(), HasSubstr("Undo Last Run"));
      EXPECT_EQ(text(document), before);
    };
    refuses();
    type("txtFilePath", "");
    execute();
    EXPECT_EQ(text(document).substr(0, 14), "one secret two");
    menu("&Undo Last Pass");
    EXPECT_EQ(text(document).substr(0, 14), "one secret[b] ") << "a later pass in a document";
    refuses();
  });
}

/// Whatever name the run finds it under.
TEST_F(UsedWindow, AsksAboutDocumentsOfARunThatAreHalfDone) {
  std::filesystem::create_directory(scratch.path("dir"));
  std::filesystem::create_directory_symlink(scratch.path("dir"), scratch.path("link"));
  const char* const kFound = "one [a]secret two\n[a]more\nlast [a]x\n";
  const struct {
    const char* answer;
    const char* open;
    const char* other;
  } cases[] = {{"Cancel", kMinutes, kMinutes},
               {"&Leave Out", kMinutes, kFound},
               {"&Save and Run", "1 [a]secret two\n[a]more\nlast [a]x\n", kFound}};
  use([&] {
    ask("[b]", "Delete");
    tick("chkQuiteMode");
    askOver(scratch.path("link"));
    for (const auto& each : cases) {
      SCOPED_TRACE(each.answer);
      scratch.put("dir/b.txt", kMinutes);
      change(open(scratch.put("dir/a.txt", kMinutes)), 3, u"1");
      expectChoice(QLatin1String(each.answer));
      execute();
      settle();
      EXPECT_EQ(scratch.get("dir/a.txt"), each.open);
      EXPECT_EQ(scratch.get("dir/b.txt"), each.other);
      const OpenDocument& document = *window->current();
      EXPECT_EQ(text(document).substr(0, 5), "1 [a]") << "nothing of it is lost";
      EXPECT_EQ(document.changed(), std::string(each.open) == kMinutes);
      if (document.changed()) expectAnswer(QMessageBox::Discard);
      menu("&Close");
    }
  });
}

TEST_F(UsedWindow, HasAFolderChosenAsThePlatformDoes) {
  use([&] {
    const auto& path = control<QLineEdit>("txtFilePath");
    const QString here = QString::fromStdString(scratch.path(""));
    type("txtFilePath", "nowhere");
    click("cmdBrowse");
    EXPECT_EQ(path.text(), "nowhere") << "none was chosen";
    EXPECT_EQ(foldersShown.back(), QString::fromStdU16String(machinePlaces().documents));
    type("txtFilePath", scratch.path("").c_str());
    folderToChoose = here + "/chosen";
    click("cmdBrowse");
    EXPECT_EQ(foldersShown.back(), here);
    EXPECT_EQ(path.text(), folderToChoose);
  });
}

TEST_F(UsedWindow, ShowsItsOwnDocumentsInAWindowOfTheirOwn) {
  use([&] {
    const OpenDocument& document = open(scratch.put("a.txt", kMinutes));
    const auto help = [&](const char* name) -> QWidget* {
      for (QWidget* top : QApplication::topLevelWidgets()) {
        if (top->isVisible() && top->windowTitle().startsWith(QLatin1String(name))) return top;
      }
      return nullptr;
    };
    const auto stays = [&] {
      EXPECT_EQ(window->application()->count(), 1);
      EXPECT_EQ(window->application()->active(), document.document());
      EXPECT_EQ(window->current(), &document);
    };
    menu("&Instructions");
    QWidget* const shown = help("Instructions.doc");
    ASSERT_NE(shown, nullptr);
    stays();
    shown->close();
    auto& begin = control<QWidget>("txtBeginText");
    begin.setFocus();
    QTest::keyClick(&begin, Qt::Key_F1);
    EXPECT_EQ(help("Instructions.doc"), shown);
    for (const char* link : {"lblInstructions", "lblReadMe"}) emit control<QLabel>(link).linkActivated({});
    EXPECT_NE(help("Readme.txt"), nullptr);
    stays();
  });
}

TEST_F(UsedWindow, KeepsWhatIsNotSavedWhereARunLeavesTheFileOut) {
  const std::string path = scratch.put("a.txt", kMinutes);
  chmod(path.c_str(), 0444);
  use([&] {
    OpenDocument& document = open(path);
    change(document, 3, u"1");
    ask("[a]", "Delete");
    tick("chkQuiteMode");
    askOver(scratch.path(""));
    expectChoice(QStringLiteral("&Save and Run"));
    expectChoice(QStringLiteral("Cancel"));  // it may not be written
    execute();
    settle();
    ASSERT_EQ(window->current(), &document);
    EXPECT_EQ(text(document).substr(0, 5), "1 [a]");
    EXPECT_TRUE(document.changed());
  });
  EXPECT_EQ(scratch.get("a.txt"), kMinutes);
}

TEST_F(UsedWindow, ShowsTheFilesThatAreConfirmed) {
  for (const char* name : {"a.txt", "b.txt"}) scratch.put(name, kMinutes);
  use([&] {
    ask("secret", "Delete");
    tick("chkConfirmEach");
    tick("chkQuiteMode");
    askOver(scratch.path(""));
    execute();
    ASSERT_NE(confirmation(), nullptr);
    EXPECT_EQ(window->current()->name(), QStringLiteral("a.txt"));
    EXPECT_EQ(selected(*window->current()), "secret");
    decide("cmdPerform");
    ASSERT_NE(confirmation(), nullptr);
    EXPECT_EQ(window->current()->name(), QStringLiteral("b.txt"));
    decide("cmdSkip");
    EXPECT_EQ(confirmation(), nullptr);
    EXPECT_EQ(window->current(), nullptr);
    EXPECT_EQ(scratch.get("a.txt").substr(0, 10), "one [a][b]");
    EXPECT_EQ(scratch.get("b.txt"), kMinutes);
  });
}

/// Confirmed or not, over one document or many.
TEST_F(UsedWindow, WorksInThePlaceChosenAndShowsIt) {
  const std::string note =
      "<w:footnotes xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\">"
      "<w:footnote w:id=\"1\">" +
      docx::p(docx::run("note SECRET")) + "</w:footnote></w:footnotes>";
  const base::Bytes bytes = docx::documentOf(
      docx::wml("{[a SECRET][here]<r><footnoteReference w:id='1'/></r>[there]<sectPr><headerReference "
                "type='default' r:id='rId1'/></sectPr>}"),
      {{"word/header1.xml", docx::headerOf(docx::run("head SECRET"))},
       {"word/footnotes.xml", note},
       {"word/_rels/document.xml.rels",
        docx::relationships({{"header", "header1.xml"}, {"footnotes", "footnotes.xml"}})}});
  const std::string path = scratch.put("a.docx", files::textOf(bytes.view));
  const auto secretsInFile = [&] {
    const base::Bytes file = files::bytesOf(scratch.get("a.docx"));
    std::string parts;
    for (const char* const part : {"word/document.xml", "word/header1.xml", "word/footnotes.xml"})
      parts += docx::part(file, part).find("SECRET") != std::string::npos ? part[5] : '-';
    return parts;
  };
  use([&] {
    auto& list = *window->findChild<PlaceList*>();
    const auto places = [&] {
      std::string rows;
      for (int i = 0; i < list.count(); ++i) rows += list.item(i)->text().toStdString() + "|";
      return rows;
    };
    const auto choosePlace = [&](const char* row) {
      list.setCurrentItem(list.findItems(QLatin1String(row), Qt::MatchStartsWith).front());
    };
    EXPECT_THAT(places(), HasSubstr("Main text|All places|Headers|Footers|"));
    OpenDocument& document = open(path);
    EXPECT_EQ(places(), "Main text|All places|Headers (1)|Footnotes (1)|");
    const auto shown = [&] { return document.view()->accessibleName().toStdString(); };
    ask("SECRET", "Replace");
    type("txtTextToEnter", "x");
    tick("chkQuiteMode");
    tick("chkConfirmEach");
    choosePlace("All places");
    execute();
    EXPECT_EQ(shown(), "Document");
    decide("cmdSkip");
    EXPECT_EQ(shown(), "Header 1 of 1");
    EXPECT_FALSE(document.view()->selectionRect().isEmpty());
    EXPECT_FALSE(list.isEnabled());
    decide("cmdPerform");
    EXPECT_EQ(shown(), "Footnote 1 of 1");
    decide("cmdPerform");
    menu("&Undo Last Pass");
    settle();
    EXPECT_FALSE(document.changed());

    // A find lists its blocks; a row chosen shows its block, and the next pass empties the list.
    tick("chkConfirmEach", false);
    ask("SECRET", "None");
    execute();
    settle();
    auto& blocks = control<QListView>("foundBlocks");
    EXPECT_TRUE(blocks.isVisible());
    ASSERT_EQ(blocks.model()->rowCount(), 3);
    const QModelIndex inNote = blocks.model()->index(2, 0);
    EXPECT_EQ(inNote.data().toString(), QStringLiteral("Footnote 1: note SECRET"));
    blocks.setCurrentIndex(inNote);
    EXPECT_EQ(shown(), "Footnote 1 of 1");
    EXPECT_EQ(selected(document), "SECRET");
    ask("SECRET", "Replace");
    type("txtTextToEnter", "x");

    choosePlace("Headers");
    EXPECT_EQ(shown(), "Header 1 of 1");
    execute();
    menu("&Save");
    settle();
    EXPECT_EQ(secretsInFile(), "d-f");
    choosePlace("Footnotes");
    askOver(scratch.path(""));
    tick("chkFTtxt", false);
    tick("chkFTdoc");
    execute();
    settle();
    EXPECT_EQ(secretsInFile(), "d--");

    // A note goes with its reference.
    type("txtFilePath", "");
    ask("here", "Delete");
    type("txtEndText", "there");
    choosePlace("All places");
    OpenDocument& again = *window->current();
    again.lookAt(2);
    execute();
    EXPECT_TRUE(QTest::qWaitFor([&] { return places() == "Main text|All places|Headers (1)|"; }, kPatience));
    EXPECT_EQ(again.view()->accessibleName().toStdString(), "Document");
  });
}

TEST_F(UsedWindow, TellsWhatWasNotReached) {
  for (const char* name : {"a.docx", "b.docx"})
    scratch.put(name, docx(docx::wml("{[a SECRET]}{[<vanish/>|SECRET]}")));
  scratch.put("c.docx", docx(docx::wml("{[a SECRET]}")));
  const std::string rest = "See to it in a word processor.";
  const std::string one = "a.docx: not reached: the beginning occurs in hidden text (1). " + rest;
  const std::string many =
      "Not reached in 2 of 3 documents (a.docx, b.docx): the beginning occurs in hidden text (2). " + rest;
  use([&] {
    const auto status = [&] { return control<QLabel>("status").text().toStdString(); };
    ask("SECRET", "Highlight");
    tick("chkQuiteMode");
    open(scratch.path("a.docx"));
    for (const std::string& told : {one, many}) {
      tick("chkConfirmEach", false);
      execute();
      settle();
      EXPECT_EQ(status(), told);
      tick("chkConfirmEach");
      execute();
      EXPECT_NE(status(), told);
      while (confirmation() != nullptr) decide("cmdSkip");
      EXPECT_EQ(status(), told);
      menu("&Undo Last Pass");
      settle();
      askOver(scratch.path(""));
      tick("chkFTtxt", false);
      tick("chkFTdoc");
    }
    type("txtFilePath", "");
    type("txtBeginText", "nowhere");
    execute();
    EXPECT_EQ(status(), "Execute runs over this document");
  });
}

TEST_F(UsedWindow, KeepsTheTextWhereItsFileIsGone) {
  use([&] {
    OpenDocument& document = open(scratch.put("a.txt", kMinutes));
    change(document, 3, u"1");
    std::filesystem::remove(scratch.path("a.txt"));
    expectChoice(QStringLiteral("Save &As …"));
    expectChoice(QStringLiteral("Save &As …"));
    saveAsNames = {QString::fromStdString(scratch.path("no such folder/a.txt")),
                   QString::fromStdString(scratch.path("kept.txt"))};
    menu("&Save");
    EXPECT_EQ(scratch.get("kept.txt").substr(0, 5), "1 [a]");
    EXPECT_EQ(document.name(), QStringLiteral("kept.txt"));
    EXPECT_FALSE(document.changed());

    saveAsNames = {QString::fromStdString(scratch.path("copy.docx"))};
    menu("Save &As …");
    EXPECT_TRUE(std::filesystem::exists(scratch.path("copy.docx.txt"))) << "a document stays of its kind";
    EXPECT_EQ(proposed, QString::fromStdString(scratch.path("kept (2).txt")));

    open(scratch.put("other.txt", "other\n"));
    saveAsNames = {QString::fromStdString(scratch.path("./copy.docx.txt")),
                   QString::fromStdString(scratch.path("kept.txt")),
                   QString::fromStdString(scratch.path("kept.txt"))};
    expectSaying("another tab");
    menu("Save &As …");
    expectAnswer(QMessageBox::Cancel);
    menu("Save &As …");
    EXPECT_EQ(scratch.get("kept.txt").substr(0, 5), "1 [a]");
    expectChoice(QStringLiteral("&Replace"));
    menu("Save &As …");
    EXPECT_EQ(scratch.get("kept.txt"), "other\n");
  });
}

TEST_F(UsedWindow, AsksWhetherAFileMayBeWrittenWhenItIsSaved) {
  use([&] {
    const std::string path = scratch.put("a.txt", kMinutes);
    chmod(path.c_str(), 0444);
    OpenDocument& document = open(path);
    change(document, 3, u"1");
    expectSaying("permissions");
    menu("&Save");
    chmod(path.c_str(), 0644);
    menu("&Save");
    EXPECT_EQ(scratch.get("a.txt").substr(0, 5), "1 [a]");

    change(document, 1, u"2");
    scratch.put("a.txt", "of another program\n");
    expectSaying("Save the text under another name");
    menu("&Save");
    EXPECT_EQ(scratch.get("a.txt"), "of another program\n");
  });
}

TEST_F(UsedWindow, EndsAPassWhoseOperationsAreRefused) {
  use([&] {
    OpenDocument& document = open(scratch.put("a.txt", kMinutes));
    ask("[a]", "Highlight");
    tick("chkQuiteMode");
    expectSaying("no place for highlighting");
    expectAnswer(QMessageBox::No);
    execute();
    EXPECT_FALSE(document.changed());
  });
}

TEST_F(UsedWindow, AsksBeforeChangesAreLost) {
  use([&] {
    OpenDocument& document = open(scratch.put("a.txt", kMinutes));
    open(scratch.put("b.txt", "b\n"));
    change(document, 1, u"O");
    expectAnswer(QMessageBox::Cancel);
    window->close();
    settle();
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->current(), &document) << "the one that is asked about";
    expectAnswer(QMessageBox::Discard);
    menu("&Close");
    EXPECT_EQ(scratch.get("a.txt"), kMinutes);

    OpenDocument& again = open(scratch.path("a.txt"));
    change(again, 1, u"O");
    expectAnswer(QMessageBox::Save);
    menu("&Close");
    EXPECT_EQ(scratch.get("a.txt").substr(0, 3), "One");
    EXPECT_EQ(window->current()->name(), QStringLiteral("b.txt"));
    EXPECT_EQ(window->application()->active()->Name(), u"b.txt");
  });
}

TEST_F(UsedWindow, ClosesOnlyWhenNothingIsAsked) {
  use([&] {
    OpenDocument& document = open(scratch.put("a.txt", kMinutes));
    change(document, 3, u"1");
    std::filesystem::remove(scratch.path("a.txt"));
    expectBox([&](QWidget& box) {
      window->close();
      EXPECT_EQ(QApplication::activeModalWidget(), &box) << "one question at a time";
      static_cast<QDialog&>(box).reject();
    });
    expectAnswer(QMessageBox::Cancel);
    menu("&Save");
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->current(), &document);
  });
}

TEST_F(UsedWindow, EndsAConfirmationBeforeItCloses) {
  use([&] {
    open(scratch.put("a.txt", kMinutes));
    ask("[a]", "Delete");
    tick("chkConfirmEach");
    execute();
    ASSERT_NE(confirmation(), nullptr);
  });
  EXPECT_EQ(confirmation(), nullptr);
  EXPECT_EQ(scratch.get("a.txt"), kMinutes);
}

TEST_F(UsedWindow, AsksForTheEncodingOfAText) {
  const std::string path = scratch.put("a.txt", "\xE4\xCF\xC7 1");  // Дог in KOI8-R, too little to tell by
  const auto choose = [](const char* encoding, const char* sample, bool open) {
    return [=](QWidget& box) {
      auto& list = *box.findChild<QListWidget*>();
      list.setCurrentItem(list.findItems(QLatin1String(encoding), Qt::MatchStartsWith).value(0));
      EXPECT_EQ(box.findChild<QPlainTextEdit*>()->toPlainText().trimmed(), QString::fromUtf8(sample));
      const auto button = open ? QDialogButtonBox::Open : QDialogButtonBox::Cancel;
      box.findChild<QDialogButtonBox*>()->button(button)->click();
    };
  };
  use([&] {
    expectBox(choose("Windows-1251", "дПЗ 1", false));
    openAll({path});
    EXPECT_EQ(window->current(), nullptr);
    expectBox(choose("KOI8-R", "Дог 1", true));
    openAll({path});
    EXPECT_EQ(text(*window->current()), "Дог 1\r");
    expectBox(choose("Windows-1251", "дПЗ 1", true));
    menu("Reopen in Another &Encoding …");
    EXPECT_EQ(text(*window->current()), "дПЗ 1\r");
    change(*window->current(), 1, u"Ж");
    menu("&Save");
    EXPECT_EQ(scratch.get("a.txt"), "\xC6\xCF\xC7 1");
  });
}

TEST_F(UsedWindow, OpensWhatIsThereAndSaysWhatIsNot) {
  use([&] {
    expectSaying("no such file");
    openAll({scratch.path("none.txt")});
    EXPECT_EQ(window->current(), nullptr);
    toOpen = {QString::fromStdString(scratch.put("b.txt", "b\n")),
              QString::fromStdString(scratch.put("a.txt", "a\n"))};
    menu("&Open …");
    EXPECT_EQ(window->current()->name(), QStringLiteral("a.txt"));
    open(scratch.path("b.txt"));
    EXPECT_EQ(window->current()->name(), QStringLiteral("b.txt")) << "it is open already";
    std::filesystem::create_directory(scratch.path("folder"));
    std::filesystem::create_directory_symlink(scratch.path("folder"), scratch.path("link"));
    std::filesystem::create_symlink(scratch.path("a.txt"), scratch.path("link/c.txt"));
    open(scratch.path("link/c.txt"));
    EXPECT_EQ(window->current()->name(), QStringLiteral("a.txt")) << "under another name";
    std::filesystem::create_directory(scratch.path("folder/inner"));
    std::filesystem::create_directory_symlink(scratch.path("folder/inner"), scratch.path("inner"));
    open(scratch.path("inner/../c.txt"));
    EXPECT_EQ(window->current()->name(), QStringLiteral("a.txt")) << "up from where the link leads";
    EXPECT_EQ(window->application()->count(), 2);
    open(scratch.put("odd\xFF.txt", "odd\n"));
    EXPECT_EQ(text(*window->current()), "odd\r\r") << "names are bytes";
    QMimeData dropped;
    dropped.setUrls({QUrl::fromLocalFile(QString::fromStdString(scratch.path("a.txt")))});
    QDragEnterEvent enter({20, 20}, Qt::CopyAction, &dropped, Qt::LeftButton, {});
    QApplication::sendEvent(window.get(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(20, 20), Qt::CopyAction, &dropped, Qt::LeftButton, {});
    QApplication::sendEvent(window.get(), &drop);
    settle();
    EXPECT_EQ(window->current()->name(), QStringLiteral("a.txt"));
  });
}

TEST_F(UsedWindow, ExecuteIsInSightHoweverLittleRoomThereIs) {
  use([&] {
    open(scratch.put("a.txt", kMinutes));
    auto& button = control<QPushButton>("cmdExecuteFAR");
    for (const QSize& size : {QSize(683, 384), QSize(1360, 740), QSize(683, 384)}) {
      window->resize(size);
      settle();
      EXPECT_EQ(window->size(), size) << "no wider than the screen";
      const QRect there(button.mapTo(window.get(), QPoint()), button.size());
      EXPECT_TRUE(window->rect().contains(there)) << there.bottom();
      EXPECT_EQ(button.visibleRegion().boundingRect(), button.rect()) << size.width();
    }
    auto& display = control<QPlainTextEdit>("txtOperationDisplay");
    EXPECT_TRUE(display.visibleRegion().isEmpty());
    press(*window, "cmdViewOperation");
    EXPECT_FALSE(display.visibleRegion().isEmpty()) << "it has something to show";
  });
}

}  // namespace
}  // namespace pluvo::desktop
