#pragma once

#include "word/unused_members.h"
#include "word/word_processor.h"

#include <memory>
#include <string>
#include <vector>

namespace pluvo::engine {

/// A word processor over one string, as plain as the interface allows: it writes down what is called, and
/// refuses a call where a test says so. Units are one a character. An insertion at the end of another range
/// leaves that range's End where it is, as some hosts have it.
class StringWord final : public word::OneDocumentApplication,
                         public word::OneDocument,
                         public word::Window,
                         public word::View,
                         public word::Selection,
                         public std::enable_shared_from_this<StringWord> {
 public:
  explicit StringWord(std::u16string content) : text(std::move(content)) {}

  std::shared_ptr<word::Document> ActiveDocument() override;
  std::shared_ptr<word::Selection> Selection() override { return shared_from_this(); }
  std::shared_ptr<word::Range> Range(std::int32_t start, std::int32_t end) override;
  std::u16string Name() override { return u"string.txt"; }
  std::shared_ptr<word::Window> ActiveWindow() override { return shared_from_this(); }
  std::shared_ptr<word::View> View() override { return shared_from_this(); }
  void ShowFieldCodes(bool value) override { called(value ? "ShowFieldCodes true" : "ShowFieldCodes false"); }
  std::int32_t Start() override { return 0; }
  void SetRange(std::int32_t start, std::int32_t end) override;
  std::u16string Text() override { word::unused(); }
  std::int32_t countOf(word::WdUnits) override { word::unused(); }

  /// Writes the call down; Fault 4605 where it begins with what is to be refused.
  void called(const std::string& call);

  std::u16string text;
  std::vector<std::string> calls;
  std::string refused = "-";
  bool hasDocument = true;

 private:
  friend class StringRange;
  void replace(std::int32_t from, std::int32_t to, const std::u16string& with, const word::Range* by);

  std::vector<std::weak_ptr<class StringRange>> ranges_;
};

}  // namespace pluvo::engine
