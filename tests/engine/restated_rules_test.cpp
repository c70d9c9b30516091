#include "engine/restated_rules.h"

#include "errors/text.h"

#include <gtest/gtest.h>

#include <random>

namespace pluvo::engine {
namespace {

class Dice {
 public:
  explicit Dice(unsigned seed) : random_(seed) {}
  std::size_t upTo(std::size_t most) { return random_() % (most + 1); }
  bool once(std::size_t in) { return upTo(in - 1) == 0; }
  std::u16string text(std::u16string_view letters, std::size_t least, std::size_t most) {
    std::u16string result;
    for (std::size_t left = least + upTo(most - least); left > 0; --left) {
      result += letters[upTo(letters.size() - 1)];
    }
    return result;
  }
  /// A text to search for, that begins with no mark.
  std::u16string searched(std::size_t more) { return text(u"abA", 1, 1) + text(u"abA .\r\v", 0, more); }

 private:
  std::mt19937 random_;
};

Asked randomRequest(Dice& dice) {
  Asked asked;
  asked.lift = true;
  asked.begin = dice.searched(2);
  if (!dice.once(4)) asked.end = dice.searched(1);
  if (!asked.end.empty() && dice.once(3)) asked.inside = dice.searched(1);
  asked.apart = dice.once(2) ? kSame : errors::decimal(static_cast<std::int64_t>(dice.upTo(3)));
  asked.unit = static_cast<std::int32_t>(dice.upTo(3));
  asked.operation = static_cast<OperationCode>(dice.upTo(4));
  asked.on = static_cast<LocationCode>(dice.upTo(asked.inside.empty() ? asked.end.empty() ? 1 : 2 : 3));
  asked.place = static_cast<PlaceCode>(dice.upTo(1));
  asked.text = dice.once(2) ? asked.begin + asked.inside + asked.end : dice.text(u"abA .\r\v", 0, 3);
  asked.wholeWords = dice.once(4);
  asked.matchCase = dice.once(2);
  return asked;
}

std::string words(const Asked& asked) {
  const auto shown = [](std::u16string text) {
    for (char16_t& c : text) c = c == u'\r' ? u'/' : c == u'\v' ? u'|' : c;
    return '"' + errors::utf8(text) + "\" ";
  };
  return shown(asked.begin) + shown(asked.end) + shown(asked.inside) + shown(asked.apart) + "unit " +
         std::to_string(asked.unit) + " operation " + std::to_string(asked.operation) + " on " +
         std::to_string(asked.on) + " place " + std::to_string(asked.place) + ' ' + shown(asked.text);
}

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
