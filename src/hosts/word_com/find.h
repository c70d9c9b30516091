#pragma once

#include "dispatch.h"
#include "range.h"
#include "word/word_processor.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace pluvo::word_com {

/// A literal search, which Word's find is not by itself. There `^` begins a code, and straight and
/// typographic quotes are one. A range that is its own match is not found, and the search then leaves the
/// range. Whatever Word finds is compared with the text asked for, and the search goes on after a wrong
/// match.
///
/// Nor does Word take a long text or one of several lines. Its longest line proposes places then (a line end,
/// where no line holds a character), around which the whole text is compared.
class ComFind final : public word::Find {
 public:
  ComFind(Object find, std::shared_ptr<ComRange> range) : find_(std::move(find)), range_(std::move(range)) {}
  ComFind(const ComFind&) = delete;
  ComFind& operator=(const ComFind&) = delete;
  ~ComFind() override;

  void ClearFormatting() override;
  void Text(const std::u16string& text) override;
  void WholeText(std::shared_ptr<const std::u16string> text) override;
  void Forward(bool value) override { set(L"Forward", value, true); }
  void MatchCase(bool value) override;
  void MatchWholeWord(bool value) override;
  void MatchWildcards(bool value) override { set(L"MatchWildcards", value, false); }
  void MatchSoundsLike(bool value) override { set(L"MatchSoundsLike", value, false); }
  void MatchAllWordForms(bool value) override { set(L"MatchAllWordForms", value, false); }
  void Wrap(word::WdFindWrap value) override { find_.put(L"Wrap", Arguments().integer(value)); }

  /// Not found: the range is as it was.
  bool Execute() override;

 private:
  /// The text that Word is to look for, as Word takes it.
  struct Proposal {
    std::u16string written;
    std::size_t before = 0;  ///< how many units of the text stand before it
    std::size_t given = 0;   ///< and how many it stands for
    bool isLineEnd = false;
  };
  static Proposal beginningOf(std::u16string_view line);
  static Proposal longestLineOf(std::u16string_view text);

  void set(const wchar_t* flag, bool value, bool resting) const;
  bool is(const wchar_t* property, bool value) const;
  void lookFor(std::shared_ptr<const std::u16string> text, Proposal proposal);
  bool isShortened() const { return proposal_.given < text_->size(); }
  bool executeInWord() const;
  bool findsWithin(Span asked);
  bool isText();
  void tellRejected(Span match);
  bool isWholeMatch(Span span);
  bool extendsToText(Span match, Span asked);
  bool isWholeWord(Span span) const;

  Object find_;
  std::shared_ptr<ComRange> range_;
  std::shared_ptr<const std::u16string> text_ = std::make_shared<const std::u16string>();
  Proposal proposal_;
  bool matchCase_ = false;
  bool wholeWord_ = false;
  bool wordSeesToWords_ = false;
  /// The text read last, and the number of false matches.
  std::u16string read_;
  std::int32_t alike_ = 0;
};

}  // namespace pluvo::word_com
