#include "engine/random_requests.h"
#include "engine/watched_word.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace pluvo::engine {
namespace {

using testing::ElementsAre;

/// An engine at work in a word processor that is watched.
struct Host {
  explicit Host(std::string_view notation) : sample(notation) {
    word->add(sample.document);
    work.engine.observer(&watch);
  }
  void pass(const Asked& asked) { work.pass(asked); }
  std::ptrdiff_t called(const std::string& call) const { return std::ranges::count(word->calls.made, call); }

  struct Watch : PassObserver {
    Answer operated(const Block&, const errors::Fault* refusal) override {
      ++operations;
      if (refusal != nullptr) refusals.push_back(refusal->number);
      return operations < most ? Answer::goOn : Answer::stop;
    }
    int operations = 0;
    int most = 1000;
    std::vector<std::int32_t> refusals;
  } watch;
  notation::Sample sample;
  std::shared_ptr<WatchedApplication> word = std::make_shared<WatchedApplication>();
  Workplace work{word};
};

TEST(Host, IsAskedForAFindInOneOrder) {
  Host host("x¶");
  host.pass({.begin = u"A"});
  const auto& calls = host.word->calls.made;
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
    host.pass({.begin = u"A\rB", .lift = lift});
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
    host.word->calls.refused = call;
    host.watch.most = 2;
    host.pass({.begin = u"A", .operation = operation});
    EXPECT_THAT(host.work.reports, ElementsAre(report, report));
    EXPECT_THAT(host.watch.refusals, ElementsAre(4605, 4605));
    EXPECT_EQ(host.work.lastSummary(), "   2") << "a refused operation counts as operated";
    host.work.engine.MakeChanges();
    EXPECT_EQ(host.watch.refusals.size(), 3U) << "also where it is made alone";
  }
}

TEST(Host, MayFailAnywhere) {
  const Asked asked{.begin = u"A\rA",
                    .end = u"B\rB",
                    .inside = u"x\rx",
                    .apart = u"30",
                    .unit = kWords,
                    .operation = kDelete};
  const std::pair<const char*, const char*> cases[] = {
      {"Selection", "4605 cpf:27"}, {"Find.Execute", "4605 cpf:35"}, {"Find.Text x", "4605 cpf:33"},
      {"Count 2", "4605 cpf:34"},   {"Count 1", "4605 cpf:41"},      {"Text", "4605 cpf:41"}};
  for (const auto& [call, report] : cases) {
    SCOPED_TRACE(call);
    Host host("A¶Ax¶xB¶B¶");
    host.word->calls.refused = call;
    host.pass(asked);
    ASSERT_FALSE(host.work.reports.empty());
    EXPECT_EQ(host.work.reports.front(), report);
    EXPECT_EQ(host.work.lastSummary(), "   0") << "the summary follows whatever failed";
  }
  Host host("A¶Ax¶xB¶B¶");
  host.pass(asked);
  EXPECT_EQ(host.work.lastSummary(), "   1");
}

TEST(Host, MayHaveNoDocument) {
  Host host("A¶");
  host.word->hasDocument = false;
  host.pass({.begin = u"A"});
  EXPECT_THAT(host.work.reports, ElementsAre("91 cpf:27e"));
}

TEST(Host, NeverMakesAPassEndless) {
  std::vector<Asked> requests;
  for (const Asked& asked : {Asked{.begin = u""}, Asked{.begin = u"A"}, Asked{.begin = u"A", .end = u"B"},
                             Asked{.begin = u"A\rA"}, Asked{.begin = u"A\rA", .end = u"B\rB", .inside = u"x"},
                             Asked{.begin = u"\r"}, Asked{.begin = u"B\r"}}) {
    for (const auto operation : {kInsert, kReplace, kDelete, kHighlight}) {
      for (const auto on : {kSelection, kBeginning, kEnding, kInsideText}) {
        requests.push_back(asked);
        requests.back().operation = operation;
        requests.back().on = on;
        requests.back().text = asked.begin + u"x" + asked.end;
      }
    }
  }
  for (Asked& asked : requests) {
    for (const auto place : {kBefore, kAfter}) {
      for (const bool lift : {false, true}) {
        Host host("A¶AxB¶B A¶AxB¶B A¶AxB¶B¶");
        asked.place = place;
        asked.lift = lift;
        host.pass(asked);
        EXPECT_LE(host.watch.operations, 7) << words(asked) << (lift ? " without limits" : "");
      }
    }
  }
}

}  // namespace
}  // namespace pluvo::engine
