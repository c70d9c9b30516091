#include "range.h"
#include "word_stand_in/word_session.h"

#include <gtest/gtest.h>

#include <deque>
#include <optional>

namespace pluvo::word_com {
namespace {

using stand_in::Arguments;
using stand_in::WordSession;

/// A range of a document in a Word whose finds find what the test says, one after the other, then nothing.
struct Searched {
  WordSession session;
  std::shared_ptr<stand_in::OpenDocument> document;
  std::shared_ptr<word::Range> range;

  Searched(const std::u16string& text, Span span, std::deque<Span> matches = {})
      : document(WordSession::document(text)),
        range(session.word()->ActiveDocument()->Range(span.start, span.end)) {
    WordSession::calls().on(u"call Find.Execute",
                            [=, this](const Arguments&, VARIANT& result, EXCEPINFO&) mutable {
                              result.vt = VT_BOOL;
                              result.boolVal = matches.empty() ? VARIANT_FALSE : VARIANT_TRUE;
                              if (matches.empty()) return S_OK;
                              range->SetRange(matches.front().start, matches.front().end);
                              matches.pop_front();
                              return S_OK;
                            });
  }
  /// The calls of that member, in their order.
  static std::vector<std::string> calls(const std::string& member) {
    std::vector<std::string> found = WordSession::lines();
    std::erase_if(found, [&](const std::string& line) { return !line.starts_with(member); });
    return found;
  }
};

bool executed(word::Range& range, const std::u16string& text, bool wholeWord = false,
              bool wholeText = false) {
  const auto find = range.Find();
  find->ClearFormatting();
  if (wholeText) {
    find->WholeText(std::make_shared<const std::u16string>(text));
  } else {
    find->Text(text);
  }
  find->Forward(true);
  find->MatchCase(false);
  find->MatchWholeWord(wholeWord);
  find->Wrap(word::wdFindStop);
  return find->Execute();
}

struct Case {
  const char* what;
  std::u16string document;
  std::u16string text;
  Span range;
  std::deque<Span> matches;   ///< Word's
  std::optional<Span> found;  ///< where the range is then; as it was where nothing is found
  std::size_t executions;
  bool wholeWord = false;
  bool wholeText = false;
};

TEST(ComFind, TakesOfWordsMatchesThoseThatAreTheText) {
  const std::u16string quotes = u"say \u201Ca\u201D or \"a\" now";
  const std::u16string field = u"\x13 DATE \x14result\x15";
  const std::u16string tabs = u"xa\tb a\tbx a\tb";
  const std::u16string carets(200, u'^');
  const std::u16string other = carets.substr(1) + u"y";
  const Case cases[] = {
      {"a match", u"one two", u"two", {0, 0}, {{4, 7}}, {{4, 7}}, 1},
      {"capitals, which do not matter", u"one TWO", u"two", {0, 0}, {{4, 7}}, {{4, 7}}, 1},
      {"nothing", u"one two", u"six", {2, 2}, {}, {}, 1},
      {"curly quotes are not straight", quotes, u"\"a\"", {0, 0}, {{4, 7}, {11, 14}}, {{11, 14}}, 2},
      {"there are no straight ones", quotes, u"\"b\"", {3, 3}, {{4, 7}}, {}, 2},
      {"a find that stands still", quotes, u"\"a\"", {0, 0}, {{4, 7}, {4, 7}, {4, 7}}, {}, 3},
      {"within a range", u"a b a b", u"b", {0, 5}, {{2, 3}}, {{2, 3}}, 1},
      {"a range that is the text needs no find", u"a b a b", u"b", {2, 3}, {{6, 7}}, {{2, 3}}, 0},
      {"a match outside the range", u"a b a b", u"b", {3, 5}, {{6, 7}}, {}, 1},
      {"what is left of the range is the text", u"\u201Ca\"a\"", u"\"a\"", {0, 5}, {{0, 3}}, {}, 2},
      {"hidden text in a range that is the text", field, u"result", {0, 15}, {}, {{0, 15}}, 1},
      {"an empty text", u"a b", u"", {0, 0}, {{0, 3}}, {}, 1},
      {"a shortened text in full", carets + u"x", carets, {0, 0}, {{0, 127}}, {{0, 200}}, 1},
      {"a shortened text that goes on otherwise", carets + u"x", other, {0, 0}, {{0, 127}}, {}, 2},
      {"a shortened text that would leave the range", carets, carets, {0, 199}, {{0, 127}}, {}, 2},
      {"a shortened whole word", carets + u"ab", carets + u"a", {0, 0}, {{0, 127}}, {}, 2, true},
      // Of several words Word does not see to the ends.
      {"whole words", tabs, u"a\tb", {0, 0}, {{1, 4}, {5, 8}, {10, 13}}, {{10, 13}}, 3, true},
      {"the whole range, but not a whole word", u"abc", u"b", {1, 2}, {}, {}, 1, true},
      // The longest line proposes, the whole text is compared.
      {"two lines", u"ab\vabc ab\vabd", u"b\rabd", {0, 0}, {{10, 13}}, {{8, 13}}, 1, false, true},
      {"a line before where there is none",
       u"abc xx\rabc",
       u"xx\rabc",
       {2, 2},
       {{7, 10}},
       {{4, 10}},
       1,
       false,
       true},
      {"more lines than before it",
       u"x\rabc xx\rabc",
       u"xx\rabc",
       {0, 0},
       {{2, 5}, {9, 12}},
       {{6, 12}},
       2,
       false,
       true},
      {"a line that leaves the range", u"ab\rc", u"ab\rc", {0, 3}, {{0, 2}}, {}, 2, false, true},
      {"line ends alone", u"a\rb\v\rc", u"\r\r", {0, 0}, {{1, 2}, {3, 4}}, {{3, 5}}, 2, false, true},
      {"whole words",
       u"xa\rb a\rbx a\rb",
       u"a\rb",
       {0, 0},
       {{1, 2}, {5, 6}, {10, 11}},
       {{10, 13}},
       3,
       true,
       true},
      {"a word after a line end", u"x\ra", u"\ra", {0, 0}, {{2, 3}}, {{1, 3}}, 1, true, true},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.what);
    const Searched searched(each.document, each.range, each.matches);
    EXPECT_EQ(executed(*searched.range, each.text, each.wholeWord, each.wholeText), each.found.has_value());
    const Span left{searched.range->Start(), searched.range->End()};
    EXPECT_EQ(left, each.found.value_or(each.range)) << left.start << ".." << left.end;
    EXPECT_EQ(Searched::calls("call Find.Execute").size(), each.executions);
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
      {std::u16string(256, u'a'), longest, false},
      {std::u16string(254, u'a') + u"^", longest.substr(1), false},
      {std::u16string(253, u'a') + u"^", longest.substr(2) + "^^", false},
      {std::u16string(254, u'a') + u"\U0001F600", longest.substr(1), false},
  };
  for (const Written& each : cases) {
    SCOPED_TRACE(each.text);
    const Searched searched(u"a", {0, 0});
    const auto find = searched.range->Find();
    // In this order too: which text it is decides.
    find->MatchWholeWord(true);
    find->Text(each.asked);
    EXPECT_EQ(Searched::calls("put Find.Text"), std::vector{"put Find.Text(VT_BSTR \"" + each.text + "\")"});
    // The end of a part of the text need not be the end of a word. Only of one word does Word see to the
    // ends.
    EXPECT_EQ(Searched::calls("put Find.MatchWholeWord").back(),
              each.wholeWord ? "put Find.MatchWholeWord(VT_BOOL -1)" : "put Find.MatchWholeWord(VT_BOOL 0)");
  }
}

TEST(ComFind, ProposesTheLongestLine) {
  const std::pair<std::u16string, std::string> cases[] = {
      {u"a^\rabc\rdef\r", "abc"},
      {u"\rone", "one"},
      {u"\r", "[^11^13]"},
      {std::u16string(300, u'x') + u"\ry", std::string(255, 'x')}};
  for (const auto& [asked, text] : cases) {
    const Searched searched(u"a", {0, 0});
    executed(*searched.range, asked, false, true);
    EXPECT_EQ(Searched::calls("put Find.Text"), std::vector{"put Find.Text(VT_BSTR \"" + text + "\")"});
    // A pattern is one only while it is looked for.
    const auto pattern = Searched::calls("put Find.MatchWildcards");
    EXPECT_EQ(pattern.size(), text.front() == '[' ? 2U : 0U);
    EXPECT_TRUE(pattern.empty() || pattern.back() == "put Find.MatchWildcards(VT_BOOL 0)");
  }
}

}  // namespace
}  // namespace pluvo::word_com
