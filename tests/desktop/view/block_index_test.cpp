#include "block_index.h"

#include "block_finder.h"
#include "support/notation.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::view {
namespace {

int guess(Span block, bool isRow) { return isRow ? 1000 : block.length(); }

BlockIndex indexOf(const document::Story& story) {
  return {BlockFinder(story).blocks(), story.length(), guess};
}

/// The blocks as "from-to", a row with an r after it.
std::string print(const BlockIndex& index) {
  std::string result;
  for (std::size_t i = 0; i < index.count(); ++i) {
    const Span span = index.span(i);
    result += std::to_string(span.from) + '-' + std::to_string(span.to) + (index.isRow(i) ? "r " : " ");
  }
  return result;
}

TEST(BlockIndex, DividesADocumentIntoParagraphsAndRows) {
  const struct {
    std::string_view notation;
    std::string blocks;
  } cases[] = {
      {"¶", "0-1 "},
      {"one¶two§three¶", "0-4 4-8 8-14 "},
      {"a¶⟦b¦c¶d¦‖e¦‖⟧f¶", "0-2 2-9r 9-12r 12-14 "},
      {"⟦a¦⟦b¦‖c¦‖⟧¶¦‖⟧f¶", "0-11r 11-13 "},  // a table in a cell
      {"a{code|re¶sult}b¶", "0-10 10-17 "},
  };
  for (const auto& it : cases) {
    notation::Sample sample(it.notation);
    EXPECT_EQ(print(indexOf(sample.mainText())), it.blocks) << it.notation;
  }
  // A long paragraph is cut after a blank, where it has one.
  std::string words;
  for (int i = 0; i < 2000; ++i) words += "word ";
  EXPECT_EQ(print(indexOf(notation::Sample(words + "¶").mainText())), "0-8190 8190-10001 ");
  EXPECT_EQ(print(indexOf(notation::Sample(std::string(20000, 'x') + "¶").mainText())),
            "0-8192 8192-16384 16384-20001 ");
}

/// Tells the index what becomes of main text, as a view is told.
struct Follower : document::Observer {
  Follower(document::Document& document, BlockIndex& followed) : log(document), index(followed) {}
  void replaced(const document::Story&, Span span, Position newLength) override {
    log.replaced(0, span, newLength);
  }
  void tell() {
    for (const StoryChange& change : log.take()) index.take(change.patches);
  }
  ChangeLog log;
  BlockIndex& index;
};

TEST(BlockIndex, FollowsAnyEdits) {
  std::mt19937 random(7);
  const auto below = [&](int bound) { return static_cast<int>(random() % static_cast<unsigned>(bound)); };
  for (int round = 0; round < 300; ++round) {
    notation::Sample sample("one¶two three¶⟦a¦b¶c¦‖d¦⟦e¦‖⟧¶¦‖⟧four {code|result}¶¶five§six¶" +
                            std::string(round % 3 == 0 ? 9000 : 5, 'z') + "¶");
    document::Story& model = sample.mainText();
    BlockIndex index = indexOf(model);
    Follower follower(sample.document->stories(), index);
    model.observer(&follower);
    std::vector<document::Story::Snapshot> snapshots{model.snapshot()};
    for (int edits = 1 + below(8); edits > 0; --edits) {
      const Position from = below(model.length());
      const Position to = std::min(model.length(), from + (below(4) == 0 ? below(3000) : below(6)));
      const std::u16string texts[] = {u"", u"x", u"new\rparagraph", u"\r\r", std::u16string(9000, u'y')};
      if (below(12) == 0) {
        model.restore(snapshots.front());
      } else {
        model.replace({from, to}, texts[below(5)], text::View::results);
      }
      if (below(3) == 0) follower.tell();
      // A line of a long paragraph may begin before its cut.
      const auto cut = static_cast<std::size_t>(below(static_cast<int>(index.count())));
      if (index.continues(cut) && below(2) == 0) index.startAt(cut, index.span(cut).from - 1);
    }
    follower.tell();
    // A long paragraph may be cut elsewhere than from its beginning.
    const auto boundaries = [&](const BlockIndex& of) {
      std::string result;
      for (std::size_t i = 0; i < of.count(); ++i) {
        const Position to = of.span(i).to;
        EXPECT_LE(of.span(i).length(), of.isRow(i) ? to : BlockFinder::kLongest + 1);
        if (of.isRow(i) || model.endsParagraph(to - 1)) result += std::to_string(to) + ' ';
      }
      return result;
    };
    ASSERT_EQ(boundaries(index), boundaries(indexOf(model))) << "round " << round;
    ASSERT_EQ(index.span(index.count() - 1).to, model.length());
    model.observer(nullptr);
  }
}

TEST(BlockIndex, KnowsHeights) {
  notation::Sample sample("a¶bb¶ccc¶");
  BlockIndex index(BlockFinder(sample.mainText()).blocks(), 9, [](Span, bool) { return 10; });
  EXPECT_EQ(index.top(index.count()), 30);
  index.setHeight(1, 50);
  EXPECT_EQ(index.top(2), 60);
  EXPECT_EQ(index.atHeight(59), 1U);
  EXPECT_EQ(index.atHeight(60), 2U);
  EXPECT_EQ(index.atHeight(1000), 2U);
  EXPECT_TRUE(index.exact(1));
  Follower follower(sample.document->stories(), index);
  sample.mainText().observer(&follower);
  sample.mainText().insertBefore(3, u"1234");
  sample.mainText().observer(nullptr);
  follower.tell();
  EXPECT_EQ(index.at(6), 1U);
  EXPECT_EQ(index.top(2), 60) << "a height that was known is still the better guess";
}

}  // namespace
}  // namespace pluvo::view
