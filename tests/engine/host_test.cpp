#include "engine/string_word.h"
#include "engine/workplace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace pluvo::engine {
namespace {

using testing::ElementsAre;

/// An engine at work on a string.
struct Host {
  explicit Host(std::u16string text) : word(std::make_shared<StringWord>(std::move(text))), work(word) {
    work.engine.observer(&watch);
  }
  void pass(const Asked& asked) { work.pass(asked); }
  std::ptrdiff_t called(const std::string& call) const {
    return std::count(word->calls.begin(), word->calls.end(), call);
  }

  struct Watch : PassObserver {
    Answer operated(const Block&, const errors::Fault* refusal) override {
      ++operations;
      if (refusal != nullptr) refusals.push_back(refusal->number);
      return operations < 1000 ? Answer::goOn : Answer::stop;
    }
    int operations = 0;
    std::vector<std::int32_t> refusals;
  } watch;
  std::shared_ptr<StringWord> word;
  Workplace work;
};

TEST(Host, IsAskedForAFindInOneOrder) {
  Host host(u"x");
  host.pass({.begin = u"A", .matchCase = true, .fieldCodes = true});
  const auto& calls = host.word->calls;
  EXPECT_EQ(calls[0], "ShowFieldCodes true");
  EXPECT_EQ(calls[1], "Selection.SetRange 0 0");
  EXPECT_THAT(
      (std::vector<std::string>(calls.begin() + 2, calls.end())),
      ElementsAre("Find.ClearFormatting", "Find.Text A", "Find.Forward true", "Find.MatchCase true",
                  "Find.MatchWholeWord false", "Find.MatchWildcards false", "Find.MatchSoundsLike false",
                  "Find.MatchAllWordForms false", "Find.Wrap 0", "Find.Execute"));
}

TEST(Host, IsNotAskedForTextsThatNobodyWants) {
  Host host(u"A1xB A2xB");
  host.pass({.begin = u"A", .end = u"B", .inside = u"x", .operation = kDelete});
  EXPECT_EQ(host.word->text, u" ");
  EXPECT_EQ(host.called("Text"), 0);
}

TEST(Host, IsToldWhetherAMoveIsOf16Bits) {
  for (const bool lift : {false, true}) {
    Host host(u"A\rB");
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
    Host host(u"A A");
    host.word->refused = call;
    host.pass({.begin = u"A", .operation = operation});
    EXPECT_THAT(host.work.reports.all, ElementsAre(report, report));
    EXPECT_THAT(host.watch.refusals, ElementsAre(4605, 4605));
    EXPECT_EQ(host.work.lastSummary(), "   2") << "a refused operation counts as operated";
  }
}

TEST(Host, MayFailAnywhere) {
  const Asked asked{.begin = u"A\rA",
                    .end = u"B\rB",
                    .inside = u"x\rx",
                    .apart = u"30",
                    .unit = kWords,
                    .operation = kDelete};
  const struct {
    const char* call;
    const char* report;
    const char* summary;
  } cases[] = {
      {"ShowFieldCodes", "4605 cpf:27e", "   0"},
      {"Selection", "4605 cpf:27", "   0"},
      {"Find.Execute", "4605 cpf:35", "   0"},
      {"Find.Text x", "4605 cpf:33", "   0"},
      {"Count 2", "4605 cpf:34", "   0"},
      {"Count 1", "4605 cpf:41", "   0"},
      {"Text", "4605 cpf:41", "   0"},
  };
  for (const auto& [call, report, summary] : cases) {
    SCOPED_TRACE(call);
    Host host(u"A\rAx\rxB\rB");
    host.word->refused = call;
    host.pass(asked);
    ASSERT_FALSE(host.work.reports.all.empty());
    EXPECT_EQ(host.work.reports.all.front(), report);
    EXPECT_EQ(host.work.lastSummary(), summary) << "the summary follows whatever failed";
  }
  Host host(u"A\rAx\rxB\rB");
  host.pass(asked);
  EXPECT_EQ(host.work.lastSummary(), "   1");
}

TEST(Host, MayHaveNoDocument) {
  Host host(u"A");
  host.word->hasDocument = false;
  host.pass({.begin = u"A"});
  EXPECT_THAT(host.work.reports.all, ElementsAre("91 cpf:27e", "91 cpf:35"));
  host.work.engine.MakeChanges();
  host.work.engine.SkipChanges();
  EXPECT_EQ(host.work.reports.all.size(), 4U);
}

TEST(Host, NeverMakesAPassEndless) {
  std::vector<Asked> requests = {{.begin = u"A"},
                                 {.begin = u"A", .end = u"B"},
                                 {.begin = u"A\rA"},
                                 {.begin = u"A\rA", .end = u"B\rB", .inside = u"x"}};
  for (Asked asked : requests) {
    asked.text = asked.begin + u"x" + asked.end;
    for (const auto operation : {kInsert, kReplace, kDelete, kHighlight}) {
      for (const auto on : {kSelection, kBeginning, kEnding, kInsideText}) {
        for (const auto place : {kBefore, kAfter}) {
          for (const bool lift : {false, true}) {
            Host host(u"A\rAxB\rB A\rAxB\rB A\rAxB\rB");
            asked.operation = operation;
            asked.on = on;
            asked.place = place;
            asked.lift = lift;
            host.pass(asked);
            EXPECT_LE(host.watch.operations, 6)
                << operation << " on " << on << " place " << place << (lift ? " without limits" : "");
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace pluvo::engine
