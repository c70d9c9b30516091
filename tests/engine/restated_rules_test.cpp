#include "engine/desk.h"
#include "engine/random_requests.h"
#include "errors/numbers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace pluvo::engine {
namespace {

using Place = text::Span;

/// With a tail that no request matches, so that the document's last mark is never asked for.
std::string documentOf(const std::u16string& text) {
  std::string notation;
  for (const char16_t c : text) notation += c == u'\r' ? "¶" : std::string(1, static_cast<char>(c));
  return notation + "z¶";
}

/// The rules of a pass, with its limits lifted, restated over positions in a document: which block is found
/// where, and what becomes of it.
class RestatedRules {
 public:
  RestatedRules(const std::u16string& text, const Request& asked)
      : document(documentOf(text)), asked_(asked), space_(asked.extraSpace ? u" " : u"") {}

  void pass() {
    text::Position from = 0;
    while (find(asked_.begin, {from, document.mainText().length()}, begin_)) {
      block_ = begin_;
      if (!asked_.end.empty()) {
        if (!find(asked_.end, {begin_.to, document.mainText().length()}, end_)) return;
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

  /// The whole of the text, at the first place where it stands.
  bool find(const std::u16string& text, Place within, Place& match) {
    const std::u16string all = document.mainText().text().substring(0, document.mainText().length());
    const auto comparable = [&](char16_t c) {
      if (!asked_.matchCase && u'A' <= c && c <= u'Z') return static_cast<char16_t>(c + 32);
      return c == u'\v' ? u'\r' : c;
    };
    const auto same = [&](char16_t a, char16_t b) { return comparable(a) == comparable(b); };
    const auto length = static_cast<text::Position>(text.size());
    for (text::Position at = within.from; at + length <= within.to; ++at) {
      match = {at, at + length};
      if (std::equal(text.begin(), text.end(), all.begin() + at, same) &&
          (!asked_.wholeWords || isWholeWord(all, text, match)))
        return true;
    }
    return false;
  }

  static bool isWholeWord(const std::u16string& all, const std::u16string& text, Place match) {
    const auto isMark = [](char16_t c) { return c == u'\r' || c == u'\v'; };
    const auto isLetter = [&](text::Position at) {
      const std::u16string c = all.substr(static_cast<std::size_t>(std::max(at, 0)), at < 0 ? 0 : 1);
      return c.find_first_of(u"abAz") == 0;
    };
    return (isMark(text.front()) || !isLetter(match.from - 1)) &&
           (isMark(text.back()) || !isLetter(match.to));
  }

  bool tooFar() {
    if (asked_.end.empty() || asked_.unit == kEntireDocument) return false;
    const auto count = [&](Place place) {
      const auto range = at(place);
      if (asked_.unit == kWords) return range->Words().Count();
      return asked_.unit == kSentences ? range->Sentences().Count() : range->Paragraphs().Count();
    };
    return count(block_) - count(begin_) - count(end_) > asked_.distance;
  }

  bool accept() {
    return asked_.inside.empty() ||
           (!asked_.end.empty() && find(asked_.inside, {begin_.to, end_.from}, inside_));
  }

  /// Returns where the search goes on.
  text::Position operate() {
    const auto block = at(block_);
    const auto on = at(std::array{block_, begin_, end_, inside_}[static_cast<std::size_t>(asked_.location)]);
    if (asked_.operation == kInsert && asked_.place == kAfter) on->InsertAfter(space_ + asked_.text);
    if (asked_.operation == kInsert && asked_.place == kBefore) on->InsertBefore(asked_.text + space_);
    if (asked_.operation == kReplace) on->Text(asked_.text);
    if (asked_.operation == kDelete) on->Delete();
    if (asked_.operation == kHighlight) on->HighlightColorIndex(word::wdYellow);
    return asked_.operation == kNone ? block->End() : std::max(block->End(), on->End());
  }

  Request asked_;
  std::u16string space_;
  Place block_, begin_, end_, inside_;
};

/// Returns how many blocks there were.
std::size_t expectAgreement(const std::u16string& text, const Request& asked) {
  RestatedRules rules(text, asked);
  rules.pass();
  Desk desk(documentOf(text));
  EXPECT_EQ(desk.pass(asked).operated, rules.blocks.size());
  EXPECT_EQ(desk.watch.blocks, rules.blocks);
  EXPECT_EQ(desk.text(), rules.document.print());
  EXPECT_TRUE(desk.watch.faults.empty());
  return rules.blocks.size();
}

TEST(RestatedRules, AgreeWithTheEngine) {
  Dice dice(20);
  std::vector<std::u16string> texts(100);
  for (std::u16string& text : texts) text = dice.text(u"aabbA . \r\v", 0, 60);
  std::size_t blocks = 0;
  for (int i = 0; i < 100; ++i) {
    const Request asked = randomRequest(dice);
    for (const std::u16string& text : texts) {
      blocks += expectAgreement(text, asked);
      if (testing::Test::HasFailure()) FAIL() << documentOf(text) << '\n' << words(asked);
    }
  }
  EXPECT_GT(blocks, 5000U) << "the requests find too little to tell";
}

}  // namespace
}  // namespace pluvo::engine
