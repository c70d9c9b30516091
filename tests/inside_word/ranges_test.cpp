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
    length_ = memory_->model().length();
    ranges_ = {memory_->Range(0, 0), word.word()->ActiveDocument()->Range(0, 0)};
  }
  ~Twins() { WordSession::world().close(inWord_); }
  Twins(const Twins&) = delete;
  Twins& operator=(const Twins&) = delete;

  /// Does one thing at random to both, and returns what.
  std::string step(Dice& dice) {
    const auto from = static_cast<std::int32_t>(dice.upTo(static_cast<std::size_t>(length_)));
    const auto to = static_cast<std::int32_t>(dice.upTo(static_cast<std::size_t>(length_)));
    const auto unit = static_cast<word::WdUnits>(1 + dice.upTo(3));
    const auto count = static_cast<std::int32_t>(dice.upTo(6)) - 3;
    const std::u16string text = dice.text(u"ab .\r", 1, 3);
    const std::size_t what = dice.upTo(10);
    for (std::size_t i = 0; i < 2; ++i)
      told_[i] = errors::utf8(perform(*ranges_[i], what, from, to, unit, count, text));
    length_ = memory_->model().length();
    return std::to_string(what) + " " + std::to_string(from) + "-" + std::to_string(to) + " unit " +
           std::to_string(unit) + " count " + std::to_string(count) + " \"" + errors::utf8(text) + "\"";
  }
  std::string told(std::size_t i) {
    word::Range& range = *ranges_[i];
    std::string all = told_[i] + "; " + std::to_string(range.Start()) + "-" + std::to_string(range.End()) +
                      " \"" + errors::utf8(range.Text()) + "\"";
    for (const std::int32_t count : {range.Characters().Count(), range.Words().Count(),
                                     range.Sentences().Count(), range.Paragraphs().Count()}) {
      all += " " + std::to_string(count);
    }
    const std::u16string text = i == 0 ? memory_->model().text().substring(0, length_) : inWord_->allText();
    return all + " in \"" + errors::utf8(text) + "\"";
  }

 private:
  static std::u16string perform(word::Range& range, std::size_t what, std::int32_t from, std::int32_t to,
                                word::WdUnits unit, std::int32_t count, const std::u16string& text) {
    try {
      switch (what) {
        case 0:
          return range.SetRange(std::min(from, to), std::max(from, to)), u"";
        case 1:
          return range.Start(from), u"";
        case 2:
          return range.End(to), u"";
        case 3:
          return errors::decimal(range.MoveStart(unit, count));
        case 4:
          return errors::decimal(range.MoveEnd(unit, count));
        case 5:
          return range.InsertBefore(text), u"";
        case 6:
          return range.InsertAfter(text), u"";
        case 7:
          return range.Text(text), u"";
        case 8: {
          const std::int32_t deleted = range.Delete();
          // Where marks of fields or tables stay behind, Word's range is empty all the same.
          range.End(range.Start());
          return errors::decimal(deleted);
        }
        case 9:
          return range.SetRange(from, to), u"";
        default: {
          const auto find = range.Find();
          find->ClearFormatting();
          find->Text(text);
          find->Forward(true);
          find->MatchCase(false);
          find->MatchWholeWord(count > 0);
          find->MatchWildcards(false);
          find->MatchSoundsLike(false);
          find->MatchAllWordForms(false);
          find->Wrap(word::wdFindStop);
          return find->Execute() ? u"found" : u"not found";
        }
      }
    } catch (const errors::Fault& fault) {
      return u"fault " + errors::decimal(fault.number);
    }
  }

  std::unique_ptr<word::Batch> edits_;
  std::shared_ptr<stand_in::OpenDocument> inWord_;
  std::shared_ptr<memory::MemoryDocument> memory_;
  std::int32_t length_ = 0;
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
