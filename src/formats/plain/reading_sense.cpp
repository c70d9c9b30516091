#include "reading_sense.h"

#include "sample.h"

#include <algorithm>
#include <string_view>

namespace pluvo::plain {

namespace {

enum class Sort : std::uint8_t { blank, ascii, other, latin, foreign, wide, sign, junk };

bool isAsciiLetter(char32_t c) { return (c | 0x20U) >= 'a' && (c | 0x20U) <= 'z'; }
bool within(char32_t c, char32_t first, char32_t last) { return c >= first && c <= last; }

/// Latin letters that Western languages do without, but for Icelandic.
bool isRareInTheWest(char32_t c) {
  constexpr std::u32string_view kRare = U"ÐÝÞðýþŠšŽž";
  return c > 0xFF ? c != U'Œ' && c != U'œ' && c != U'Ÿ' : kRare.find(c) != std::u32string_view::npos;
}

Sort sortOf(char32_t c, Letters letters) {
  if (isAsciiLetter(c)) return Sort::ascii;
  if (c == 0x20 || within(c, 0x09, 0x0D) || c == 0xA0) return Sort::blank;
  if (c < 0x80) return Sort::other;
  if (within(c, 0x2E80, 0xD7FF)) return Sort::wide;
  if (within(c, 0x80, 0x9F) || within(c, 0xD800, 0xF8FF) || within(c, 0x2500, 0x25FF)) return Sort::junk;
  const bool latin = (within(c, 0xC0, 0x24F) && c != 0xD7 && c != 0xF7) || within(c, 0x1E00, 0x1EFF);
  if (latin) return letters == Letters::western && isRareInTheWest(c) ? Sort::junk : Sort::latin;
  if (within(c, 0x370, 0x1DFF) && !within(c, 0x1100, 0x11FF)) return Sort::foreign;
  if (c >= 0x2E80) return Sort::wide;
  return Sort::sign;
}

/// Words of one letter: "à" in French, "è" in Italian, "å" in Danish and others.
bool isWordInTheWest(char32_t c) {
  constexpr std::u32string_view kWords = U"àÀèÈéÉòóÓåÅøØöÖ";
  return kWords.find(c) != std::u32string_view::npos;
}

/// Goes over a text and judges each word when it ends, and each sign by its neighbours.
class Judge {
 public:
  explicit Judge(Letters letters) : letters_(letters) {}

  void take(char32_t c) {
    const Sort sort = sortOf(c, letters_);
    // Most characters are like the ones before them, so that nothing else changes.
    if (sort == before_ && sort == Sort::wide) {
      ++sense_.fits;
      return;
    }
    if (sort == before_ && sort == Sort::ascii) {
      ++ascii_;
      last_ = c;
      return;
    }
    if (sort == Sort::sign) return takeSign(c);
    const bool letter = sort == Sort::ascii || sort == Sort::latin || sort == Sort::foreign;
    if (sign_ != 0) judgeSign(letter, sort == Sort::blank);
    if (!letter) endWord();
    if (sort == Sort::ascii) ++ascii_;
    if (sort == Sort::foreign) ++foreign_;
    if (sort == Sort::latin) ++latin_;
    if (letter) last_ = c;
    run_ = sort == Sort::latin ? run_ + 1 : 0;
    longestRun_ = std::max(longestRun_, run_);
    if (sort == Sort::wide) ++sense_.fits;
    if (sort == Sort::junk) ++sense_.jars;
    before_ = sort;
  }

  Sense done() {
    take(U'\n');
    return sense_;
  }

 private:
  /// A sign within a word is none but an apostrophe, a hyphen or a dash.
  void takeSign(char32_t c) {
    if (sign_ != 0) ++sense_.jars;
    sign_ = c;
    afterLetter_ = before_ == Sort::ascii || before_ == Sort::latin || before_ == Sort::foreign;
    afterBlank_ = before_ == Sort::blank;
    endWord();
    before_ = Sort::sign;
  }

  void judgeSign(bool beforeLetter, bool beforeBlank) {
    constexpr std::u32string_view kWithin = U"’‘\u00AD–—·";
    constexpr std::u32string_view kOpening = U"“‘«„‚‹¿¡";
    constexpr std::u32string_view kClosing = U"”’»“‘›…";
    bool fits = !(afterLetter_ && beforeLetter);
    if (kOpening.find(sign_) != std::u32string_view::npos) fits = !afterLetter_ || !beforeLetter;
    if (afterLetter_ && beforeLetter) fits = kWithin.find(sign_) != std::u32string_view::npos;
    if (afterBlank_ && beforeBlank) {
      constexpr std::u32string_view kAlone = U"–—…•«»§©";
      fits = kAlone.find(sign_) != std::u32string_view::npos;
    }
    if (kClosing.find(sign_) == std::u32string_view::npos &&
        kOpening.find(sign_) == std::u32string_view::npos && afterLetter_ && !beforeLetter) {
      constexpr std::u32string_view kAfterWord = U"®™©°²³ªº–—·†‡•\u00AD€£§";
      fits = kAfterWord.find(sign_) != std::u32string_view::npos;
    }
    ++(fits ? sense_.fits : sense_.jars);
    sign_ = 0;
  }

  void endWord() {
    if (foreign_ > 0)
      (ascii_ + latin_ > 0 ? sense_.jars : sense_.fits) += foreign_ + latin_;
    else if (latin_ > 0 && !(latin_ == 1 && ascii_ == 0 && isWordInTheWest(last_)))
      (ascii_ == 0 || longestRun_ > kLongestRun ? sense_.jars : sense_.fits) += latin_;
    ascii_ = latin_ = foreign_ = run_ = longestRun_ = 0;
  }

  /// Letters beyond ASCII beside each other: Turkish has three in "dığı".
  static constexpr std::size_t kLongestRun = 3;

  Letters letters_;
  Sense sense_;
  Sort before_ = Sort::blank;
  std::size_t ascii_ = 0;
  std::size_t latin_ = 0;
  std::size_t foreign_ = 0;
  std::size_t run_ = 0;
  std::size_t longestRun_ = 0;
  char32_t last_ = 0;  ///< letter
  char32_t sign_ = 0;
  bool afterLetter_ = false;
  bool afterBlank_ = false;
};

}  // namespace

Sense senseOf(base::ByteSpan sample, const Coding& coding, Letters letters) {
  Judge judge(letters);
  forEachToken(sample, coding, [&](const Token& token) { judge.take(token.codePoint); });
  return judge.done();
}

}  // namespace pluvo::plain
