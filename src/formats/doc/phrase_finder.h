#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace pluvo::doc {

/// Letters and digits, roughly: whatever is no blank, sign or control.
bool isOfWord(char16_t unit);

/// Whether a word begins, or another one than the last.
bool isEdge(std::u16string_view text, std::size_t at);

/// Tells each word with what stands between it and the word before: visit(both, the word, where it ends).
/// The text may go on, unless it is whole; then its last word may, too. Returns where the words told end.
template <class Visit>
std::size_t forEachWord(std::u16string_view text, bool isWhole, Visit visit) {
  std::size_t from = 0;
  for (std::size_t at = 0; at < text.size();) {
    if (!isOfWord(text[at])) {
      ++at;
      continue;
    }
    std::size_t end = at + 1;
    while (!isEdge(text, end)) ++end;
    if (end == text.size() && !isWhole) break;
    visit(text.substr(from, end - from), text.substr(at, end - at), end);
    from = at = end;
  }
  return from;
}

/// Finds any of some phrases of whole words in texts, in one pass however many phrases there are. Capitals
/// matter.
class PhraseFinder {
 public:
  /// A phrase, from its first word to its last; the same again changes nothing.
  void add(std::u16string_view phrase);
  /// Once all phrases are known, and before texts are looked through.
  void link();

  /// By their numbers, in the order of add.
  const std::vector<std::u16string>& phrases() const { return phrases_; }

  /// A place in a text: the words before it as far as phrases begin with them.
  using Place = std::uint32_t;
  static constexpr Place kBegin = 0;

  /// The place after a word. Both arguments are as forEachWord tells them.
  Place after(Place place, std::u16string_view withGap, std::u16string_view word) const;

  /// Visits the phrases that end at a place, from the longest on: visit(number), until it returns false.
  template <class Visit>
  void forEachEnding(Place place, Visit visit) const {
    for (Place at = nodes_[place].ends; at != kBegin; at = nodes_[nodes_[at].shorter].ends)
      if (!visit(nodes_[at].phrase)) return;
  }

 private:
  using Word = std::uint32_t;
  static constexpr Word kUnknown = 0;
  static constexpr std::size_t kNone = SIZE_MAX;

  /// The words from the beginning of a phrase up to some word.
  struct Node {
    Place before = kBegin;
    Word word = kUnknown;
    std::uint32_t words = 0;
    std::size_t phrase = kNone;  ///< that these are all of
    Place shorter = kBegin;      ///< most of its last words that begin a phrase, too
    Place ends = kBegin;         ///< itself or the next shorter one that is a whole phrase
  };

  Word numberOf(std::u16string_view word) const;
  Word numbered(std::u16string_view word);
  Place step(Place place, Word withGap, Word word) const;

  std::map<std::u16string, Word, std::less<>> numbers_;
  std::vector<Word> withoutGap_ = {kUnknown};  ///< by the number of a word with its gap
  std::vector<Node> nodes_ = {Node{}};
  std::unordered_map<std::uint64_t, Place> edges_;  ///< by a place and the word after it
  std::vector<std::u16string> phrases_;
};

}  // namespace pluvo::doc
