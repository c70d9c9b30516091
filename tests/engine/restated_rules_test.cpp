#include "engine/random_requests.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace pluvo::engine {
namespace {

using Place = text::Span;

std::u16string marksFor(std::u16string text) {
  std::replace(text.begin(), text.end(), u'\v', u'\r');
  return text;
}
std::u16string firstLine(const std::u16string& text) { return text.substr(0, marksFor(text).find(u'\r')); }
bool isCut(const std::u16string& text) { return firstLine(text) != text; }

/// With a tail that no request matches, so that the document's last mark is never asked for.
std::string documentOf(const std::u16string& text) {
  std::string notation;
  for (const char16_t c : text) notation += c == u'\r' ? "¶" : std::string(1, static_cast<char>(c));
  return notation + "z¶";
}

/// The rules of a pass, with its limits lifted, restated over positions in a document: what is found where,
/// and what becomes of it.
class RestatedRules {
 public:
  RestatedRules(const std::u16string& text, const Asked& asked, bool extraSpace)
      : document(documentOf(text)),
        asked_(asked),
        space_(extraSpace ? u" " : u""),
        wholeWords_(asked.wholeWords && !isCut(asked.begin) && !isCut(asked.end) && !isCut(asked.inside)) {}

  void pass() {
    text::Position from = 0;
    while (find(asked_.begin, {from, document.model().length()}, begin_)) {
      block_ = begin_;
      if (!asked_.end.empty()) {
        if (!find(asked_.end, {begin_.to, document.model().length()}, end_)) return;
        block_.to = end_.to;
      }
      if (tooFar()) {
        from = begin_.to;
      } else if (!accept()) {
        from = block_.to;
      } else {
        blocks.push_back(block_);
        from = operate();
      }
    }
  }

  notation::Sample document;
  std::vector<Place> blocks;  ///< as they were found

 private:
  std::shared_ptr<word::Range> at(Place place) { return document.document->Range(place.from, place.to); }

  bool find(const std::u16string& text, Place within, Place& match) {
    if (within.empty()) return false;
    const auto range = at(within);
    const auto find = range->Find();
    find->Text(firstLine(text));
    find->MatchCase(asked_.matchCase);
    find->MatchWholeWord(wholeWords_);
    if (!find->Execute()) return false;
    match = {range->Start(), range->End()};
    return true;
  }

  bool tooFar() {
    if (asked_.end.empty() || asked_.unit == kEntireDocument) return false;
    const auto count = [&](Place place) {
      const auto range = at(place);
      if (asked_.unit == kWords) return range->Words().Count();
      return asked_.unit == kSentences ? range->Sentences().Count() : range->Paragraphs().Count();
    };
    const std::int32_t distance = asked_.apart == kSame ? 0 : errors::toInteger(asked_.apart);
    return count(block_) - count(begin_) - count(end_) > distance;
  }

  /// Whether a text that was cut stands there in full, also beyond the block. The place then covers it.
  bool matchesInFull(const std::u16string& full, Place& match) {
    if (!isCut(full)) return true;
    const auto to = match.from + static_cast<text::Position>(full.size());
    if (to > document.model().length() || marksFor(at({match.from, to})->Text()) != marksFor(full))
      return false;
    match.to = to;
    return true;
  }

  bool accept() {
    if (!matchesInFull(asked_.begin, begin_)) return false;
    if (asked_.end.empty()) {
      block_ = begin_;
      return asked_.inside.empty();
    }
    if (!matchesInFull(asked_.end, end_)) return false;
    block_.to = end_.to;
    return asked_.inside.empty() ||
           (find(asked_.inside, {begin_.to, end_.from}, inside_) && matchesInFull(asked_.inside, inside_));
  }

  /// Returns where the search goes on.
  text::Position operate() {
    const auto block = at(block_);
    const auto on = at(std::array{block_, begin_, end_, inside_}[static_cast<std::size_t>(asked_.on)]);
    if (asked_.operation == kInsert && asked_.place == kAfter) on->InsertAfter(space_ + asked_.text);
    if (asked_.operation == kInsert && asked_.place == kBefore) on->InsertBefore(asked_.text + space_);
    if (asked_.operation == kReplace) on->Text(asked_.text);
    if (asked_.operation == kDelete) on->Delete();
    if (asked_.operation == kHighlight) on->HighlightColorIndex(word::wdYellow);
    return asked_.operation == kNone ? block->End() : std::max(block->End(), on->End());
  }

  Asked asked_;
  std::u16string space_;
  bool wholeWords_;
  Place block_, begin_, end_, inside_;
};

struct Positions : PassObserver {
  Answer found(const Block& block) override {
    all.push_back({block.whole.Start(), block.whole.End()});
    return Answer::goOn;
  }
  std::vector<Place> all;
};

/// Returns how many blocks there were.
std::size_t expectAgreement(const std::u16string& text, const Asked& asked, bool extraSpace) {
  RestatedRules rules(text, asked, extraSpace);
  rules.pass();
  Desk desk(documentOf(text));
  Positions positions;
  desk.work.engine.observer(&positions);
  desk.work.engine.ExtraSpaceSetting(extraSpace);
  desk.work.pass(asked);
  EXPECT_EQ(positions.all, rules.blocks);
  EXPECT_EQ(desk.text(), rules.document.print());
  EXPECT_EQ(desk.work.lastSummary(), "   " + std::to_string(rules.blocks.size()));
  EXPECT_TRUE(desk.work.reports.empty());
  return rules.blocks.size();
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
      blocks += expectAgreement(text, asked, extraSpace);
      if (testing::Test::HasFailure()) FAIL() << documentOf(text) << '\n' << words(asked) << extraSpace;
    }
  }
  EXPECT_GT(blocks, 5000U) << "the requests find too little to tell";
}

}  // namespace
}  // namespace pluvo::engine
