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

void expectTexts(const char* before, const Asked& request, bool extraSpace,
                 std::initializer_list<Case> cases) {
  for (const auto& [operation, on, place, after] : cases) {
    SCOPED_TRACE(after);
    Desk desk(before);
    desk.work.engine.ExtraSpaceSetting(extraSpace);
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
  expectTexts(before, asked, false,
              {
                  {kInsert, kSelection, kBefore, "-12A.x.B-12A.x.B-¶"},
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
                  {kHighlight, kNowhere, kBefore, before},
              });
}

TEST(Operations, PutTheExtraSpaceOnTheBlocksSide) {
  const Asked asked{.begin = u"A", .end = u"B", .text = u"12"};
  expectTexts("-AB-AB-¶", asked, true,
              {
                  {kInsert, kSelection, kBefore, "-12 AB-12 AB-¶"},
                  {kInsert, kSelection, kAfter, "-AB 12-AB 12-¶"},
                  {kReplace, kSelection, kBefore, "-12-12-¶"},
              });
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

TEST(Operations, GoOnBehindWhatTheyPutThere) {
  // Texts that hold the block itself, at the ends of a block of every kind.
  const Asked plain{.begin = u"A", .text = u"AA"};
  expectTexts("AA¶", plain, false,
              {
                  {kInsert, kSelection, kBefore, "AAAAAA¶"},
                  {kInsert, kSelection, kAfter, "AAAAAA¶"},
                  {kInsert, kBeginning, kAfter, "AAAAAA¶"},
                  {kReplace, kSelection, kBefore, "AAAA¶"},
              });
  const Asked cut{.begin = u"A\rC", .text = u"A\rC", .lift = true};
  expectTexts("A¶CA¶C¶", cut, false,
              {
                  {kInsert, kSelection, kBefore, "A¶CA¶CA¶CA¶C¶"},
                  {kInsert, kBeginning, kAfter, "A¶CA¶CA¶CA¶C¶"},
                  {kReplace, kBeginning, kBefore, "A¶CA¶C¶"},
              });
  const Asked ended{.begin = u"A", .end = u"B", .text = u"AB"};
  expectTexts("ABAB¶", ended, false,
              {
                  {kInsert, kEnding, kAfter, "ABABABAB¶"},
                  {kInsert, kBeginning, kBefore, "ABABABAB¶"},
                  {kReplace, kEnding, kBefore, "AABAAB¶"},
              });
}

TEST(Operations, RefusedAreReportedAndCounted) {
  Desk desk("A A¶");
  desk.sample.document->protect(word::wdAllowOnlyReading);
  desk.work.pass({.begin = u"A", .operation = kDelete});
  EXPECT_EQ(desk.work.reports.all, (std::vector<std::string>{"6124 cpf:32", "6124 cpf:32"}));
  EXPECT_EQ(desk.text(), "A A¶");
}

}  // namespace
}  // namespace pluvo::engine
