#include "engine/desk.h"

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
    const PassResult done = desk.pass({.begin = u"A",
                                       .end = u"B",
                                       .inside = u"x\rx",
                                       .operation = static_cast<OperationCode>(operation),
                                       .location = static_cast<LocationCode>(on),
                                       .place = static_cast<PlaceCode>(place),
                                       .text = u"12"});
    EXPECT_EQ(desk.text(), notation::Sample(after).print());
    EXPECT_EQ(done.operated, 1);
    EXPECT_TRUE(desk.watch.faults.empty());
  }
}

TEST(Operations, ChangeNothingOnATextThatIsNotAskedFor) {
  for (const OperationCode operation : {kInsert, kReplace, kDelete, kHighlight}) {
    for (const LocationCode on : {kEnding, kInsideText}) {
      for (const std::u16string end : {u"", u"\rB"}) {
        if (on == kInsideText && !end.empty()) continue;
        Desk desk("-A-¶");
        const Request asked{.begin = u"A", .end = end, .operation = operation, .location = on, .text = u"12"};
        EXPECT_EQ(desk.pass(asked).operated, 1) << "it is counted all the same";
        EXPECT_EQ(desk.text(), "-A-¶");
      }
    }
  }
}

}  // namespace
}  // namespace pluvo::engine
