#include "base/utf.h"
#include "dialog/opened_dialog.h"
#include "dialog/workplace.h"
#include "word_stand_in/word_session.h"

#include <gtest/gtest.h>
#include <psapi.h>

#include <functional>
#include <string>

namespace pluvo::inside_word {
namespace {

using stand_in::WordSession;
using stand_in::World;

constexpr word_com::Manner kCareful{.careful = true};

/// Events in Word during a pass, whole or block by block. They leave the text, the highlights, and the number
/// of blocks operated on.
struct PassWay {
  const char* what;
  std::function<void(World&)> prepare;
  std::u16string text;
  engine::Request asked;
  std::string wanted;
};

void tracked(World& world) { world.ways.keepsDeleted = true; }
void snapping(World& world) { world.ways.snapsOutOfFields = true; }

const PassWay kPassWays[] = {
    {"what is deleted stays",
     tracked,
     u"one two one",
     {.begin = u"one", .operation = engine::kDelete},
     "one two one; ; 2"},
    {"and what is replaced",
     tracked,
     u"one two one",
     {.begin = u"one", .operation = engine::kReplace, .text = u"one1"},
     "one1one two one1one; ; 2"},
    {"and whole blocks",
     tracked,
     u"a b a b",
     {.begin = u"a", .end = u"b", .operation = engine::kReplace, .text = u"ab a b ab"},
     "ab a b aba b ab a b aba b; ; 2"},
    {"a field in which no search goes on",
     snapping,
     u"on \x13 DATE \x14Monday noon\x15 noon",
     {.begin = u"on", .operation = engine::kHighlight},
     "on \x13 DATE \x14Monday noon\x15 noon; 7:0-2 7:3-14 7:26-28; 3"},
    {"what is hidden within a text",
     [](World&) {},
     u"o\xE000ne two o\xE000ne",
     {.begin = u"one", .operation = engine::kReplace, .text = u"1"},
     "1 two 1; ; 2"},
    {"the selection is in a footnote",
     [](World& world) { world.ways.story = 2; },
     u"one",
     {.begin = u"one", .operation = engine::kDelete, .startAtTop = false},
     "; ; 1"},
    {"a long block",
     [](World&) {},
     u"a 1 2 3 4 5 6 7 8 b a 1 b",
     {.begin = u"a", .end = u"b", .distance = 3, .unit = engine::kWords, .operation = engine::kHighlight},
     "a 1 2 3 4 5 6 7 8 b a 1 b; 7:20-25; 1"},
};

std::string pass(const word_com::Manner& manner, const PassWay& way, bool byBlock, std::u16string text) {
  const WordSession word;
  const auto document = WordSession::document(text);
  way.prepare(WordSession::world());
  document->view = text::View::codes;
  dialog::Workplace place(word.word(manner));
  engine::Request asked = way.asked;
  asked.liftLimits = manner.careful;
  asked.confirmEach = byBlock;
  place.ask(asked);
  int operated = 0;
  if (byBlock) {
    constexpr int kMost = 20;
    place.engine.InitializeFind();
    for (; operated < kMost && place.engine.FindNextItem(); ++operated) place.engine.MakeChanges();
    place.engine.ChangesSummary();
  } else {
    place.engine.GoGetEmFARBOT();
  }
  EXPECT_EQ(document->view == text::View::codes, manner.careful) << "given back";
  std::string left = base::utf8(document->allText());
  if (left.ends_with('\r')) left.pop_back();
  std::string outcome = left + "; " + base::utf8(document->highlights()) + "; " +
                        place.lastSummary().substr(place.lastSummary().find_first_not_of(' '));
  for (const std::string& report : place.reports) outcome += "; " + report;
  return outcome;
}

TEST(Passes, OfWordsWithinAPass) {
  for (const PassWay& way : kPassWays) {
    for (const bool byBlock : {false, true}) {
      SCOPED_TRACE(way.what + std::string(byBlock ? ", block by block" : ""));
      EXPECT_EQ(pass(kCareful, way, byBlock, way.text), way.wanted);
    }
  }
}

/// Far down in a document: with the limits kept a block that is decided upon is changed, reported, and
/// offered again.
TEST(Passes, BeyondSixteenBits) {
  const std::u16string filler(70'000, u'x');
  PassWay way{"", [](World&) {}, {}, {}, {}};
  way.asked = {.begin = u"one", .operation = engine::kInsert, .place = engine::kAfter, .text = u"!"};
  const std::string careful = pass(kCareful, way, true, filler + u" one one");
  EXPECT_EQ(careful.substr(filler.size()), " one! one!; ; 2");
  const std::string kept = pass({}, way, true, filler + u" one one");
  EXPECT_TRUE(kept.substr(filler.size()).starts_with(" one!!!!!")) << kept.substr(filler.size());
  EXPECT_TRUE(kept.ends_with("; 6 cpf:30")) << kept.substr(filler.size());
}

/// A find that goes on in the same pass asks Word for little.
TEST(Passes, CallsOfAFind) {
  const auto calls = [](bool careful, int blocks) {
    const WordSession word;
    std::u16string text;
    for (int i = 0; i < blocks; ++i) text += u"one ";
    WordSession::document(text);
    dialog::Workplace place(word.word({.careful = careful}));
    place.pass({.begin = u"one", .liftLimits = careful});
    return WordSession::lines().size();
  };
  EXPECT_EQ(calls(true, 12) - calls(true, 2), 10U * 18U);
  EXPECT_GT(calls(false, 12) - calls(false, 2), 10U * 35U);
}

/// What the user is told before a run, or instead of one.
TEST(Passes, AreNotBegunWhereWordKeepsTheUserFromIt) {
  struct Case {
    void (*prepare)(World&);
    const char* told;  ///< the beginning of it
    bool runs;
  };
  const Case cases[] = {
      {[](World&) {}, "", true},
      {[](World& world) { world.ways.keepsDeleted = true; }, "Changes are tracked", true},
      {[](World& world) { world.ways.story = 7; }, "The insertion point is in a header", true},
      {[](World& world) { world.ways.reads = true; }, "Word shows this document in reading view", false},
      {[](World& world) {
         world.close(world.active());
         world.ways.protectedViews = 1;
       },
       "Word shows this document in Protected View", false},
      {[](World& world) { world.close(world.active()); }, "Open a document first", false},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.told);
    const WordSession word;
    const auto document = WordSession::document(u"one");
    dialog::OpenedDialog opened;
    dialog::DialogServices here = opened.services();
    here.application = [&] { return word.word(); };
    WordSession::world().defaultPaths[word::wdUserTemplatesPath] =
        opened.u16(opened.folder.path("templates"));
    opened.restart(std::move(here));
    opened.open([&] {
      each.prepare(WordSession::world());
      opened.tick(u"chkStartFindsFromBeginning", false);
      opened.type(u"txtBeginText", u"one");
      opened.press(u"cmdExecuteFAR");
    });
    const auto told = opened.told();
    ASSERT_EQ(told.size(), *each.told == 0 ? 0U : 1U);
    EXPECT_TRUE(told.empty() || told[0].starts_with(each.told));
    EXPECT_EQ(WordSession::log().find("call Find.Execute") != std::string::npos, each.runs);
  }
}

/// A log has what Word is and refuses; texts only where they are asked for, and nothing where it cannot be.
TEST(Passes, AreWrittenDownWhereThatIsWanted) {
  using enum word_com::Logging;
  for (const auto logging : {off, on, withTexts}) {
    const WordSession word;
    const files::Scratch scratch;
    WordSession::world().defaultPaths[word::wdUserTemplatesPath] =
        base::nameText(scratch.path(logging == off ? "" : "data"));
    if (logging != off) scratch.put("data/PLUVO/word.log", "before\r\n");
    WordSession::calls().lack(u"Application.UndoRecord");
    WordSession::document(
        u"say \x201C"
        u"a\x201D secret");
    dialog::Workplace place(word.word({.logging = logging}));
    place.pass({.begin = u"\"a\"", .operation = engine::kDelete});
    const std::string log = scratch.get("data/PLUVO/word.log");
    for (const char* part :
         {"before\r\n", "Word 0.0, build ?", "Application.UndoRecord refused: 80020006",
          "a match of 3 positions, read as 3 characters, is not the text of 3", "1 looked alike"})
      EXPECT_EQ(log.find(part) != std::string::npos, logging != off) << part << '\n' << log;
    EXPECT_EQ(log.find("\"a\"") != std::string::npos, logging == withTexts);
    EXPECT_EQ(scratch.names().empty(), logging == off);
  }
}

std::size_t privateBytes() {
  PROCESS_MEMORY_COUNTERS counters{};
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters));
  return counters.PagefileUsage;
}

TEST(Passes, AThousandPassesLeakNothing) {
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

TEST(Passes, ReachTheWordThatTheyAreIn) {
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
