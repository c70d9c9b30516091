#include "base/utf.h"
#include "both_ways.h"
#include "engine/random_requests.h"
#include "errors/fault.h"

#include <gtest/gtest.h>

namespace pluvo::inside_word {
namespace {

using engine::Dice;

/// A range is put through the same in memory and in Word, and says after each step the same of itself.
class Twins {
 public:
  Twins(const WordSession& word, const std::u16string& text)
      : edits_(word.word()->beginEdits(true)), inWord_(WordSession::document(text)) {
    memory_ = memory::MemoryDocument::create(stand_in::documentContent(text));
    ranges_ = {memory_->Range(0, 0), word.word()->ActiveDocument()->Range(0, 0)};
  }
  ~Twins() { WordSession::world().close(inWord_); }
  Twins(const Twins&) = delete;
  Twins& operator=(const Twins&) = delete;

  /// Does one thing at random to both, and returns what.
  std::string step(Dice& dice) {
    const auto length = static_cast<std::size_t>(memory_->mainText().length());
    const Step step = {.from = static_cast<std::int32_t>(dice.upTo(length)),
                       .to = static_cast<std::int32_t>(dice.upTo(length)),
                       .unit = static_cast<word::WdUnits>(1 + dice.upTo(3)),
                       .count = static_cast<std::int32_t>(dice.upTo(6)) - 3,
                       .text = dice.text(u"ab .\r", 1, 3)};
    const std::size_t what = dice.upTo(std::size(kDoings) - 1);
    for (std::size_t i = 0; i < 2; ++i) told_[i] = perform(*ranges_[i], what, step);
    return std::to_string(what) + " " + std::to_string(step.from) + "-" + std::to_string(step.to) + " unit " +
           std::to_string(step.unit) + " count " + std::to_string(step.count) + " \"" +
           base::utf8(step.text) + "\"";
  }
  std::string told(std::size_t i) {
    word::Range& range = *ranges_[i];
    std::string all = told_[i] + "; " + std::to_string(range.Start()) + "-" + std::to_string(range.End()) +
                      " \"" + base::utf8(range.Text()) + "\"";
    for (const std::int32_t count : {range.Characters().Count(), range.Words().Count(),
                                     range.Sentences().Count(), range.Paragraphs().Count()}) {
      all += " " + std::to_string(count);
    }
    const std::u16string text =
        i == 0 ? memory_->mainText().text().substring(0, memory_->mainText().length()) : inWord_->allText();
    return all + " in \"" + base::utf8(text) + "\"";
  }

 private:
  struct Step {
    std::int32_t from;
    std::int32_t to;
    word::WdUnits unit;
    std::int32_t count;
    std::u16string text;
  };
  /// What can be done to a range. What it returns is part of what is compared.
  static constexpr std::int32_t (*kDoings[])(word::Range&, const Step&) = {
      [](word::Range& range, const Step& step) { return range.SetRange(step.from, step.to), 0; },
      [](word::Range& range, const Step& step) { return range.Start(step.from), 0; },
      [](word::Range& range, const Step& step) { return range.End(step.to), 0; },
      [](word::Range& range, const Step& step) { return range.MoveStart(step.unit, step.count); },
      [](word::Range& range, const Step& step) { return range.MoveEnd(step.unit, step.count); },
      [](word::Range& range, const Step& step) { return range.InsertBefore(step.text), 0; },
      [](word::Range& range, const Step& step) { return range.InsertAfter(step.text), 0; },
      [](word::Range& range, const Step& step) { return range.Text(step.text), 0; },
      [](word::Range& range, const Step&) {
        const std::int32_t deleted = range.Delete();
        // Where marks of fields or tables stay behind, Word's range is empty all the same.
        range.End(range.Start());
        return deleted;
      },
      [](word::Range& range, const Step& step) {
        const auto find = range.Find();
        find->ClearFormatting();
        find->Text(step.text);
        find->Forward(true);
        find->MatchCase(false);
        find->MatchWholeWord(step.count > 0);
        find->MatchWildcards(false);
        find->MatchSoundsLike(false);
        find->MatchAllWordForms(false);
        find->Wrap(word::wdFindStop);
        return find->Execute() ? 1 : 0;
      },
  };
  static std::string perform(word::Range& range, std::size_t what, const Step& step) {
    try {
      return std::to_string(kDoings[what](range, step));
    } catch (const errors::Fault& fault) {
      return "fault " + std::to_string(fault.number);
    }
  }

  std::unique_ptr<word::Batch> edits_;
  std::shared_ptr<stand_in::OpenDocument> inWord_;
  std::shared_ptr<memory::MemoryDocument> memory_;
  std::array<std::shared_ptr<word::Range>, 2> ranges_;
  std::array<std::string, 2> told_;
};

TEST(Ranges, SayTheSameInWordAsInMemory) {
  const WordSession word;
  Dice dice(3);
  const std::u16string texts[] = {u"", u"One two. Three a b.\rFour", u"a \x13 CODE \x14result b\x15 c",
                                  u"a\x07"
                                  u"b b\x07\x07"
                                  u"c\rd"};
  for (int i = 0; i < 400; ++i) {
    Twins twins(word, texts[dice.upTo(3)]);
    std::string steps;
    for (int k = 0; k < 10; ++k) {
      WordSession::calls().clear();
      steps += twins.step(dice) + "\n";
      ASSERT_EQ(twins.told(1), twins.told(0)) << steps << WordSession::log();
    }
  }
}

}  // namespace
}  // namespace pluvo::inside_word
