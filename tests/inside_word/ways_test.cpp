#include "base/utf.h"
#include "both_ways.h"
#include "file_run.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace pluvo::inside_word {
namespace {

using stand_in::StoredFile;
using stand_in::World;

constexpr word_com::Manner kCareful{.careful = true};

/// What Word may do, and what comes of a run over files: the first one's text, which files were saved, which
/// entered the list of recent ones, how many macros ran, and what the user heard.
struct FileWay {
  const char* what;
  std::function<void(World&)> prepare;
  std::string wanted;
  std::string careful = {};  ///< where it is another with care taken
};

void protect(World& world) {
  StoredFile& one = world.fileAt(u"C:\\f\\one.doc");
  one.protection = word::wdAllowOnlyReading;
  one.protectionPassword = u"key";
}

const FileWay kFileWays[] = {
    {"as Word mostly is", [](World&) {}, "B form; one two; one two", "B form; one two; "},
    {"macros run where they may", [](World& world) { world.ways.runsMacros = true; },
     "B form; one two; one two", "B form; one two; "},
    {"nothing keeps macros from running",
     [](World& world) {
       world.ways.runsMacros = true;
       world.calls.lack(u"Application.AutomationSecurity");
     },
     "B form; one two; one two; 2 macros", "B form; one two; ; 2 macros"},
    {"macros may not be kept from running",
     [](World& world) { world.calls.refuse(u"put Application.AutomationSecurity", 4605); },
     "A form; two; two; 4605 cpf:44", "A form; two; ; 4605 cpf:44"},
    {"a form is reset by protection",
     [](World& world) {
       protect(world);
       world.fileAt(u"C:\\f\\one.doc").blank = u"empty";
       world.ways.resetsForms = true;
     },
     "empty; one two; one two", "B form; one two; "},
    {"files have changes as soon as they are open",
     [](World& world) {
       world.fileAt(u"C:\\f\\one.doc").text = u"form";
       world.ways.opensChanged = true;
     },
     "form; two; one two", "form; two; "},
    {"a protected file that needs no change",
     [](World& world) {
       protect(world);
       world.fileAt(u"C:\\f\\one.doc").text = u"form";
     },
     "form; two; one two", "form; two; "},
    {"the user has it open, with changes",
     [](World& world) { world.add(u"C:\\f\\one.doc", {.text = u"mine"})->saved = false; },
     "mine; one two; one two", "mine; one two; "},
    {"flags of Find that cannot be set to what they are",
     [](World& world) {
       for (const char16_t* flag : {u"MatchWildcards", u"MatchSoundsLike", u"Forward", u"MatchCase"})
         world.calls.on(std::u16string(u"put Find.") + flag,
                        [](const auto&, VARIANT&, EXCEPINFO&) { return E_FAIL; });
     },
     "B form; one two; one two", "B form; one two; "},
    {"a Word that takes fewer arguments",
     [](World& world) {
       protect(world);
       world.calls.atMost(u"call Documents.Open", 12);
       world.calls.atMost(u"call Document.Protect", 3);
     },
     "A form; ; ; 450 cpf:44; 450 cpf:44", "B form; one two; "},
};

TEST(Ways, OfWordsWithFiles) {
  for (const FileWay& way : kFileWays) {
    for (const bool careful : {false, true}) {
      SCOPED_TRACE(way.what + std::string(careful ? ", carefully" : ""));
      FileRun run(careful ? kCareful : word_com::Manner());
      World& world = WordSession::world();
      way.prepare(world);
      run.typed = {u"key"};
      const auto heard = run.run();
      std::string outcome = base::utf8(FileRun::file(u"one").text);
      std::erase(outcome, '\r');
      for (const auto* names : {&world.savedFiles, &world.recentFiles}) {
        outcome += ";";
        for (const auto& name : *names) outcome += " " + base::utf8(name.substr(0, name.find(u'.')));
        if (names->empty()) outcome += " ";
      }
      if (world.macrosRun > 0) outcome += "; " + std::to_string(world.macrosRun) + " macros";
      for (const auto& line : heard) outcome += "; " + line;
      EXPECT_EQ(outcome, careful && !way.careful.empty() ? way.careful : way.wanted);
      EXPECT_EQ(world.automationSecurity, 1) << "given back";
    }
  }
}

/// What Word may do to a pass, whole or block by block, and what that leaves: the text, the highlights, and
/// how many blocks were operated on.
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
  std::string left = base::utf8(document->allText());
  if (left.ends_with('\r')) left.pop_back();
  std::string outcome = left + "; " + base::utf8(document->highlights()) + "; " +
                        place.lastSummary().substr(place.lastSummary().find_first_not_of(' '));
  for (const std::string& report : place.reports) outcome += "; " + report;
  return outcome;
}

TEST(Ways, OfWordsWithinAPass) {
  for (const PassWay& way : kPassWays) {
    for (const bool byBlock : {false, true}) {
      SCOPED_TRACE(way.what + std::string(byBlock ? ", block by block" : ""));
      EXPECT_EQ(pass(kCareful, way, byBlock, way.text), way.wanted);
    }
  }
}

/// Far down in a document: with the limits kept a block that is decided upon is changed, reported, and
/// offered again.
TEST(Ways, BeyondSixteenBits) {
  const std::u16string filler(70'000, u'x');
  PassWay way{"", [](World&) {}, {}, {}, {}};
  way.asked = {.begin = u"one", .operation = engine::kInsert, .place = engine::kAfter, .text = u"!"};
  const std::string careful = pass(kCareful, way, true, filler + u" one one");
  EXPECT_EQ(careful.substr(filler.size()), " one! one!; ; 2");
  const std::string kept = pass({}, way, true, filler + u" one one");
  EXPECT_TRUE(kept.substr(filler.size()).starts_with(" one!!!!!")) << kept.substr(filler.size());
  EXPECT_TRUE(kept.ends_with("; 6 cpf:30")) << kept.substr(filler.size());
}

/// What is given back where care is taken, and only there.
TEST(Ways, GiveTheViewBack) {
  for (const bool careful : {false, true}) {
    const WordSession word;
    const auto document = WordSession::document(u"one one");
    document->view = text::View::codes;
    dialog::Workplace place(word.word({.careful = careful}));
    place.pass({.begin = u"one", .operation = engine::kDelete});
    EXPECT_EQ(document->view == text::View::codes, careful);
  }
}

/// A find that goes on in the same pass asks Word for little.
TEST(Ways, CallsOfAFind) {
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

}  // namespace
}  // namespace pluvo::inside_word
