#pragma once

#include "errors/message_sink.h"
#include "forms/message_boxes.h"
#include "pass_watcher.h"

#include <optional>
#include <string>

namespace pluvo::cli {

/// Answers the message boxes of a pass: its question about a block is put to the person at the terminal.
class PassBoxes final : public forms::MessageBoxes {
 public:
  PassBoxes(const std::string& path, const PassWatcher& watcher, Interviewer* interviewer)
      : path_(path), watcher_(watcher), interviewer_(interviewer) {}

  forms::Answer show(const std::u16string& text, forms::Buttons buttons,
                     const std::optional<std::u16string>& title) override;

 private:
  const std::string& path_;
  const PassWatcher& watcher_;
  Interviewer* interviewer_;
};

/// Keeps the first error report of a pass. What a refused change reports comes by the observer as well, with
/// more to it; any other report is a failure that nobody else hears of.
class FirstReport final : public errors::MessageSink {
 public:
  void show(const std::u16string& text, const std::optional<std::u16string>& title) override;
  const std::optional<std::u16string>& text() const { return text_; }

 private:
  std::optional<std::u16string> text_;
};

}  // namespace pluvo::cli
