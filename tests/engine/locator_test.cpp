#include "engine/workplace.h"

#include <gtest/gtest.h>

namespace pluvo::engine {
namespace {

std::string repeated(std::string_view text, int times) {
  std::string result;
  while (times-- > 0) result += text;
  return result;
}
std::u16string repeated(char16_t unit, std::size_t times) { return std::u16string(times, unit); }

/// A document, what is asked, and the document with the blocks found marked a, b, c …
struct Case {
  std::string document;
  Asked asked;
  std::string found;
};

void expectFound(const std::vector<Case>& cases, bool withLimits = true, bool lifted = true) {
  for (const Case& one : cases) {
    for (const bool lift : {false, true}) {
      if (lift ? !lifted : !withLimits) continue;
      SCOPED_TRACE(one.document + (lift ? " without limits" : " with limits"));
      Desk desk(one.document);
      Asked asked = one.asked;
      asked.lift = lift;
      desk.work.pass(asked);
      EXPECT_EQ(desk.found(), notation::Sample(one.found).print());
      EXPECT_TRUE(desk.work.reports.all.empty()) << desk.work.reports.all.front();
    }
  }
}
void expectFoundWithLimits(const std::vector<Case>& cases) { expectFound(cases, true, false); }
void expectFoundWithoutLimits(const std::vector<Case>& cases) { expectFound(cases, false, true); }

TEST(Locator, FindsBeginningsAndTheirEndings) {
  expectFound({{"xABxABAB¶", {.begin = u"AB"}, "x[aABa]x[bABb][cABc]¶"},
               {"AAA¶", {.begin = u"AA"}, "[aAAa]A¶"},
               {"xA1BxA2B¶", {.begin = u"A", .end = u"B"}, "x[aA1Ba]x[bA2Bb]¶"},
               {"ABABB¶", {.begin = u"A", .end = u"B"}, "[aABa][bABb]B¶"},
               {"--- - --¶", {.begin = u"-", .end = u"-"}, "[a--a][b- -b] [c--c]¶"},
               {"A A B¶", {.begin = u"A", .end = u"B"}, "[aA A Ba]¶"},
               {"A¶A¶¶", {.begin = u"A", .end = u"B"}, "A¶A¶¶"},
               {"xaBxAb¶", {.begin = u"A", .end = u"b"}, "xaBx[aAba]¶"},
               {"xaBxAb¶", {.begin = u"A", .end = u"b", .matchCase = false}, "x[aaBa]x[bAbb]¶"},
               {"XA A AX¶", {.begin = u"A", .wholeWords = true}, "XA [aAa] AX¶"},
               {"¶", {.begin = u"A"}, "¶"},
               {"A¶", {.begin = u""}, "A¶"},
               {"¶A¶", {.begin = u"\rA"}, "¶A¶"},
               {"x{c A|r A} A¶", {.begin = u"A"}, "x{c A|r [aAa]} [bAb]¶"},
               {"x{c A|r A} A¶", {.begin = u"A", .fieldCodes = true}, "x{c [aAa]|r A} [bAb]¶"}});
}

TEST(Locator, CountsWholeUnitsBetween) {
  const auto within = [](const char* text, std::int32_t unit, const char16_t* apart, bool found) {
    const std::string document = std::string(text) + "¶";
    const std::string marked = "[a" + std::string(text) + "a]¶";
    return Case{
        document, {.begin = u"A", .end = u"B", .apart = apart, .unit = unit}, found ? marked : document};
  };
  expectFound({within("A B", kWords, u"Same", true),
               within("A x B", kWords, u"Same", false),
               within("A x B", kWords, u"1", true),
               within("A x, B", kWords, u"1", false),
               within("A x, B", kWords, u" 2 ", true),
               within("A x y z B", kWords, u"2.5", false),
               within("A x y z B", kWords, u"3.5", true),
               within("A x y z B", kWords, u"-1", false),
               within("A B", kSentences, u"0", true),
               within("A. B", kSentences, u"Same", true),
               within("A. Or. B", kSentences, u"Same", false),
               within("A. Or. B", kSentences, u"1", true),
               within("A¶B", kParagraphs, u"Same", true),
               within("A¶¶B", kParagraphs, u"Same", false),
               within("A¶¶B", kParagraphs, u"1", true),
               within("A¶1¶2¶3¶B", kParagraphs, u"2", false),
               within("A¶1¶2¶3¶B", kParagraphs, u"3", true),
               within("A. ¶1. 2. ¶B", kEntireDocument, u"Same", true),
               within("AB", 4, u"Same", false),
               within("AB", -1, u"32767", false)});
}

TEST(Locator, TakesTheDistanceBeforeTextsAreExtended) {
  // Those of the first line of the beginning alone; of the whole beginning they would be less.
  const std::string document = "A¶1¶2¶xB¶";
  Asked asked = {.begin = u"A\r1\r2\rx", .end = u"B", .apart = u"1", .unit = kParagraphs};
  expectFound({{document, asked, document}});
  asked.apart = u"2";
  expectFound({{document, asked, "[aA¶1¶2¶xBa]¶"}});
}

TEST(Locator, ComparesInFullWhatIsTooLongToFind) {
  const std::string longest = repeated("x", 255);
  const std::string tooLong = longest + "Y";
  const std::u16string full = repeated(u'x', 255) + u"Y";
  expectFound(
      {{"-" + longest + "y¶", {.begin = repeated(u'x', 255)}, "-[a" + longest + "a]y¶"},
       {"-" + tooLong + longest + "y¶",
        {.begin = full, .matchCase = false},
        "-[a" + tooLong + "a]" + longest + "y¶"},
       {"A" + longest + "yA" + tooLong + "¶",
        {.begin = u"A", .end = full},
        "A" + longest + "y[aA" + tooLong + "a]¶"},
       {"A" + tooLong + "B¶", {.begin = u"A", .end = u"B", .inside = full}, "[aA" + tooLong + "Ba]¶"},
       {"A" + longest + "yB¶", {.begin = u"A", .end = u"B", .inside = full}, "A" + longest + "yB¶"},
       {"A¶B¶", {.begin = u"A\vB"}, "[aA¶Ba]¶"},
       {"A\vB¶", {.begin = u"A\n\r\nB"}, "[aA\vBa]¶"},
       {"AB¶", {.begin = u"A\nB"}, "[aABa]¶"},
       {"A1B A2B¶C¶", {.begin = u"A", .end = u"B\rC"}, "A1B [aA2B¶Ca]¶"},
       {"A1b A2B¶c A3B¶C¶", {.begin = u"A", .end = u"B\rC", .matchCase = false}, "A1b A2B¶c [aA3B¶Ca]¶"},
       {"A1B B¶C¶", {.begin = u"A", .end = u"B\rC"}, "A1B B¶C¶"},
       {"A¶¶", {.begin = u"A\r\r"}, "[aA¶¶a]"},
       {"A¶", {.begin = u"A\r\r"}, "A¶"}});
}

TEST(Locator, LooksForInsideTextsInsideOnly) {
  expectFound({{"AxB AyB AxB¶", {.begin = u"A", .end = u"B", .inside = u"x"}, "[aAxBa] AyB [bAxBb]¶"},
               {"AB x AxB¶", {.begin = u"A", .end = u"B", .inside = u"x"}, "AB x [aAxBa]¶"},
               {"AxAxB¶", {.begin = u"Ax", .end = u"xB", .inside = u"A"}, "[aAxAxBa]¶"},
               {"AxBx¶", {.begin = u"Ax", .end = u"B", .inside = u"x"}, "AxBx¶"},
               {"AxB Ax¶yB¶", {.begin = u"A", .end = u"B", .inside = u"x\ry"}, "AxB [aAx¶yBa]¶"},
               {"A x¶", {.begin = u"A", .inside = u"x"}, "A x¶"},
               // The ending lies within the rest of a beginning that was cut.
               {"A¶B¶Cx¶", {.begin = u"A\rB\rC", .end = u"B", .inside = u"x"}, "A¶B¶Cx¶"}});
}

TEST(Locator, KeepsItsBoundsOnEndings) {
  // The first beginning ends at 31 and is too far from its ending: the next ending must lie before 62.
  const Asked asked{.begin = u"A", .end = u"B", .apart = u"1", .unit = kWords};
  const std::string lead = repeated("x", 29) + " A 1 2 B ";
  const std::string near = repeated("y", 10);
  const std::string far = repeated("y", 30);
  expectFoundWithLimits({{lead + "A " + near + " B AB¶", asked, lead + "[aA " + near + " Ba] [bABb]¶"},
                         {lead + "A " + far + " B AB¶", asked, lead + "A " + far + " B AB¶"}});
  expectFoundWithoutLimits({{lead + "A " + near + " B AB¶", asked, lead + "[aA " + near + " Ba] [bABb]¶"},
                            {lead + "A " + far + " B AB¶", asked, lead + "[aA " + far + " Ba] [bABb]¶"}});
}

TEST(Locator, ExtendsABlockWithoutEndingToItsWholeBeginning) {
  const Asked asked{.begin = u"A\rB", .matchCase = false};
  // With limits only where the end range still stands at the top, that is before any block or mismatch. The
  // search then stays inside a beginning that reaches beyond its block.
  expectFoundWithLimits(
      {{"xA¶B A¶B A¶B¶", asked, "x[aA¶Ba] [bAb]¶B A¶B¶"}, {"A¶b A¶B A¶B¶", asked, "A¶b [aAa]¶B A¶B¶"}});
  expectFoundWithoutLimits({{"xA¶B A¶B A¶B¶", asked, "x[aA¶Ba] [bA¶Bb] [cA¶Bc]¶"},
                            {"A¶b A¶B A¶B¶", asked, "A¶b [aA¶Ba] [bA¶Bb]¶"}});
}

TEST(Locator, HoldsAnEndingThatCannotBeSearchedForAgainstTheEndRange) {
  // At the top there is no End to hold it against; behind the first block there is.
  expectFound({{"A1 A2¶", {.begin = u"A", .end = u"\rB"}, "[aAa]1 A2¶"}});
}

TEST(Locator, GoesOnWithinABeginningThatReachesBeyondItsBlock) {
  const Asked asked{.begin = u"A\rB\rC", .end = u"B"};
  expectFoundWithLimits({{"A¶B¶C A¶B¶C¶", asked, "[aA¶Ba]¶C A¶B¶C¶"}});
  expectFoundWithoutLimits({{"A¶B¶C A¶B¶C¶", asked, "[aA¶Ba]¶C [bA¶Bb]¶C¶"}});
}

TEST(Locator, StartsAtTheSelectionOrAtTheTop) {
  for (const bool lift : {false, true}) {
    Desk desk("A¶BA¶BA¶B¶");
    desk.sample.document->select({4, 7});
    desk.work.pass({.begin = u"A\rB", .atTop = false, .lift = lift});
    EXPECT_EQ(desk.found(), lift ? "A¶BA¶B[aA¶Ba]¶" : "A¶BA¶B[aAa]¶B¶");
  }
}

TEST(Locator, SearchesAnEndingUpToThePreviousBlocksEnd) {
  for (const bool lift : {false, true}) {
    SCOPED_TRACE(lift);
    Desk desk("A1A2B3B4B¶");
    desk.work.ask({.begin = u"A", .end = u"B", .confirm = true, .lift = lift});
    clsProcessFind& engine = desk.work.engine;
    engine.InitializeFind();
    std::vector<text::Span> selected;
    while (engine.FindNextItem()) {
      selected.push_back(desk.sample.document->selection());
      engine.MakeChanges();
    }
    EXPECT_EQ(selected, (std::vector<text::Span>{{0, 5}, {2, 5}})) << "a block may begin in the previous one";
  }
}

}  // namespace
}  // namespace pluvo::engine
