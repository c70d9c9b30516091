#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::doc {

/// What of some short texts was deleted from a document, and stands nowhere in it any more: words, and
/// phrases that are all that was deleted at once, or all of a short text. Capitals do not matter.
class GoneTexts {
 public:
  void addShort(std::u16string_view text);

  /// Once all short texts are known.
  void addDeleted(std::u16string_view text);
  bool empty() const { return words_.empty() && phrases_.empty(); }

  /// Then the whole text of the document, in any parts.
  void addStanding(std::u16string_view text);
  void finishStanding() { dropStanding(standing_.size()); }

  /// Of each unit of a short text, whether it is of something gone.
  std::vector<bool> in(std::u16string_view text) const;

 private:
  void dropStanding(std::size_t end);

  std::set<std::u16string, std::less<>> known_;  ///< the words of short texts
  std::vector<std::u16string> short_;
  std::size_t longest_ = 0;
  std::set<std::u16string, std::less<>> words_;
  std::set<std::u16string, std::less<>> phrases_;
  std::u16string standing_;  ///< the text not looked at yet
};

}  // namespace pluvo::doc
