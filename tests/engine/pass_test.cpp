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

TEST(Pass, GoesOnBehindTheBlockWhereNothingWasDone) {
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
    Answer skipped(const Block&) override { return Answer::stop; }
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
    EXPECT_EQ(desk.watch.searches, 0) << "every rejected candidate asks, none behind the stop";
    EXPECT_EQ(desk.engine.result().tooFar, 99);
    EXPECT_EQ(desk.engine.result().found, 0);
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
        ASSERT_TRUE(engine.FindNextItem(true));
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
  }
}

}  // namespace
}  // namespace pluvo::engine
