#pragma once

#include "forms/input_boxes.h"
#include "forms/message_boxes.h"

#include <QWidget>
#include <functional>
#include <optional>
#include <string>

namespace pluvo::forms_qt {

/// The questions of both kinds of boxes to the program.
struct BoxHooks {
  /// The window a box belongs to; without it, or where it says nothing, the one that is active.
  std::function<QWidget*()> owner;
  /// Called with a box that is about to be shown and has its size; may move it, away from the text it asks
  /// about.
  std::function<void(QWidget& box)> placing;
};

/// Message boxes as Qt windows. The text is shown letter for letter and can be marked and copied.
class QtMessageBoxes final : public forms::MessageBoxes {
 public:
  explicit QtMessageBoxes(BoxHooks hooks = {}) : hooks_(std::move(hooks)) {}

  /// Runs a nested event loop, in which no other window takes anything.
  forms::BoxAnswer show(const std::u16string& text, forms::Buttons buttons,
                        const std::optional<std::u16string>& title) override;

 private:
  BoxHooks hooks_;
};

/// Input boxes as Qt windows.
class QtInputBoxes final : public forms::InputBoxes {
 public:
  explicit QtInputBoxes(BoxHooks hooks = {}) : hooks_(std::move(hooks)) {}

  std::u16string ask(const std::u16string& prompt, const std::u16string& title) override;

 private:
  BoxHooks hooks_;
};

}  // namespace pluvo::forms_qt
