#pragma once

#include "phrase_finder.h"

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::doc {

/// Words and phrases that were deleted from some short texts of a document and stand nowhere in it any more.
/// A phrase is all of one deletion, or all of a short text. Capitals do not matter.
class GoneTexts {
 public:
  void addShort(std::u16string_view text);

  /// Once all short texts are known.
  void addDeleted(std::u16string_view text);
  bool empty() const { return words_.empty(); }

  /// Then the whole text of the document, in any parts.
  void addStanding(std::u16string_view text);
  void finishStanding() { dropStanding(true); }

  /// Of each unit of a short text, whether it is of something gone.
  std::vector<bool> in(std::u16string_view text) const;

 private:
  void gatherPhrases();
  void dropStanding(bool isWhole);

  PhraseFinder short_;
  std::vector<bool> isShortDeleted_;             ///< by number; empty before the first deleted text
  std::set<std::u16string, std::less<>> known_;  ///< the words of short texts
  std::size_t longest_ = 0;                      ///< of the short texts
  PhraseFinder deleted_;                         ///< of known words alone
  std::set<std::u16string, std::less<>> words_;
  PhraseFinder phrases_;
  std::vector<bool> isPhraseGone_;  ///< by number
  bool areGathered_ = false;        ///< the phrases
  std::u16string standing_;         ///< the text not looked at yet
  PhraseFinder::Place place_ = PhraseFinder::kBegin;
};

}  // namespace pluvo::doc
