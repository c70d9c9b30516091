#include "scripted_word.h"

#include <gtest/gtest.h>

namespace pluvo::word_com {
namespace {

struct Asked {
  std::u16string text;
  bool matchCase = false;
  bool wholeWord = false;
};

bool executed(word::Range& range, const Asked& asked) {
  const auto find = range.Find();
  find->ClearFormatting();
  find->Text(asked.text);
  find->Forward(true);
  find->MatchCase(asked.matchCase);
  find->MatchWholeWord(asked.wholeWord);
  find->Wrap(word::wdFindStop);
  return find->Execute();
}

struct Case {
  const char* what;
  std::u16string document;
  Asked asked;
  Span range;
  std::deque<Span> matches;  ///< Word's
  bool found;
  Span left;  ///< where the range is then
  std::size_t executions;
};

TEST(ComFind, TakesOfWordsMatchesThoseThatAreTheText) {
  const std::u16string quotes = u"say \u201Ca\u201D or \"a\" now";
  const std::u16string carets(200, u'^');
  const Case cases[] = {
      {"a match", u"one two", {u"two"}, {0, 0}, {{4, 7}}, true, {4, 7}, 1},
      {"capitals, which do not matter", u"one TWO", {u"two"}, {0, 0}, {{4, 7}}, true, {4, 7}, 1},
      {"nothing: the range is left alone", u"one two", {u"six"}, {2, 2}, {}, false, {2, 2}, 1},
      {"curly quotes are not straight ones",
       quotes,
       {u"\"a\""},
       {0, 0},
       {{4, 7}, {11, 14}},
       true,
       {11, 14},
       2},
      {"and where there are no others the range is put back",
       quotes,
       {u"\"b\""},
       {3, 3},
       {{4, 7}},
       false,
       {3, 3},
       2},
      {"a find that stands still is ended",
       quotes,
       {u"\"a\""},
       {0, 0},
       {{4, 7}, {4, 7}, {4, 7}},
       false,
       {0, 0},
       2},
      {"within a range", u"a b a b", {u"b"}, {0, 5}, {{2, 3}}, true, {2, 3}, 1},
      {"a range that is the text needs no find", u"a b a b", {u"b"}, {2, 3}, {{6, 7}}, true, {2, 3}, 0},
      {"a match outside the range is put back", u"a b a b", {u"b"}, {3, 5}, {{6, 7}}, false, {3, 5}, 1},
      {"what is left of the range is the text",
       u"\u201Ca\"a\"",
       {u"\"a\""},
       {0, 5},
       {{0, 3}},
       false,
       {0, 5},
       2},
      {"an empty text is not found", u"a b", {u""}, {0, 0}, {{0, 3}}, false, {0, 0}, 1},
      {"a shortened text in full", carets + u"x", {carets}, {0, 0}, {{0, 127}}, true, {0, 200}, 1},
      {"a shortened text that goes on otherwise",
       carets + u"x",
       {carets.substr(1) + u"y"},
       {0, 0},
       {{0, 127}},
       false,
       {0, 0},
       2},
      {"a shortened text that would leave the range",
       carets,
       {carets},
       {0, 199},
       {{0, 127}},
       false,
       {0, 199},
       2},
      {"a shortened whole word",
       carets + u"ab",
       {carets + u"a", false, true},
       {0, 0},
       {{0, 127}},
       false,
       {0, 0},
       2},
      {"words with a tab between them, of which Word does not see to the ends",
       u"xa\tb a\tbx a\tb",
       {u"a\tb", false, true},
       {0, 0},
       {{1, 4}, {5, 8}, {10, 13}},
       true,
       {10, 13},
       3},
      {"the whole range, but not a whole word", u"abc", {u"b", false, true}, {1, 2}, {}, false, {1, 2}, 1},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.what);
    ScriptedWord word;
    word.text = each.document;
    word.matches = each.matches;
    const auto range = word.rangeOver(each.range.start, each.range.end);
    EXPECT_EQ(executed(*range, each.asked), each.found);
    EXPECT_EQ(word.range, each.left) << word.range.start << ".." << word.range.end;
    EXPECT_EQ(word.calls("Find.Execute").size(), each.executions);
  }
}

TEST(ComFind, WritesTheTextSoThatWordTakesItLiterally) {
  const std::string longest(255, 'a');
  struct Written {
    std::u16string asked;
    std::string text;
    bool wholeWord;
  };
  const Written cases[] = {
      {u"2^p?", "2^^p?", false},
      {u"2p", "2p", true},
      {std::u16string(255, u'a'), longest, true},
      {std::u16string(254, u'a') + u"^", longest.substr(1), false},
      {std::u16string(253, u'a') + u"^", longest.substr(2) + "^^", false},
      {std::u16string(254, u'a') + u"\U0001F600", longest.substr(1), false},
  };
  for (const Written& each : cases) {
    SCOPED_TRACE(each.text);
    ScriptedWord word;
    const auto range = word.rangeOver(0, 0);
    executed(*range, {each.asked, true, true});
    EXPECT_EQ(word.calls("Find.Text"), CallLog{"Find.Text = BSTR " + each.text});
    // The end of a part of the text need not be the end of a word, and only of one word Word sees to the
    // ends.
    EXPECT_EQ(word.calls("Find.MatchWholeWord").back(),
              each.wholeWord ? "Find.MatchWholeWord = BOOL -1" : "Find.MatchWholeWord = BOOL 0");
  }
}

TEST(ComFind, ForgetsWhatADialogLeftWhereWordHasIt) {
  ScriptedWord word;
  word.find->keeps(L"IgnorePunct", VARIANT_TRUE);
  word.find->keeps(L"MatchFuzzy", VARIANT_FALSE);
  word.find->keeps(L"MatchByte", VARIANT_FALSE);
  word.find->on(L"MatchKashida",
                [](auto&, VARIANT&, EXCEPINFO&) { return static_cast<HRESULT>(0x800A11FD); });
  const auto range = word.rangeOver(0, 0);
  executed(*range, {u"a"});
  const auto set = [&](const std::string& member) { return word.calls("Find." + member).back(); };
  EXPECT_EQ(set("IgnorePunct"), "Find.IgnorePunct = BOOL 0");
  EXPECT_EQ(set("MatchFuzzy"), "Find.MatchFuzzy") << "it is so already";
  EXPECT_EQ(set("MatchByte"), "Find.MatchByte = BOOL -1");
  EXPECT_EQ(set("MatchKashida"), "Find.MatchKashida") << "it cannot be set";
}

}  // namespace
}  // namespace pluvo::word_com
