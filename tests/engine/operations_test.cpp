#include "engine/workplace.h"

#include <gtest/gtest.h>

namespace pluvo::engine {
namespace {

/// Beside them what random requests seldom meet: an inside text that is cut.
TEST(Operations, DoNothingUnderUnknownCodes) {
  const struct {
    int operation;
    int on;
    int place;
    const char* after;
  } cases[] = {{kInsert, kBeginning, 99, "-12A.x¶x.B-¶"},
               {kInsert, kEnding, kAfter, "-A.x¶x.B12-¶"},
               {kReplace, kInsideText, 0, "-A.12.B-¶"},
               {kHighlight, kInsideText, 0, "-A.<7:x¶x>.B-¶"},
               {kNone, kSelection, 0, "-A.x¶x.B-¶"},
               {5, kSelection, 0, "-A.x¶x.B-¶"},
               {kInsert, 4, 0, "-A.x¶x.B-¶"},
               {kReplace, -1, 0, "-A.x¶x.B-¶"},
               {kDelete, 4, 0, "-A.x¶x.B-¶"},
               {kHighlight, -1, 0, "-A.x¶x.B-¶"}};
  for (const auto& [operation, on, place, after] : cases) {
    SCOPED_TRACE(after);
    Desk desk("-A.x¶x.B-¶");
    desk.work.pass({.begin = u"A",
                    .end = u"B",
                    .inside = u"x\rx",
                    .operation = static_cast<OperationCode>(operation),
                    .on = static_cast<LocationCode>(on),
                    .place = static_cast<PlaceCode>(place),
                    .text = u"12"});
    EXPECT_EQ(desk.text(), notation::Sample(after).print());
    EXPECT_EQ(desk.work.lastSummary(), "   1");
    EXPECT_TRUE(desk.work.reports.empty());
  }
}

TEST(Operations, ChangeNothingOnATextThatIsNotAskedFor) {
  for (const OperationCode operation : {kInsert, kReplace, kDelete, kHighlight}) {
    for (const LocationCode on : {kEnding, kInsideText}) {
      for (const std::u16string end : {u"", u"\rB"}) {
        if (on == kInsideText && !end.empty()) continue;
        Desk desk("-A-¶");
        desk.work.pass({.begin = u"A", .end = end, .operation = operation, .on = on, .text = u"12"});
        EXPECT_EQ(desk.text(), "-A-¶");
        EXPECT_EQ(desk.work.lastSummary(), "   1") << "it is counted all the same";
      }
    }
  }
}

TEST(Operations, KeepTheExtraSpaceOnceItWasAskedFor) {
  Desk desk("A¶");
  const Asked asked{.begin = u"A", .operation = kInsert, .place = kAfter, .text = u"1"};
  desk.work.engine.ExtraSpaceSetting(true);
  EXPECT_FALSE(desk.work.engine.keepsExtraSpace());
  desk.work.pass(asked);
  desk.work.engine.ExtraSpaceSetting(false);
  EXPECT_TRUE(desk.work.engine.keepsExtraSpace());
  desk.work.pass(asked);
  EXPECT_EQ(desk.text(), "A 1 1¶");
}

}  // namespace
}  // namespace pluvo::engine
