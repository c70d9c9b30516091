#include "word_session.h"

#include <gtest/gtest.h>
#include <psapi.h>

#include <regex>
#include <set>

namespace pluvo::inside_word {
namespace {

/// What Word is asked, as it declares its members: its own VARIANT parameters as 32-bit integers or, given
/// by reference, 16-bit ones; what is left out as missing; truth as -1 and 0.
const char* const kAllowed[] = {
    R"(get [A-Za-z]+\.[A-Za-z]+\(\))",
    R"(call Document\.Range\(VT_I4 \d+, VT_I4 \d+\))",
    R"(call (Range|Selection)\.SetRange\(VT_I4 \d+, VT_I4 \d+\))",
    R"(put Range\.(Start|End)\(VT_I4 \d+\))",
    R"(put Range\.Text\(VT_BSTR ".*"\))",
    R"(call Range\.Insert(Before|After)\(VT_BSTR ".*"\))",
    R"(call Range\.Move(Start|End)\(VT_I4 1, (VT_I4|VT_BYREF\|VT_I2) -?\d+\))",
    R"(call Range\.Delete\(missing, missing\))",
    R"(call Range\.Select\(\))",
    R"(put Range\.HighlightColorIndex\(VT_I4 \d+\))",
    R"(call Find\.ClearFormatting\(\))",
    R"(put Find\.Text\(VT_BSTR ".{0,255}"\))",
    R"(put Find\.[A-Za-z]+\(VT_BOOL (-1|0)\))",
    R"(put Find\.Wrap\(VT_I4 0\))",
    R"(call Find\.Execute\((missing, ){14}missing\))",
    R"(put View\.ShowFieldCodes\(VT_BOOL (-1|0)\))",
    R"(put Application\.ScreenUpdating\(VT_BOOL (-1|0)\))",
    R"(put Options\.SmartCutPaste\(VT_BOOL (-1|0)\))",
    R"(call UndoRecord\.StartCustomRecord\(VT_BSTR ".*"\))",
    R"(call UndoRecord\.EndCustomRecord\(\))",
};

std::string callOf(const std::string& line) { return line.substr(0, line.find(" -> ")); }

TEST(Calls, HaveTheTypesThatWordDeclares) {
  const WordSession word;
  using namespace engine;
  const auto pass = [&](Asked asked) {
    const auto document = WordSession::document(u"one three two. One two " + std::u16string(300, u'x'));
    Workplace place(word.word());
    place.boxes.answers = {forms::Answer::yes, forms::Answer::no};
    asked.matchCase = false;
    place.pass(asked);
    WordSession::world().close(document);
  };
  for (const auto operation : {kInsert, kReplace, kHighlight, kDelete}) {
    for (const auto where : {kBefore, kAfter}) {
      pass({.begin = u"one",
            .end = u"two",
            .inside = u"three",
            .apart = u"5",
            .unit = kWords,
            .operation = operation,
            .place = where,
            .text = u"x"});
    }
  }
  pass({.begin = std::u16string(280, u'x'), .operation = kHighlight, .lift = true, .fieldCodes = true});
  pass({.begin = u"one", .operation = kHighlight, .confirm = true});

  std::set<std::string> members;
  for (const auto& wide : WordSession::world().calls.lines()) {
    const std::string call = callOf(errors::utf8(wide));
    const bool allowed = std::any_of(std::begin(kAllowed), std::end(kAllowed), [&](const char* pattern) {
      return std::regex_match(call, std::regex(pattern));
    });
    EXPECT_TRUE(allowed) << call;
    members.insert(call.substr(0, call.find('(')));
  }
  for (const char* member :
       {"call Document.Range", "call Selection.SetRange", "call Range.SetRange", "put Range.Start",
        "put Range.End", "put Range.Text", "call Range.InsertBefore", "call Range.InsertAfter",
        "call Range.MoveEnd", "call Range.Delete", "call Range.Select", "put Range.HighlightColorIndex",
        "call Find.Execute", "put Find.Text", "put Find.Wrap", "put View.ShowFieldCodes",
        "get Words.Count"}) {
    EXPECT_TRUE(members.contains(member)) << "never called: " << member;
  }
}

TEST(Calls, OfADocumentsFile) {
  const WordSession word;
  WordSession::world().fileAt(u"C:\\f\\one.doc").text = u"one";
  const auto application = word.word();
  const auto document = application->Documents()->Open(u"C:\\f\\one.doc");
  document->WritePassword(u"");
  document->Protect(word::wdAllowOnlyFormFields, u"key");
  document->Unprotect(u"key");
  document->StoryRanges(word::wdMainTextStory)->Select();
  document->Activate();
  document->Close(true);
  EXPECT_THAT(application->Options()->DefaultFilePath(word::wdUserTemplatesPath), u"C:\\Templates");
  const std::string log = WordSession::log();
  for (const char* call :
       {R"(call Documents.Open(VT_BSTR "C:\f\one.doc")", R"(put Document.WritePassword(VT_BSTR ""))",
        R"(call Document.Protect(VT_I4 2, missing, VT_BSTR "key")",
        R"(call Document.Unprotect(VT_BSTR "key"))", R"(call StoryRanges.Item(VT_I4 1))",
        "call Document.Activate()", "call Document.Close(VT_BOOL -1, missing, missing)",
        "get Options.DefaultFilePath(VT_I4 2)"}) {
    EXPECT_THAT(log, testing::HasSubstr(call));
  }
}

/// In whatever way a pass ends, Word is left as it was.
TEST(Calls, LeaveWordAsItWas) {
  const WordSession word;
  for (const char16_t* refused :
       {u"-", u"put Range.Text", u"Find.Execute", u"Application.ActiveDocument", u"put Find.Text",
        u"Range.Start", u"put Application.ScreenUpdating", u"put Options.SmartCutPaste"}) {
    const auto document = WordSession::document(u"one one");
    WordSession::world().calls.refuse(refused, 4605, 2);
    engine::Workplace place(word.word());
    place.pass({.begin = u"one", .operation = engine::kReplace, .text = u"two"});
    EXPECT_EQ(WordSession::world().undoLevel, 0) << errors::utf8(refused);
    EXPECT_TRUE(WordSession::world().screenUpdating) << errors::utf8(refused);
    EXPECT_TRUE(WordSession::world().smartCutPaste) << errors::utf8(refused);
    EXPECT_LE(document->undoRecords.size(), 1U) << errors::utf8(refused);
    WordSession::world().calls.allowAll();
    WordSession::world().close(document);
  }
}

std::size_t privateBytes() {
  PROCESS_MEMORY_COUNTERS counters{};
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters));
  return counters.PagefileUsage;
}

