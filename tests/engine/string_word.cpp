#include "engine/string_word.h"

#include "errors/fault.h"
#include "word/faults.h"

#include <algorithm>

namespace pluvo::engine {

namespace {

std::string ascii(const std::u16string& text) { return {text.begin(), text.end()}; }
std::string named(const char* name, bool value) { return name + std::string(value ? " true" : " false"); }

}  // namespace

class StringRange final : public word::Range, public std::enable_shared_from_this<StringRange> {
 public:
  StringRange(std::shared_ptr<StringWord> word, std::int32_t from, std::int32_t to)
      : word_(std::move(word)), from_(from), to_(to) {}

  std::int32_t Start() override { return from_; }
  void Start(std::int32_t position) override { SetRange(position, std::max(position, to_)); }
  std::int32_t End() override { return to_; }
  void End(std::int32_t position) override { SetRange(std::min(position, from_), position); }
  void SetRange(std::int32_t start, std::int32_t end) override {
    word_->called("SetRange");
    from_ = std::min(start, end);
    to_ = end;
  }
  std::u16string Text() override {
    word_->called("Text");
    return word_->text.substr(static_cast<std::size_t>(from_), static_cast<std::size_t>(to_ - from_));
  }
  void Text(const std::u16string& text) override {
    word_->called("Text=");
    put(from_, to_, text);
    to_ = from_ + static_cast<std::int32_t>(text.size());
  }
  std::int32_t MoveStart(word::WdUnits, word::MoveCount count) override {
    Start(clamped(std::int64_t{from_} + word::valueOf(count)));
    return word::valueOf(count);
  }
  std::int32_t MoveEnd(word::WdUnits, word::MoveCount count) override {
    word_->called(std::holds_alternative<std::int16_t*>(count) ? "MoveEnd 16 bits" : "MoveEnd 32 bits");
    End(clamped(std::int64_t{to_} + word::valueOf(count)));
    return word::valueOf(count);
  }
  void Select() override { word_->called("Select"); }
  void InsertBefore(const std::u16string& text) override {
    word_->called("InsertBefore");
    put(from_, from_, text);
    to_ += static_cast<std::int32_t>(text.size());
  }
  void InsertAfter(const std::u16string& text) override {
    word_->called("InsertAfter");
    put(to_, to_, text);
    to_ += static_cast<std::int32_t>(text.size());
  }
  std::int32_t Delete() override {
    word_->called("Delete");
    put(from_, to_, {});
    to_ = from_;
    return 1;
  }
  void HighlightColorIndex(std::int32_t) override { word_->called("HighlightColorIndex"); }
  std::shared_ptr<word::Find> Find() override;

  void follow(std::int32_t from, std::int32_t to, std::int32_t length) {
    const std::int32_t more = length - (to - from);
    if (from_ > from) from_ = from_ < to ? from : from_ + more;
    if (to_ > from) to_ = to_ < to ? from + length : to_ + more;
    to_ = std::max(from_, to_);
  }

 private:
  friend class StringFind;
  std::int32_t countOf(word::WdUnits unit) override {
    word_->called("Count " + std::to_string(unit));
    return to_ - from_;
  }
  std::int32_t clamped(std::int64_t position) const {
    return static_cast<std::int32_t>(
        std::clamp<std::int64_t>(position, 0, static_cast<std::int64_t>(word_->text.size())));
  }
  void put(std::int32_t from, std::int32_t to, const std::u16string& text) {
    word_->replace(from, to, text, this);
  }

  std::shared_ptr<StringWord> word_;
  std::int32_t from_;
  std::int32_t to_;
};

class StringFind final : public word::Find {
 public:
  explicit StringFind(std::shared_ptr<StringRange> range) : range_(std::move(range)) {}

  void ClearFormatting() override { called("ClearFormatting"); }
  void Text(const std::u16string& text) override {
    called("Text " + ascii(text));
    text_ = text;
  }
  void Forward(bool value) override { called(named("Forward", value)); }
  void MatchCase(bool value) override { called(named("MatchCase", value)); }
  void MatchWholeWord(bool value) override { called(named("MatchWholeWord", value)); }
  void MatchWildcards(bool value) override { called(named("MatchWildcards", value)); }
  void MatchSoundsLike(bool value) override { called(named("MatchSoundsLike", value)); }
  void MatchAllWordForms(bool value) override { called(named("MatchAllWordForms", value)); }
  void Wrap(word::WdFindWrap value) override { called("Wrap " + std::to_string(value)); }
  /// Finds an empty text wherever it is looked for.
  bool Execute() override {
    called("Execute");
    const std::u16string& text = range_->word_->text;
    const std::size_t end =
        range_->from_ == range_->to_ ? text.size() : static_cast<std::size_t>(range_->to_);
    const std::size_t at = text.find(text_, static_cast<std::size_t>(range_->from_));
    if (at == text.npos || at + text_.size() > end) return false;
    range_->from_ = static_cast<std::int32_t>(at);
    range_->to_ = static_cast<std::int32_t>(at + text_.size());
    return true;
  }

 private:
  void called(const std::string& call) { range_->word_->called("Find." + call); }

  std::shared_ptr<StringRange> range_;
  std::u16string text_;
};

std::shared_ptr<word::Find> StringRange::Find() { return std::make_shared<StringFind>(shared_from_this()); }

std::shared_ptr<word::Document> StringWord::ActiveDocument() {
  return hasDocument ? shared_from_this() : nullptr;
}

std::shared_ptr<word::Range> StringWord::Range(std::int32_t start, std::int32_t end) {
  auto range = std::make_shared<StringRange>(shared_from_this(), start, end);
  ranges_.push_back(range);
  return range;
}

void StringWord::SetRange(std::int32_t start, std::int32_t end) {
  called("Selection.SetRange " + std::to_string(start) + ' ' + std::to_string(end));
}

void StringWord::called(const std::string& call) {
  calls.push_back(call);
  if (call.compare(0, refused.size(), refused) == 0) throw errors::Fault(word::kNotAvailable, u"refused");
}

void StringWord::replace(std::int32_t from, std::int32_t to, const std::u16string& with,
                         const word::Range* by) {
  text.replace(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from), with);
  for (const auto& weak : ranges_) {
    const auto range = weak.lock();
    if (range && range.get() != by) range->follow(from, to, static_cast<std::int32_t>(with.size()));
  }
}

}  // namespace pluvo::engine
