#include "documents/support/notation.h"
#include "model/model.h"

#include <gtest/gtest.h>

#include <random>

namespace pluvo::model {
namespace {

using text::Position;
using text::Span;
using text::View;

TEST(FindMemory, AnswersLikeASearchOfItsOwn) {
  std::mt19937 random(1);
  const auto below = [&](int bound) { return static_cast<int>(random() % static_cast<unsigned>(bound)); };
  const auto letters = [&](int longest) {
    std::u16string result;
    for (int length = below(longest + 1); length > 0; --length) result += u"aab "[below(4)];
    return result;
  };
  for (int document = 0; document < 400; ++document) {
    notation::Sample sample("<h:a>ab<h:ba>b{a |ab}a a<h:b>ba");
    Model& model = sample.model();
    for (int step = 0; step < 60; ++step) {
      const Position from = below(model.length());
      if (below(3) == 0) {
        model.replace({from, std::min(model.length(), from + below(4))}, letters(3), View::results);
        continue;
      }
      static const std::u16string kTexts[] = {u"ab", u"aab", u"a"};
      const Query query{kTexts[below(3)], {true, below(2) == 0}};
      const Span span{from, below(2) == 0 ? model.length() : std::min(model.length(), from + below(8))};
      const View view = below(8) == 0 ? View::codes : View::results;
      const auto expected = text::Search(query.text, query.flags)
                                .find(model.text(), model.visibility(), view, span.from, span.to);
      ASSERT_EQ(model.find(query, span, view), expected)
          << notation::print(model) << " " << span.from << "-" << span.to;
    }
  }
}

/// A hundred thousand beginnings and one ending behind them all, with an edit at each beginning, at the
/// ending, and with a text between them that is not there: a search to the ending for each would take
/// minutes.
class FarEnding : public ::testing::TestWithParam<bool> {};

TEST_P(FarEnding, IsSearchedForOnce) {
  const bool editsBeginnings = GetParam();
  constexpr int kBeginnings = 100'000;
  std::u16string text;
  for (int i = 0; i < kBeginnings; ++i) text += u"begin some text ";
  text += u"end.\r";
  Model model(plainContent(text::OriginalText(text)));
  const auto find = [&](const char16_t* what, Span span) {
    return model.find({what, {false, true}}, span, View::results);
  };
  int found = 0;
  for (Position from = 0; const auto begin = find(u"begin", {from, model.length()}); ++found) {
    const auto end = find(u"end", {begin->to, model.length()});
    ASSERT_TRUE(end);
    EXPECT_FALSE(find(u"inside", {begin->to, end->from}));
    EXPECT_FALSE(find(u"end", {begin->to, end->from}));
    from = begin->to;
    if (editsBeginnings) {
      from = model.insertBehind(from, u" x").to;
    } else {
      model.insertBefore(end->from, u"!");
    }
  }
  EXPECT_EQ(found, kBeginnings);
}

INSTANTIATE_TEST_SUITE_P(FindMemory, FarEnding, ::testing::Bool());

}  // namespace
}  // namespace pluvo::model
