#pragma once

#include "errors/fault.h"
#include "memory/application.h"
#include "support/notation.h"
#include "word/faults.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace pluvo::engine {

/// What a word processor is asked to do, written down, and refused (Fault 4605) where a call begins with what
/// a test says.
struct Calls {
  void operator()(const std::string& call) {
    made.push_back(call);
    if (call.starts_with(refused)) throw errors::Fault(word::kNotAvailable, u"refused");
  }
  void operator()(const std::string& property, bool value) {
    (*this)(property + (value ? " true" : " false"));
  }

  std::vector<std::string> made;
  std::string refused = "-";
  std::vector<word::Range*> ranges;
};

/// Says that it found an empty text, wherever it is looked for.
class WatchedFind final : public word::Find {
 public:
  WatchedFind(Calls& calls, std::shared_ptr<word::Find> find) : called_(calls), find_(std::move(find)) {}

  void ClearFormatting() override { called_("Find.ClearFormatting"); }
  void Text(const std::u16string& text) override {
    called_("Find.Text " + std::string(text.begin(), text.end()));
    find_->Text(text);
    isEmpty_ = text.empty();
  }
  void WholeText(std::shared_ptr<const std::u16string> text) override {
    called_("Find.WholeText " + std::string(text->begin(), text->end()));
    isEmpty_ = text->empty();
    find_->WholeText(std::move(text));
  }
  void Forward(bool value) override { called_("Find.Forward", value); }
  void MatchCase(bool value) override { called_("Find.MatchCase", value), find_->MatchCase(value); }
  void MatchWholeWord(bool value) override { called_("Find.MatchWholeWord", value); }
  void MatchWildcards(bool value) override { called_("Find.MatchWildcards", value); }
  void MatchSoundsLike(bool value) override { called_("Find.MatchSoundsLike", value); }
  void MatchAllWordForms(bool value) override { called_("Find.MatchAllWordForms", value); }
  void Wrap(word::WdFindWrap value) override { called_("Find.Wrap " + std::to_string(value)); }
  bool Execute() override { return called_("Find.Execute"), isEmpty_ || find_->Execute(); }

 private:
  Calls& called_;
  std::shared_ptr<word::Find> find_;
  bool isEmpty_ = true;
};

/// An insertion at the end of another range leaves that range's End where it is, as some hosts have it.
class WatchedRange final : public word::Range {
 public:
  WatchedRange(Calls& calls, std::shared_ptr<word::Range> range) : called_(calls), range_(std::move(range)) {
    called_.ranges.push_back(this);
  }
  ~WatchedRange() override { std::erase(called_.ranges, this); }

  std::int32_t Start() override { return range_->Start(); }
  void Start(std::int32_t position) override { range_->Start(position); }
  std::int32_t End() override { return range_->End(); }
  void End(std::int32_t position) override { range_->End(position); }
  void SetRange(std::int32_t start, std::int32_t end) override { range_->SetRange(start, end); }
  std::u16string Text() override { return called_("Text"), range_->Text(); }
  void Text(const std::u16string& text) override { called_("Text="), range_->Text(text); }
  std::int32_t MoveStart(word::WdUnits unit, word::MoveCount count) override {
    return range_->MoveStart(unit, count);
  }
  std::int32_t MoveEnd(word::WdUnits unit, word::MoveCount count) override {
    called_(count.index() == 1 ? "MoveEnd 16 bits" : "MoveEnd 32 bits");
    return range_->MoveEnd(unit, count);
  }
  void Select() override { range_->Select(); }
  void InsertBefore(const std::u16string& text) override {
    called_("InsertBefore"), range_->InsertBefore(text);
  }
  void InsertAfter(const std::u16string& text) override {
    std::vector<word::Range*> staying;
    for (word::Range* other : called_.ranges)
      if (other != this && other->End() == End()) staying.push_back(other);
    const std::int32_t end = End();
    range_->InsertAfter(text);
    for (word::Range* other : staying) other->End(end);
  }
  std::int32_t Delete() override { return called_("Delete"), range_->Delete(); }
  void HighlightColorIndex(std::int32_t) override { called_("HighlightColorIndex"); }
  std::shared_ptr<word::Find> Find() override {
    return std::make_shared<WatchedFind>(called_, range_->Find());
  }
  word::WdStoryType StoryType() override { return range_->StoryType(); }
  std::shared_ptr<word::Range> NextStoryRange() override { return range_->NextStoryRange(); }

 private:
  std::int32_t countOf(word::WdUnits unit) override {
    called_("Count " + std::to_string(unit));
    return unit == word::wdCharacter ? range_->Characters().Count() : range_->Words().Count();
  }

  Calls& called_;
  std::shared_ptr<word::Range> range_;
};

/// What a pass uses of a document; all else is refused.
class WatchedDocument final : public word::Document {
 public:
  WatchedDocument(Calls& calls, memory::MemoryDocument& document) : calls_(calls), document_(document) {}

  std::shared_ptr<word::Range> Range(std::int32_t start, std::int32_t end) override {
    return std::make_shared<WatchedRange>(calls_, document_.Range(start, end));
  }
  std::shared_ptr<word::Window> ActiveWindow() override { return document_.ActiveWindow(); }
  std::u16string Name() override { unused(); }
  std::u16string Path() override { unused(); }
  void Activate() override { unused(); }
  bool ReadOnly() override { unused(); }
  void WritePassword(const std::u16string&) override { unused(); }
  word::WdProtectionType ProtectionType() override { unused(); }
  void Unprotect(const std::u16string&) override { unused(); }
  void Protect(word::WdProtectionType, const std::u16string&) override { unused(); }
  std::shared_ptr<word::Range> StoryRanges(word::WdStoryType story) override {
    return document_.StoryRanges(story);
  }
  bool Saved() override { unused(); }
  void Saved(bool) override { unused(); }
  void Close(bool) override { unused(); }

 private:
  [[noreturn]] static void unused() { throw errors::Fault(word::kNotAvailable, u"Not in this test."); }

  Calls& calls_;
  memory::MemoryDocument& document_;
};

/// The word processor of documents in memory, watched.
class WatchedApplication final : public memory::MemoryApplication {
 public:
  std::shared_ptr<word::Document> ActiveDocument() override {
    return hasDocument ? std::make_shared<WatchedDocument>(calls, *active()) : nullptr;
  }
  std::shared_ptr<word::Selection> Selection() override {
    return calls("Selection"), MemoryApplication::Selection();
  }

  Calls calls;
  bool hasDocument = true;
};

}  // namespace pluvo::engine
