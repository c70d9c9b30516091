// The stand-in for Word, where Word does otherwise than documents in memory: what the other tests rest on.

#include "dispatch.h"
#include "word_stand_in/word_session.h"

#include <gtest/gtest.h>

namespace pluvo::word_com {
namespace {

using stand_in::WordSession;

/// A document, and objects of Word as they are, without what the classes for them make up for.
struct Bare {
  WordSession session;
  std::shared_ptr<stand_in::OpenDocument> document;
  Object word{stand_in::application(), L"Application", std::make_shared<MemberIds>()};

  explicit Bare(const std::u16string& text) : document(WordSession::document(text)) {}

  Object range(std::int32_t start, std::int32_t end) const {
    return word.getObject(L"ActiveDocument", L"Document")
        .callObject(L"Range", L"Range", Arguments().integer(start).integer(end));
  }
};

std::string spanOf(const Object& range) {
  return std::to_string(range.get(L"Start").toInteger()) + "-" +
         std::to_string(range.get(L"End").toInteger());
}

/// Where the range is then, or the number of the fault.
std::string found(const Object& range, const std::u16string& text) {
  const Object find = range.getObject(L"Find", L"Find");
  try {
    find.put(L"Text", Arguments().text(text));
    return find.call(L"Execute").toBoolean() ? spanOf(range) : "none";
  } catch (const errors::Fault& fault) {
    return std::to_string(fault.number);
  }
}

TEST(StandIn, FindsAsWordDoes) {
  struct Case {
    const char* what;
    std::u16string text;
    std::string found;
    std::int32_t start = 0;
    std::int32_t end = 39;
  };
  const std::u16string text =
      u"\x201CYes\x201D isn\x2019t \"No\" 5^2 a\x00A0"
      u"b yes\rsecond a\x07"
      u"b\x07\x07";
  const Case cases[] = {
      {"straight quotes find curly ones", u"\"yes\"", "0-5"},
      {"curly quotes find straight ones", u"\x201Cno\x201D", "12-16"},
      {"and so do apostrophes", u"isn't", "6-11"},
      {"a circumflex is doubled", u"5^^2", "17-20"},
      {"a code is no text", u"yes^p", "5692"},
      {"and neither is a circumflex alone", u"5^", "5692"},
      {"a blank finds a hard one", u"a b", "21-24"},
      {"a hard one finds no blank", u"5^^2\x00A0", "none"},
      {"no text", u"", "none"},
      {"the longest text", std::u16string(255, u'x'), "none"},
      {"a text that is too long", std::u16string(256, u'x'), "5854"},
      {"behind a range that is the text", u"yes", "25-28", 1, 4},
      {"from a point to the end", u"yes", "25-28", 6, 6},
      {"within the range", u"no", "none", 0, 10},
      {"no match leaves its cell",
       u"a\x07"
       u"b",
       "none"},
  };
  for (const Case& each : cases) {
    const Bare bare(text);
    EXPECT_EQ(found(bare.range(each.start, each.end), each.text), each.found) << each.what;
  }
}

TEST(StandIn, TakesFindsCriteriaAsWordDoes) {
  struct Case {
    const wchar_t* criterion;
    bool value;
    std::u16string text;
    std::string found;
  };
  const std::string notPossible = std::to_string(static_cast<std::int32_t>(E_NOTIMPL));
  const Case cases[] = {
      {L"MatchCase", true, u"cat", "5-8"},         {L"MatchCase", false, u"cat", "0-3"},
      {L"MatchWholeWord", true, u"at", "none"},    {L"MatchWholeWord", true, u"cat", "10-13"},
      {L"MatchWholeWord", true, u"ts ca", "2-7"},  {L"MatchWildcards", true, u"cat", notPossible},
      {L"Forward", false, u"cat", notPossible},    {L"MatchByte", false, u"cat", notPossible},
      {L"IgnorePunct", true, u"cat", notPossible},
  };
  for (const Case& each : cases) {
    const Bare bare(u"Cats cats cat");
    const Object range = bare.range(0, 0);
    range.getObject(L"Find", L"Find").put(each.criterion, Arguments().boolean(each.value));
    EXPECT_EQ(found(range, each.text), each.found) << each.value;
  }
}

TEST(StandIn, FollowsEditsAsWordDoes) {
  const Bare bare(u"The cat sat.");
  const Object cat = bare.range(4, 7);
  const Object ends = bare.range(0, 4);
  const Object begins = bare.range(7, 11);
  const Object same = bare.range(4, 7);
  cat.call(L"InsertBefore", Arguments().text(u"big "));
  EXPECT_EQ(spanOf(cat), "4-11");
  EXPECT_EQ(spanOf(same), "4-11") << "a range that begins there takes it";
  EXPECT_EQ(spanOf(ends), "0-4") << "a range that ends there does not";
  cat.call(L"InsertAfter", Arguments().text(u"s"));
  EXPECT_EQ(spanOf(cat), "4-12");
  EXPECT_EQ(spanOf(same), "4-11") << "a range that ends there does not take it";
  EXPECT_EQ(spanOf(begins), "11-16") << "a range that begins there does";
  cat.put(L"Text", Arguments().text(u"dog"));
  EXPECT_EQ(bare.document->allText(), u"The dog sat.\r");
  EXPECT_EQ(spanOf(same), "4-4") << "a range over what is replaced is empty";
  EXPECT_EQ(spanOf(begins), "4-11") << "a range behind it takes it";
  bare.range(0, 13).put(L"Text", Arguments().text(u"x\r\ny"));
  EXPECT_EQ(bare.document->allText(), u"x\ry\r") << "the final mark stays";
}

TEST(StandIn, DeletesAsWordDoes) {
  struct Case {
    std::int32_t start;
    std::int32_t end;
    std::u16string left;
    bool smart = true;
  };
  const Case cases[] = {
      {4, 7, u"The sat.\r"},       {4, 7, u"The  sat.\r", false},
      {8, 11, u"The cat.\r"},      {0, 3, u"cat sat.\r"},
      {5, 7, u"The c sat.\r"},     {4, 8, u"The sat.\r"},
      {3, 3, u"Thecat sat.\r"},    {0, 13, u"\r"},
      {12, 13, u"The cat sat.\r"},
  };
  for (const Case& each : cases) {
    for (const bool byText : {false, true}) {
      if (byText && each.start == each.end) continue;
      const Bare bare(u"The cat sat.");
      WordSession::world().smartCutPaste = each.smart;
      const Object range = bare.range(each.start, each.end);
      if (byText) {
        range.put(L"Text", Arguments().text(u""));
      } else {
        range.call(L"Delete", Arguments().missing(2));
      }
      EXPECT_EQ(bare.document->allText(), each.left) << each.start << "-" << each.end;
      EXPECT_FALSE(bare.document->saved);
    }
  }
}

TEST(StandIn, SaysOfTextsWhatWordSays) {
  const Bare bare(
      u"a\x07"
      u"b\x07\x07");
  EXPECT_EQ(bare.range(0, 5).get(L"Text").toText(),
            u"a\r\x07"
            u"b\r\x07\r\x07");
  EXPECT_EQ(bare.range(2, 2).get(L"Text").toText(), u"");
  const Object selection = bare.word.getObject(L"Selection", L"Selection");
  EXPECT_EQ(selection.get(L"Text").toText(), u"a") << "the character behind the insertion point";
  const auto count = [](const Object& of, const wchar_t* units) {
    return of.getObject(units, units).get(L"Count").toInteger();
  };
  EXPECT_EQ(count(selection, L"Characters"), 1);
  EXPECT_EQ(count(bare.range(2, 2), L"Characters"), 1);
  EXPECT_EQ(count(bare.range(2, 2), L"Words"), 1);
}

TEST(StandIn, RefusesWhatWordRefuses) {
  const Bare bare(u"one");
  const Object range = bare.range(0, 3);
  const auto number = [](auto work) {
    try {
      work();
    } catch (const errors::Fault& fault) {
      return fault.number;
    }
    return 0;
  };
  EXPECT_EQ(number([&] { bare.range(0, 5); }), 4608);
  EXPECT_EQ(number([&] { range.call(L"SetRange", Arguments().integer(-1).integer(3)); }), 4608);
  EXPECT_EQ(number([&] { range.call(L"MoveEnd", Arguments().integer(5).integer(1)); }), 4120);
  EXPECT_EQ(number([&] { range.put(L"Start", Arguments().text(u"a")); }), 13);
  EXPECT_EQ(number([&] { range.call(L"SetRange", Arguments().integer(1)); }), 450);
  bare.document->file.protection = 2;
  EXPECT_EQ(found(range, u"one"), "4605");
  EXPECT_EQ(number([&] { range.call(L"InsertAfter", Arguments().text(u"x")); }), 6124);
  EXPECT_EQ(number([&] { range.put(L"HighlightColorIndex", Arguments().integer(7)); }), 4605);
  WordSession::world().close(bare.document);
  EXPECT_EQ(number([&] { range.get(L"Text"); }), 5825);
  EXPECT_EQ(number([&] { bare.word.get(L"ActiveDocument"); }), 4248);
}

}  // namespace
}  // namespace pluvo::word_com
