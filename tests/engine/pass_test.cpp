#include "engine/desk.h"

#include <gtest/gtest.h>

namespace pluvo::engine {
namespace {

using Decision = Observer::Decision;
using Faults = std::vector<std::string>;

TEST(Pass, AsksBeforeEachBlockWhereItIsToBeConfirmed) {
  Desk desk("A1 A2 A3 A4¶");
  std::vector<text::Span> selected;
  desk.watch.deciding = [&] { selected.push_back(desk.sample.document->selection()); };
  desk.watch.decisions = {Decision::operate, Decision::skip, Decision::stop};
  const PassResult done =
      desk.pass({.begin = u"A", .operation = kReplace, .text = u"bb", .confirmEach = true});
  EXPECT_EQ(desk.text(), "bb1 A2 A3 A4¶");
  EXPECT_EQ(selected, (std::vector<text::Span>{{0, 1}, {4, 5}, {7, 8}}));
  EXPECT_EQ(desk.sample.document->selection(), (text::Span{0, 0}));
  EXPECT_EQ(done.found, 3);
  EXPECT_EQ(done.operated, 1);
  EXPECT_EQ(done.skipped, 1);
}

TEST(Pass, GoesOnAfterTheBlockWhereNothingWasDone) {
  // The beginning reaches beyond its block. With limits the search then stays inside it, whatever was to be
  // done to it.
  Desk desk("A¶B¶C A¶B¶C¶");
  desk.watch.decisions = {Decision::skip, Decision::skip};
  desk.pass(
      {.begin = u"A\rB\rC", .end = u"B", .operation = kDelete, .location = kBeginning, .confirmEach = true});
  EXPECT_EQ(desk.watch.blocks.size(), 1U);
}

TEST(Pass, EndsWhereTheObserverSaysSo) {
  for (const std::size_t most : {1U, 2U}) {
    Desk desk("A A A¶");
    desk.watch.most = most;
    const PassResult done = desk.pass({.begin = u"A", .operation = kDelete});
    EXPECT_EQ(done.found, static_cast<std::int64_t>(most));
    EXPECT_EQ(done.operated, static_cast<std::int32_t>(most - 1));
  }
  struct : Watch {
    void begins() override { ++passes; }
    Next skipped(const Block&) override { return Next::stop; }
    int passes = 0;
  } watch;
  watch.decisions = {Decision::skip, Decision::skip};
  Desk desk("A A A¶");
  Engine(desk.application, watch).pass(Request{.begin = u"A", .confirmEach = true});
  EXPECT_EQ(watch.blocks.size(), 1U);
  EXPECT_EQ(watch.passes, 1);
}

TEST(Pass, CanBeStoppedWhereNoBlockIsFound) {
  for (const bool blockByBlock : {false, true}) {
    Desk desk(std::string(2000, 'A') + "¶¶b¶");
    desk.watch.searches = 100;
    const Request request = Request{.begin = u"A", .end = u"b", .unit = kParagraphs};
    if (blockByBlock) {
      desk.engine.InitializeFind(request);
      EXPECT_FALSE(desk.engine.FindNextItem());
    } else {
      desk.engine.pass(request);
    }
    EXPECT_EQ(desk.watch.searches, 0) << "every rejected candidate asks, none after the stop";
    EXPECT_EQ(desk.engine.result().tooFar, 99);
    EXPECT_EQ(desk.engine.result().found, 0);
  }
}

struct StoryWatch : Watch {
  void enters(std::int32_t number) override { story = number; }
  Next found(const Block& block) override {
    told += std::to_string(story);
    return Watch::found(block);
  }
  std::int32_t story = 0;
  std::string told;  ///< the story of each block
};

TEST(Pass, WorksInOneStoryAfterTheOther) {
  constexpr auto kNotes = word::kindsOf(word::wdFootnotesStory);
  constexpr auto kHeaders = static_cast<word::StoryKinds>(word::kindsOf(word::wdFirstPageHeaderStory) |
                                                          word::kindsOf(word::wdPrimaryHeaderStory));
  constexpr auto kAll = static_cast<word::StoryKinds>(kNotes | kHeaders | word::kMainTextAlone);
  struct Case {
    Request request;
    std::string texts;  ///< of the stories afterwards
    std::string blocks;
    std::size_t selected = 0;  ///< the story in which the selection stands, at 2
    std::size_t most = 1000;
  };
  const Case cases[] = {
      {{.begin = u"A"}, "1b b|A|A 2A|3 A|B", "00", 2},
      {{.begin = u"A", .stories = kNotes}, "1A A|A|A 2A|3 b|B", "3"},
      {{.begin = u"A", .stories = kHeaders}, "1A A|b|b 2b|3 A|B", "122"},
      {{.begin = u"A", .stories = kAll}, "1b b|b|b 2b|3 b|B", "001223"},
      {{.begin = u"A", .stories = kAll}, "1b A|A|A 2A|3 A|B", "00", 0, 2},
      {{.begin = u"A", .stories = kHeaders, .startAtTop = false}, "1A A|A|A 2b|3 A|B", "2", 2},
      {{.begin = u"A", .stories = kHeaders, .startAtTop = false}, "1A A|b|b 2b|3 A|B", "122", 3},
      {{.begin = u"A", .end = u"B", .stories = kAll}, "1A A|A|A 2A|3 A|B", ""},
      {{.begin = u"A\r", .stories = kHeaders, .liftLimits = true}, "1A A|b|A 2b|3 A|B", "12"},
      {{.begin = u"A", .stories = word::kindsOf(word::wdCommentsStory)}, "1A A|A|A 2A|3 A|B", ""}};
  for (const auto& [asked, texts, blocks, selected, most] : cases) {
    for (const bool blockByBlock : {false, true}) {
      std::vector<document::Content> contents;
      const std::pair<word::WdStoryType, const char*> stories[] = {{word::wdMainTextStory, "1A A"},
                                                                   {word::wdFirstPageHeaderStory, "A"},
                                                                   {word::wdPrimaryHeaderStory, "A 2A"},
                                                                   {word::wdFootnotesStory, "3 A"},
                                                                   {word::wdFootnotesStory, "B"}};
      for (const auto& [kind, text] : stories) {
        contents.push_back(notation::parse(text).content);
        contents.back().kind = kind;
      }
      const auto document = memory::MemoryDocument::create(std::move(contents));
      document->select(selected, {2, 2});
      memory::MemoryApplication application;
      application.add(document);
      StoryWatch watch;
      watch.most = most;
      Engine engine(application, watch);
      Request request = asked;
      request.operation = kReplace;
      request.text = u"b";
      if (blockByBlock) {
        engine.InitializeFind(request);
        while (engine.FindNextItem(true)) engine.MakeChanges();
      } else {
        engine.pass(request);
      }
      std::string after;
      for (std::size_t i = 0; i < document->stories().count(); ++i)
        after += (i > 0 ? "|" : "") + notation::print(document->stories().story(i));
      std::erase_if(after, [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
      EXPECT_EQ(after, texts);
      EXPECT_EQ(watch.told, blocks) << texts;
      EXPECT_TRUE(watch.faults.empty()) << texts;
    }
  }
}

TEST(SearchPoint, IsNarrowedTo16BitsUnlessLimitsAreLifted) {
  for (const bool skip : {false, true}) {
    for (const std::size_t before : {32765U, 32766U, 32767U}) {
      for (const bool lift : {false, true}) {
        SCOPED_TRACE(before);
        Desk desk(std::string(before, '.') + "A A¶");
        Engine& engine = desk.engine;
        engine.InitializeFind(Request{.begin = u"A", .operation = kHighlight, .liftLimits = lift});
        ASSERT_TRUE(engine.FindNextItem());
        EXPECT_EQ(desk.sample.document->selection(), (text::Span{0, 0})) << "nothing is selected unasked";
        skip ? engine.SkipChanges() : engine.MakeChanges();
        const bool fits = lift || before + 1 <= 32767;
        const char* fault = skip ? "6 cpf:27d" : "6 cpf:29";
        EXPECT_EQ(desk.watch.faults, fits ? Faults{} : Faults{fault});
        ASSERT_TRUE(engine.FindNextItem(true));
        const auto at = static_cast<text::Position>(fits ? before + 2 : before);
        EXPECT_EQ(desk.sample.document->selection(), (text::Span{at, at + 1}))
            << "it stays where it cannot move";
      }
    }
  }
}

TEST(SkippedCount, Is16BitsWideUnlessLimitsAreLifted) {
  for (const bool lift : {false, true}) {
    Desk desk("A¶");
    desk.engine.InitializeFind(Request{.begin = u"A", .liftLimits = lift});
    for (int i = 0; i < 32768; ++i) desk.engine.SkipChanges();
    EXPECT_EQ(desk.watch.faults, lift ? Faults{} : Faults{"6 cpf:27d"});
    EXPECT_EQ(desk.engine.result().skipped, lift ? 32768 : 32767);
    EXPECT_EQ(desk.watch.skips, lift ? 32768 : 32767);
  }
}

}  // namespace
}  // namespace pluvo::engine
