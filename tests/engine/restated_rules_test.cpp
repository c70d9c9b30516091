#include "engine/restated_rules.h"

#include "engine/random_requests.h"

#include <gtest/gtest.h>

namespace pluvo::engine {
namespace {

struct Positions : PassObserver {
  Answer found(const Block& block) override {
    all.push_back(
        {static_cast<std::size_t>(block.whole.Start()), static_cast<std::size_t>(block.whole.End())});
    return Answer::goOn;
  }
  std::vector<RestatedRules::Place> all;
};

/// The text, with a tail that no request matches, so that the document's last mark is never asked for.
std::string documentOf(const std::u16string& text) {
  std::string notation;
  for (const char16_t c : text) notation += c == u'\r' ? "¶" : std::string(1, static_cast<char>(c));
  return notation + "z¶";
}

bool agree(const std::u16string& text, const Asked& asked, bool extraSpace) {
  RestatedRules rules(text + u"z\r", asked, extraSpace);
  rules.pass();

  Desk desk(documentOf(text));
  Positions positions;
  desk.work.engine.observer(&positions);
  desk.work.engine.ExtraSpaceSetting(extraSpace);
  desk.work.pass(asked);
  model::Model& model = desk.sample.model();

  EXPECT_EQ(positions.all, rules.blocks);
  EXPECT_EQ(model.visibleText({0, model.length()}, text::View::results), rules.text);
  EXPECT_EQ(desk.work.lastSummary(), "   " + std::to_string(rules.blocks.size()));
  EXPECT_TRUE(desk.work.reports.all.empty());
  if (asked.operation == kHighlight) {
    for (std::size_t i = 0; i < rules.highlighted.size(); ++i) {
      const bool yellow = model.highlight().valueAt(static_cast<text::Position>(i)) == word::wdYellow;
      EXPECT_EQ(yellow, rules.highlighted[i]) << i;
    }
  }
  return !testing::Test::HasFailure();
}

TEST(RestatedRules, AgreeWithTheEngine) {
  Dice dice(20);
  std::vector<std::u16string> texts(100);
  for (std::u16string& text : texts) text = dice.text(u"aabbA . \r\v", 0, 60);
  std::size_t blocks = 0;
  for (int i = 0; i < 100; ++i) {
    const Asked asked = randomRequest(dice);
    const bool extraSpace = dice.once(3);
    for (const std::u16string& text : texts) {
      if (!agree(text, asked, extraSpace)) FAIL() << documentOf(text) << '\n' << words(asked) << extraSpace;
      RestatedRules rules(text, asked, extraSpace);
      rules.pass();
      blocks += rules.blocks.size();
    }
  }
  EXPECT_GT(blocks, 5000U) << "the requests find too little to tell";
}

}  // namespace
}  // namespace pluvo::engine