TEST(Calls, AThousandPassesLeakNothing) {
  const WordSession word;
  WordSession::world().calls.writing(false);
  const auto passes = [&](int count) {
    for (int i = 0; i < count; ++i) {
      const auto document = WordSession::document(u"one two three one two");
      engine::Workplace place(word.word());
      place.pass({.begin = u"one",
                  .end = u"two",
                  .unit = engine::kParagraphs,
                  .operation = engine::kReplace,
                  .text = u"three"});
      EXPECT_EQ(document->allText(), u"three three three\r");
      WordSession::world().close(document);
    }
    return WordSession::world().calls.alive();
  };
  const std::int32_t objects = passes(200);
  const std::size_t bytes = privateBytes();
  EXPECT_EQ(passes(1000), objects);
  constexpr std::size_t kSlack = 512 * 1024;
  EXPECT_LE(privateBytes(), bytes + kSlack);
}

TEST(Calls, ReachTheWordThatTheyAreIn) {
  const WordSession word;
  const auto document = WordSession::document(u"one");
  const HWND window = WordSession::world().window();
  EXPECT_EQ(word_com::connectToWord()->ActiveDocument()->Name(), u"document.txt");
  // Without a document no window gives it, and the table of running objects has it, as an object of this
  // process.
  WordSession::world().close(document);
  EXPECT_EQ(word_com::connectToWord()->Documents()->Count(), 0);
  DestroyWindow(window);
}

}  // namespace
}  // namespace pluvo::inside_word
