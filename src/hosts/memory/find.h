#pragma once

#include "document/story.h"
#include "range.h"
#include "word/word_processor.h"

#include <memory>
#include <string>
#include <utility>

namespace pluvo::memory {

/// A literal search towards the end of the document. A criterion that documents in memory do not have
/// (wildcards, sounds, word forms, backwards, going round) is a Fault 5843 when it is asked for.
class MemoryFind : public word::Find {
 public:
  /// Of the range that holds it.
  explicit MemoryFind(MemoryRange& range) : range_(range) {}

  /// As when nothing has been set yet.
  void reset() { query_ = {}; }

  void ClearFormatting() override {}  // there are no formatting conditions to clear
  /// Fault 5854 for more than kLongestText.
  void Text(const std::u16string& text) override;
  void WholeText(std::shared_ptr<const std::u16string> text) override { query_.text = std::move(text); }
  void Forward(bool value) override { requireOnly(u"Find.Forward", value, true); }
  void MatchCase(bool value) override { query_.flags.matchCase = value; }
  void MatchWholeWord(bool value) override { query_.flags.wholeWord = value; }
  void MatchWildcards(bool value) override { requireOnly(u"Find.MatchWildcards", value, false); }
  void MatchSoundsLike(bool value) override { requireOnly(u"Find.MatchSoundsLike", value, false); }
  void MatchAllWordForms(bool value) override { requireOnly(u"Find.MatchAllWordForms", value, false); }
  void Wrap(word::WdFindWrap value) override { requireOnly(u"Find.Wrap", value == word::wdFindStop, true); }

  /// Not found: the range stays as it was.
  bool Execute() override;

 private:
  static void requireOnly(const char16_t* criterion, bool value, bool possible);

  MemoryRange& range_;
  document::Query query_;  ///< its text null where none was set
};

}  // namespace pluvo::memory
