#pragma once

#include "errors/message_sink.h"
#include "forms/message_boxes.h"
#include "pass_watcher.h"
#include "prompt_answers.h"

#include <optional>
#include <string>

namespace pluvo::cli {

/// Answers the message boxes of a run over one document. A pass's question about a block is put to the person
/// at the terminal; the driver's questions about a file are answered so that the run goes on and the outcome
/// tells.
class RunBoxes final : public forms::MessageBoxes {
 public:
  RunBoxes(const std::string& path, Interviewer* interviewer, const PromptAnswers& prompts)
      : path_(path), interviewer_(interviewer), prompts_(prompts) {}

  /// The pass that is going on; none between passes.
  void watch(PassWatcher* watcher) { watcher_ = watcher; }
  /// Whether the person wants no more of this run.
  bool stopped() const { return stopped_; }
  /// Whether no password was the document's.
  bool passwordWrong() const { return passwordWrong_; }

  forms::Answer show(const std::u16string& text, forms::Buttons buttons,
                     const std::optional<std::u16string>& title) override;

 private:
  forms::Answer answerAboutFile(const std::optional<std::u16string>& title);
  forms::Answer answerAboutBlock();

  const std::string& path_;
  Interviewer* interviewer_;
  const PromptAnswers& prompts_;
  PassWatcher* watcher_ = nullptr;
  bool restIsLeft_ = false;  ///< all other blocks are found and left, without a question
  bool stopped_ = false;
  bool passwordWrong_ = false;
};

/// Keeps the first error report of a pass. What a refused change reports comes by the observer as well, with
/// more to it; any other report is a failure that nobody else hears of.
class FirstReport final : public errors::MessageSink {
 public:
  void show(const std::u16string& text, const std::optional<std::u16string>& title) override;
  const std::optional<std::u16string>& text() const { return text_; }
  void forget() { text_.reset(); }

 private:
  std::optional<std::u16string> text_;
};

}  // namespace pluvo::cli
