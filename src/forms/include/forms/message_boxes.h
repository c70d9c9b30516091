#pragma once

#include "errors/message_sink.h"

#include <optional>
#include <string>

namespace pluvo::forms {

enum class Buttons { ok, yesNo, yesNoCancel };
enum class BoxAnswer { ok, yes, no, cancel };

/// The answer that counts when a box is closed without one.
inline BoxAnswer closedAnswer(Buttons buttons) {
  if (buttons == Buttons::ok) return BoxAnswer::ok;
  return buttons == Buttons::yesNo ? BoxAnswer::no : BoxAnswer::cancel;
}

/// Boxes with a text and a few buttons, in which the user must answer before anything else.
class MessageBoxes {
 public:
  virtual ~MessageBoxes() = default;
  /// Without a title the host's own shows. A box that is closed without a button answers as its last button.
  virtual BoxAnswer show(const std::u16string& text, Buttons buttons,
                         const std::optional<std::u16string>& title) = 0;
};

/// Shows error reports as message boxes.
class ReportBoxes final : public errors::MessageSink {
 public:
  explicit ReportBoxes(MessageBoxes& boxes) : boxes_(boxes) {}
  void show(const std::u16string& text, const std::optional<std::u16string>& title) override {
    boxes_.show(text, Buttons::ok, title);
  }

 private:
  MessageBoxes& boxes_;
};

}  // namespace pluvo::forms
