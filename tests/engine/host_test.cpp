#include "engine/desk.h"
#include "engine/random_requests.h"
#include "engine/watched_word.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace pluvo::engine {
namespace {

using testing::ElementsAre;

/// An engine at work in a word processor that is watched.
struct Host : DeskOver<WatchedApplication> {
  using DeskOver::DeskOver;
  std::ptrdiff_t called(const std::string& call) const {
    return std::ranges::count(application.calls.made, call);
  }
};

TEST(Host, IsAskedForAFindInOneOrder) {
  Host host("x¶");
  host.pass({.begin = u"A", .matchCase = true});
  const auto& calls = host.application.calls.made;
  EXPECT_THAT(
      (std::vector<std::string>(std::ranges::find(calls, "Find.ClearFormatting"), calls.end())),
      ElementsAre("Find.ClearFormatting", "Find.Text A", "Find.Forward true", "Find.MatchCase true",
                  "Find.MatchWholeWord false", "Find.MatchWildcards false", "Find.MatchSoundsLike false",
                  "Find.MatchAllWordForms false", "Find.Wrap 0", "Find.Execute"));
}

TEST(Host, IsNotAskedForTextsThatNobodyWants) {
  Host host("A1xB A2xB¶");
  host.pass({.begin = u"A", .end = u"B", .inside = u"x", .operation = kDelete});
  EXPECT_EQ(host.sample.print(), " ¶");
  EXPECT_EQ(host.called("Text"), 0);
}

TEST(Host, IsToldWhetherAMoveIsOf16Bits) {
  for (const bool lift : {false, true}) {
    Host host("A¶B¶");
    host.pass({.begin = u"A\rB", .liftLimits = lift});
    EXPECT_EQ(host.called("MoveEnd 16 bits"), lift ? 0 : 1);
  }
}

TEST(Host, MayRefuseAnOperation) {
  const struct {
    OperationCode operation;
    const char* call;
    const char* report;
  } cases[] = {{kInsert, "InsertBefore", "4605 cpf:30"},
               {kReplace, "Text=", "4605 cpf:31"},
               {kDelete, "Delete", "4605 cpf:32"},
               {kHighlight, "HighlightColorIndex", "4605 cpf:29"}};
  for (const auto& [operation, call, report] : cases) {
    Host host("A A A¶");
    host.application.calls.refused = call;
    host.watch.most = 3;
    const PassResult done = host.pass({.begin = u"A", .operation = operation});
    EXPECT_THAT(host.watch.faults, ElementsAre(report, report));
    EXPECT_THAT(host.watch.refusals, ElementsAre(4605, 4605));
    EXPECT_THAT((std::vector<std::int64_t>{done.found, done.operated, done.refused, done.faults}),
                ElementsAre(3, 2, 2, 2))
        << "a refused operation counts as operated";
    host.engine.MakeChanges();
    EXPECT_EQ(host.watch.refusals.size(), 3U) << "also where it is made alone";
  }
}

TEST(Host, MayFailAnywhere) {
  const Request asked{.begin = u"A\rA",
                      .end = u"B\rB",
                      .inside = u"x\rx",
                      .distance = 30,
                      .unit = kWords,
                      .operation = kDelete};
  const std::pair<const char*, const char*> cases[] = {
      {"Selection", "4605 cpf:27"}, {"Find.Execute", "4605 cpf:35"}, {"Find.Text x", "4605 cpf:33"},
      {"Count 2", "4605 cpf:34"},   {"Count 1", "4605 cpf:41"},      {"Text", "4605 cpf:41"}};
  for (const auto& [call, report] : cases) {
    SCOPED_TRACE(call);
    Host host("A¶Ax¶xB¶B¶");
    host.application.calls.refused = call;
    const PassResult done = host.pass(asked);
    ASSERT_FALSE(host.watch.faults.empty());
    EXPECT_EQ(host.watch.faults.front(), report);
    EXPECT_EQ(host.watch.faults.size(), static_cast<std::size_t>(done.faults));
    EXPECT_EQ(done.operated, 0);
  }
  Host blockByBlock("A¶Ax¶xB¶B¶");
  blockByBlock.application.calls.refused = "Selection";
  blockByBlock.engine.InitializeFind(asked);
  EXPECT_FALSE(blockByBlock.engine.FindNextItem());
  EXPECT_THAT(blockByBlock.watch.faults, ElementsAre("4605 cpf:27a"));
  Host host("A¶Ax¶xB¶B¶");
  EXPECT_EQ(host.pass(asked).operated, 1);
}

TEST(Host, MayHaveNoDocument) {
  Host host("A A A¶");
  host.watch.most = 2;
  const Request asked{.begin = u"A", .operation = kReplace, .text = u"b"};
  host.pass(asked);
  host.application.hasDocument = false;
  EXPECT_EQ(host.pass(asked).faults, 1);
  EXPECT_FALSE(host.engine.FindNextItem());
  host.engine.MakeChanges();
  host.engine.SkipChanges();
  EXPECT_THAT(host.watch.faults, ElementsAre("91 cpf:27e"));
  EXPECT_EQ(host.sample.print(), "b A A¶") << "the pass before is not gone on with";
  EXPECT_EQ(host.engine.result().operated + host.engine.result().skipped, 0);
}

TEST(Host, NeverMakesAPassEndless) {
  std::vector<Request> requests;
  for (const Request& asked :
       {Request{.begin = u""}, Request{.begin = u"A"}, Request{.begin = u"A", .end = u"B"},
        Request{.begin = u"A\rA"}, Request{.begin = u"A\rA", .end = u"B\rB", .inside = u"x"},
        Request{.begin = u"\r"}, Request{.begin = u"B\r"}}) {
    for (const auto operation : {kInsert, kReplace, kDelete, kHighlight}) {
      for (const auto on : {kSelection, kBeginning, kEnding, kInsideText}) {
        requests.push_back(asked);
        requests.back().operation = operation;
        requests.back().location = on;
        requests.back().text = asked.begin + u"x" + asked.end;
      }
    }
  }
  for (Request& asked : requests) {
    for (const auto place : {kBefore, kAfter}) {
      for (const bool lift : {false, true}) {
        Host host("A¶AxB¶B A¶AxB¶B A¶AxB¶B¶");
        asked.place = place;
        asked.liftLimits = lift;
        EXPECT_LE(host.pass(asked).operated, 7) << words(asked) << (lift ? " without limits" : "");
      }
    }
  }
}

}  // namespace
}  // namespace pluvo::engine
