#pragma once

#include "dispatch.h"
#include "range.h"
#include "word/word_processor.h"

#include <memory>
#include <string>

namespace pluvo::word_com {

/// A literal search, which Word's find is not by itself: `^` begins a code there, straight and typographic
/// quotes are one, a range that is its own match is not found, and the search then leaves the range. Whatever
/// Word finds is compared with the text asked for, and the search goes on behind a wrong match.
class ComFind final : public word::Find {
 public:
  ComFind(Object find, std::shared_ptr<ComRange> range) : find_(std::move(find)), range_(std::move(range)) {}

  void ClearFormatting() override;
  void Text(const std::u16string& text) override;
  void Forward(bool value) override { put(L"Forward", value); }
  void MatchCase(bool value) override;
  void MatchWholeWord(bool value) override;
  void MatchWildcards(bool value) override { put(L"MatchWildcards", value); }
  void MatchSoundsLike(bool value) override { put(L"MatchSoundsLike", value); }
  void MatchAllWordForms(bool value) override { put(L"MatchAllWordForms", value); }
  void Wrap(word::WdFindWrap value) override { find_.put(L"Wrap", Arguments().integer(value)); }

  /// Not found: the range is as it was.
  bool Execute() override;

 private:
  void put(const wchar_t* property, bool value) const { find_.put(property, Arguments().boolean(value)); }
  bool is(const wchar_t* property, bool value) const;
  bool executeInWord() const;
  bool findsWithin(Span asked);
  bool isWholeMatch(Span span);
  bool extendsToText(Span match, Span asked);
  bool isWholeWord(Span span) const;

  Object find_;
  std::shared_ptr<ComRange> range_;
  std::u16string text_;
  /// How many units of the text Word is given.
  std::size_t given_ = 0;
  bool matchCase_ = false;
  bool wholeWord_ = false;
  bool wordSeesToWords_ = false;
};

}  // namespace pluvo::word_com
