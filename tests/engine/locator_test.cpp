#include "engine/desk.h"

#include <gtest/gtest.h>

namespace pluvo::engine {
namespace {

/// A document, the request, and the document with its found blocks marked from a on. A third text has the
/// blocks found with the limits lifted, where they differ. Cases that random requests meet often are not
/// repeated here.
struct Case {
  std::string document;
  Request asked;
  std::string found;
  std::string foundWithoutLimits = found;
};

void expectFound(const std::vector<Case>& cases) {
  for (const Case& one : cases) {
    for (const bool lift : {false, true}) {
      SCOPED_TRACE(one.document + (lift ? " without limits" : " with limits"));
      Desk desk(one.document);
      Request asked = one.asked;
      asked.liftLimits = lift;
      desk.pass(asked);
      EXPECT_EQ(desk.found(), notation::Sample(lift ? one.foundWithoutLimits : one.found).print());
      EXPECT_TRUE(desk.watch.faults.empty()) << desk.watch.faults.front();
    }
  }
}

TEST(Locator, FindsBeginningsAndTheirEndings) {
  expectFound({{"xABxABAB¶", {.begin = u"AB"}, "x[aABa]x[bABb][cABc]¶"},
               {"ABABB¶", {.begin = u"A", .end = u"B"}, "[aABa][bABb]B¶"},
               {"A A B¶", {.begin = u"A", .end = u"B"}, "[aA A Ba]¶"},
               {"A¶A¶¶", {.begin = u"A", .end = u"B"}, "A¶A¶¶"},
               {"¶", {.begin = u"A"}, "¶"},
               {"A¶", {.begin = u""}, "A¶"},
               {"¶A¶", {.begin = u"\rA"}, "¶A¶", "[a¶Aa]¶"},
               {"x{c A|r A} A¶", {.begin = u"A"}, "x{c A|r [aAa]} [bAb]¶"},
               {"x{c A|r A} A¶", {.begin = u"A", .showFieldCodes = true}, "x{c [aAa]|r A} [bAb]¶"}});
}

TEST(Locator, CountsWholeUnitsBetween) {
  const auto within = [](const char* text, int unit, std::int16_t apart, bool found) {
    const std::string document = std::string(text) + "¶";
    const std::string marked = "[a" + std::string(text) + "a]¶";
    return Case{document,
                {.begin = u"A", .end = u"B", .distance = apart, .unit = static_cast<UnitCode>(unit)},
                found ? marked : document};
  };
  expectFound({within("A x, B", kWords, 1, false), within("A x, B", kWords, 2, true),
               within("A x y z B", kWords, -1, false), within("A. Or. B", kSentences, 0, false),
               within("A. Or. B", kSentences, 1, true), within("A¶¶B", kParagraphs, 0, false),
               within("A¶¶B", kParagraphs, 1, true), within("A. ¶1. 2. ¶B", kEntireDocument, 0, true),
               within("AB", 4, 0, false), within("AB", -1, 32767, false)});
  // A block too far apart is passed over by its beginning alone.
  expectFound({{"A A x B¶", {.begin = u"A ", .end = u"B", .distance = 1, .unit = kWords}, "A [aA x Ba]¶"}});
}

TEST(Locator, TakesTheDistanceBeforeTextsAreExtended) {
  // Those of the first line of the beginning alone; of the whole beginning they are less.
  const std::string document = "A¶1¶2¶xB¶";
  Request asked = {.begin = u"A\r1\r2\rx", .end = u"B", .distance = 1, .unit = kParagraphs};
  expectFound({{document, asked, document, "[aA¶1¶2¶xBa]¶"}});
  asked.distance = 2;
  expectFound({{document, asked, "[aA¶1¶2¶xBa]¶"}});
}

TEST(Locator, ComparesInFullWhatIsTooLongToFind) {
  const std::string longest(255, 'x');
  const std::string tooLong = longest + "Y";
  const std::u16string full = std::u16string(255, u'x') + u"Y";
  expectFound({{"-" + longest + "y¶", {.begin = full.substr(0, 255)}, "-[a" + longest + "a]y¶"},
               {"-" + tooLong + longest + "y¶",
                {.begin = full},
                "-[a" + tooLong + "a]" + longest + "y¶",
                "-[a" + tooLong + "a][b" + longest + "yb]¶"},
               {"A" + longest + "yA" + tooLong + "¶",
                {.begin = u"A", .end = full, .matchCase = true},
                "A" + longest + "y[aA" + tooLong + "a]¶",
                "[aA" + longest + "yA" + tooLong + "a]¶"},
               {"A" + tooLong + "B¶", {.begin = u"A", .end = u"B", .inside = full}, "[aA" + tooLong + "Ba]¶"},
               {"A" + longest + "yB¶",
                {.begin = u"A", .end = u"B", .inside = full, .matchCase = true},
                "A" + longest + "yB¶"},
               {"A\vB¶", {.begin = u"A\n\r\nB"}, "[aA\vBa]¶", "A\vB¶"},
               {"A\v¶B¶", {.begin = u"A\n\r\nB"}, "A\v¶B¶", "[aA\v¶Ba]¶"},
               {"AB¶", {.begin = u"A\nB"}, "[aABa]¶", "AB¶"},
               {"Ax\vyB¶", {.begin = u"A", .end = u"B", .inside = u"x\vy"}, "[aAx\vyBa]¶"},
               {"AxyB¶", {.begin = u"A", .end = u"B", .inside = u"x\ny"}, "[aAxyBa]¶", "AxyB¶"},
               {"A1b A2B¶c A3B¶C¶",
                {.begin = u"A", .end = u"B\rC"},
                "A1b A2B¶c [aA3B¶Ca]¶",
                "[aA1b A2B¶ca] [bA3B¶Cb]¶"},
               {"A¶¶", {.begin = u"A\r\r"}, "[aA¶¶a]"},
               {"A¶", {.begin = u"A\r\r"}, "A¶"}});
}

TEST(Locator, LooksForInsideTextsInsideOnly) {
  expectFound({{"AxBx¶", {.begin = u"Ax", .end = u"B", .inside = u"x"}, "AxBx¶"},
               {"AxB Ax¶yB¶", {.begin = u"A", .end = u"B", .inside = u"x\ry"}, "AxB [aAx¶yBa]¶"},
               {"A x¶", {.begin = u"A", .inside = u"x"}, "A x¶"},
               // Where a text is cut none is held to whole words.
               {"xA x¶y B¶",
                {.begin = u"A", .end = u"B", .inside = u"x\ry", .wholeWords = true},
                "x[aA x¶y Ba]¶",
                "xA x¶y B¶"},
               // The ending lies within the rest of a beginning that was cut.
               {"A¶B¶Cx¶", {.begin = u"A\rB\rC", .end = u"B", .inside = u"x"}, "A¶B¶Cx¶"}});
}

TEST(Locator, KeepsItsBoundsOnEndings) {
  // The first beginning ends at 31 and is too far from its ending: the next ending must lie before 62.
  const Request asked{.begin = u"A", .end = u"B", .distance = 1, .unit = kWords};
  const std::string lead = std::string(29, 'x') + " A 1 2 B ";
  const std::string near(10, 'y');
  const std::string far(30, 'y');
  // An ending that begins or ends there, to the character.
  for (const auto& [fill, within] : {std::pair{20, true}, {21, false}}) {
    const std::string gap(static_cast<std::size_t>(fill), 'y');
    const std::string found = lead + "[aA " + gap + " Ba]¶";
    expectFound({{lead + "A " + gap + " B¶", asked, within ? found : lead + "A " + gap + " B¶", found}});
  }
  expectFound({{lead + "A " + near + " B AB¶", asked, lead + "[aA " + near + " Ba] [bABb]¶"},
               {lead + "A " + far + " B AB¶", asked, lead + "A " + far + " B AB¶",
                lead + "[aA " + far + " Ba] [bABb]¶"}});
}

TEST(Locator, ExtendsABlockWithoutEndingToItsWholeBeginning) {
  // With limits only where the end range still stands at the top, that is before any block or mismatch. The
  // search then stays inside a beginning that reaches beyond its block.
  const Request asked{.begin = u"A\rB"};
  expectFound({{"xA¶B A¶B A¶B¶", asked, "x[aA¶Ba] [bAb]¶B A¶B¶", "x[aA¶Ba] [bA¶Bb] [cA¶Bc]¶"},
               {"A¶b A¶B A¶B¶", asked, "A¶b [aAa]¶B A¶B¶", "[aA¶ba] [bA¶Bb] [cA¶Bc]¶"}});
  // An ending that cannot be searched for is held against the end range, which after the first block has an
  // End.
  expectFound({{"A1 A2¶", {.begin = u"A", .end = u"\rB"}, "[aAa]1 A2¶", "A1 A2¶"}});
}

TEST(Locator, ExtendsABeginningBy16BitsAtMost) {
  for (const std::size_t size : {33'022U, 33'023U, 33'100U}) {
    for (const bool lift : {false, true}) {
      SCOPED_TRACE(size);
      Desk desk(std::string(size, 'x') + "¶");
      desk.pass({.begin = std::u16string(size, u'x'), .liftLimits = lift});
      const bool fits = lift || size <= 255 + 32'767;
      EXPECT_EQ(desk.watch.faults, fits ? std::vector<std::string>{} : std::vector<std::string>{"6 cpf:38"});
      EXPECT_EQ(desk.found().size(), size + (fits ? 6 : 2));
    }
  }
}

TEST(Locator, GoesOnWithinABeginningThatReachesBeyondItsBlock) {
  const Request asked{.begin = u"A\rB\rC", .end = u"B"};
  expectFound({{"A¶B¶C A¶B¶C¶", asked, "[aA¶Ba]¶C A¶B¶C¶", "[aA¶B¶C A¶Ba]¶C¶"}});
  // Where nothing is done, what would be operated on does not count.
  expectFound({{"A¶B¶A¶B¶A¶",
                {.begin = u"A\rB\rA", .end = u"B", .location = kBeginning},
                "[aA¶Ba]¶[bA¶Bb]¶A¶",
                "[aA¶B¶A¶Ba]¶A¶"}});
}

TEST(Locator, FindsTextsOfSeveralLinesWholeWithoutLimits) {
  const std::u16string twoLines = std::u16string(300, u'x') + u"\r" + std::u16string(300, u'y');
  const std::string there = std::string(300, 'x') + "¶" + std::string(300, 'y');
  const std::vector<Case> cases = {
      // A first line that matches where the rest does not costs itself only, and no ending.
      {"A¶C B A¶D B¶", {.begin = u"A\rD", .end = u"B"}, "A¶C B [aA¶D Ba]¶"},
      {"A B¶C B¶D¶", {.begin = u"A", .end = u"B\rD"}, "[aA B¶C B¶Da]¶"},
      {"A¶A¶B¶", {.begin = u"A\rB"}, "A¶[aA¶Ba]¶"},
      {"A x¶z x¶y B¶", {.begin = u"A", .end = u"B", .inside = u"x\ry"}, "[aA x¶z x¶y Ba]¶"},
      // The ending is sought after the beginning; the inside text ends before it.
      {"A¶B¶C B¶", {.begin = u"A\rB\rC", .end = u"B"}, "[aA¶B¶C Ba]¶"},
      {"A x¶B¶", {.begin = u"A", .end = u"\rB", .inside = u"x\r"}, "A x¶B¶"},
      // Line ends at both ends of a text, and nothing else.
      {"A¶B A B¶¶", {.begin = u"A", .end = u"B\r\r"}, "[aA¶B A B¶¶a]"},
      {"A¶¶B\v¶\vC¶", {.begin = u"\r\r"}, "A[a¶¶a]B[b\v¶b]\vC¶"},
      {"⟦A¦A¶B¦‖⟧¶", {.begin = u"A\r"}, "⟦A¦[aA¶a]B¦‖⟧¶"},
      {"A{c|¶}<h:C>B¶", {.begin = u"A\rB"}, "[aA{c|¶}<h:C>Ba]¶"},
      {"xA¶B A¶Bx A¶B¶", {.begin = u"A\rB", .wholeWords = true}, "xA¶B A¶Bx [aA¶Ba]¶"},
      {"x¶Ax x¶A¶", {.begin = u"\rA", .wholeWords = true}, "x¶Ax x[a¶Aa]¶"},
      {"a¶b¶", {.begin = u"A\rB"}, "[aa¶ba]¶"},
      {"-" + there + there + "¶", {.begin = twoLines}, "-[a" + there + "a][b" + there + "b]¶"},
      // What the texts touch themselves does not count.
      {"A¶A¶1¶B¶B¶",
       {.begin = u"A\rA", .end = u"B\rB", .distance = 1, .unit = kParagraphs},
       "[aA¶A¶1¶B¶Ba]¶"},
  };
  for (const Case& one : cases) {
    SCOPED_TRACE(one.document);
    Desk desk(one.document);
    Request asked = one.asked;
    asked.liftLimits = true;
    desk.pass(asked);
    EXPECT_EQ(desk.found(), notation::Sample(one.found).print());
  }
}

TEST(Locator, StartsAtTheSelectionOrAtTheTop) {
  for (const bool lift : {false, true}) {
    Desk desk("A¶BA¶BA¶B¶");
    desk.sample.document->select({4, 7});
    desk.pass({.begin = u"A\rB", .startAtTop = false, .liftLimits = lift});
    EXPECT_EQ(desk.found(), lift ? "A¶BA¶B[aA¶Ba]¶" : "A¶BA¶B[aAa]¶B¶");
  }
}

TEST(Locator, SearchesAnEndingUpToThePreviousBlocksEnd) {
  for (const bool lift : {false, true}) {
    SCOPED_TRACE(lift);
    Desk desk("A1A2B3B4B¶");
    desk.engine.InitializeFind(Request{.begin = u"A", .end = u"B", .liftLimits = lift});
    std::vector<text::Span> selected;
    while (desk.engine.FindNextItem(true)) {
      selected.push_back(desk.sample.document->selection());
      desk.engine.MakeChanges();
    }
    EXPECT_EQ(selected, (std::vector<text::Span>{{0, 5}, {2, 5}})) << "a block may begin in the previous one";
  }
}

}  // namespace
}  // namespace pluvo::engine
