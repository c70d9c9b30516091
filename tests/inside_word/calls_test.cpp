#include "base/utf.h"
#include "dialog/workplace.h"
#include "word_stand_in/word_session.h"

#include <gtest/gtest.h>
#include <psapi.h>

namespace pluvo::inside_word {
namespace {

using stand_in::WordSession;

/// In whatever way a pass ends, Word is left as it was.
TEST(Calls, LeaveWordAsItWas) {
  const WordSession word;
  for (const char16_t* refused : {u"nothing", u"put Range.Text", u"call Find.Execute",
                                  u"get Application.ActiveDocument", u"put Find.Text", u"get Range.Start",
                                  u"put Application.ScreenUpdating", u"put Options.SmartCutPaste"}) {
    SCOPED_TRACE(base::utf8(refused));
    const auto document = WordSession::document(u"one one");
    WordSession::calls().refuse(refused, 4605, 2);
    dialog::Workplace place(word.word());
    place.pass({.begin = u"one", .operation = engine::kReplace, .text = u"two"});
    EXPECT_EQ(WordSession::world().undoLevel, 0);
    EXPECT_TRUE(WordSession::world().screenUpdating);
    EXPECT_TRUE(WordSession::world().smartCutPaste);
    EXPECT_LE(document->undoRecords.size(), 1U);
    WordSession::calls().allowAll();
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
  WordSession::calls().writing(false);
  const auto passes = [&](int count) {
    for (int i = 0; i < count; ++i) {
      const auto document = WordSession::document(u"one two three one two");
      dialog::Workplace place(word.word());
      place.pass({.begin = u"one",
                  .end = u"two",
                  .unit = engine::kParagraphs,
                  .operation = engine::kReplace,
                  .text = u"three"});
      EXPECT_EQ(document->allText(), u"three three three\r");
      WordSession::world().close(document);
    }
    return WordSession::calls().alive;
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
  EXPECT_EQ(WordSession::lines().front(), "get Window.Application()");
  // Without a document no window gives it, and the table of running objects has it, as an object of this
  // process.
  WordSession::world().close(document);
  EXPECT_EQ(word_com::connectToWord()->Documents()->Count(), 0);
  DestroyWindow(window);
}

}  // namespace
}  // namespace pluvo::inside_word
