#include "document/story.h"

#include <gtest/gtest.h>

#include <tuple>

namespace pluvo::document {
namespace {

using text::Position;
using text::Span;
using text::View;

/// A hundred thousand beginnings and one ending after them all. Edits stand at each beginning and at the
/// ending; the text wanted between them is not there. A search to the ending for each beginning would take
/// minutes.
class FarEnding : public ::testing::TestWithParam<std::tuple<bool, bool>> {};

TEST_P(FarEnding, IsSearchedForOnce) {
  const auto [editsBeginnings, wholeWords] = GetParam();
  constexpr int kBeginnings = 100'000;
  std::u16string text;
  for (int i = 0; i < kBeginnings; ++i) text += u"begin some text ";
  text += u"end.\r";
  Story model(plainContent(text::OriginalText(text)));
  const auto find = [&, words = wholeWords](const char16_t* what, Span span) {
    return model.find({std::make_shared<const std::u16string>(what), {false, words}}, span, View::results);
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

INSTANTIATE_TEST_SUITE_P(FindMemory, FarEnding, ::testing::Combine(::testing::Bool(), ::testing::Bool()));

}  // namespace
}  // namespace pluvo::document
