#include "engine/workplace.h"

#include <gtest/gtest.h>

namespace pluvo::engine {
namespace {

struct Case {
  OperationCode operation;
  LocationCode on;
  PlaceCode place;
  const char* after;
};

void expectTexts(const char* before, const Asked& request, std::initializer_list<Case> cases) {
  for (const auto& [operation, on, place, after] : cases) {
    SCOPED_TRACE(after);
    Desk desk(before);
    Asked asked = request;
    asked.operation = operation;
    asked.on = on;
    asked.place = place;
    desk.work.pass(asked);
    EXPECT_EQ(desk.text(), notation::Sample(after).print());
    EXPECT_EQ(desk.work.lastSummary(), "   2");
  }
}

constexpr auto kElsewhere = static_cast<LocationCode>(4);
constexpr auto kNowhere = static_cast<LocationCode>(-1);

TEST(Operations, ActOnTheirPlace) {
  const Asked asked{.begin = u"A", .end = u"B", .inside = u"x", .text = u"12"};
  const char* before = "-A.x.B-A.x.B-¶";
  expectTexts(before, asked,
              {{kInsert, kSelection, kBefore, "-12A.x.B-12A.x.B-¶"},
               {kInsert, kSelection, kAfter, "-A.x.B12-A.x.B12-¶"},
               {kInsert, kBeginning, kBefore, "-12A.x.B-12A.x.B-¶"},
               {kInsert, kBeginning, kAfter, "-A12.x.B-A12.x.B-¶"},
               {kInsert, kEnding, kBefore, "-A.x.12B-A.x.12B-¶"},
               {kInsert, kEnding, kAfter, "-A.x.B12-A.x.B12-¶"},
               {kInsert, kInsideText, kBefore, "-A.12x.B-A.12x.B-¶"},
               {kInsert, kInsideText, kAfter, "-A.x12.B-A.x12.B-¶"},
               {kInsert, kBeginning, static_cast<PlaceCode>(99), "-12A.x.B-12A.x.B-¶"},
               {kReplace, kSelection, kBefore, "-12-12-¶"},
               {kReplace, kBeginning, kBefore, "-12.x.B-12.x.B-¶"},
               {kReplace, kEnding, kBefore, "-A.x.12-A.x.12-¶"},
               {kReplace, kInsideText, kBefore, "-A.12.B-A.12.B-¶"},
               {kDelete, kSelection, kBefore, "---¶"},
               {kDelete, kBeginning, kBefore, "-.x.B-.x.B-¶"},
               {kDelete, kEnding, kBefore, "-A.x.-A.x.-¶"},
               {kDelete, kInsideText, kBefore, "-A..B-A..B-¶"},
               {kHighlight, kSelection, kBefore, "-<7:A.x.B>-<7:A.x.B>-¶"},
               {kHighlight, kInsideText, kBefore, "-A.<7:x>.B-A.<7:x>.B-¶"},
               {kNone, kSelection, kBefore, before},
               {static_cast<OperationCode>(5), kSelection, kBefore, before},
               {kInsert, kElsewhere, kBefore, before},
               {kReplace, kNowhere, kBefore, before},
               {kDelete, kElsewhere, kBefore, before},
               {kHighlight, kNowhere, kBefore, before}});
}

TEST(Operations, KeepTheExtraSpaceOnceItWasAskedFor) {
  Desk desk("A¶");
  const Asked asked{.begin = u"A", .operation = kInsert, .place = kAfter, .text = u"1"};
  desk.work.engine.ExtraSpaceSetting(true);
  desk.work.pass(asked);
  desk.work.engine.ExtraSpaceSetting(false);
  desk.work.pass(asked);
  EXPECT_EQ(desk.text(), "A 1 1¶");
}

}  // namespace
}  // namespace pluvo::engine
