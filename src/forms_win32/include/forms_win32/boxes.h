#pragma once

#include "forms/input_boxes.h"
#include "forms/message_boxes.h"
#include "forms_win32/forms.h"

#include <windows.h>

#include <functional>
#include <optional>
#include <string>

namespace pluvo::forms_win32 {

/// Message boxes as the system has them. While one is shown no other window of the thread takes anything.
class Win32MessageBoxes final : public forms::MessageBoxes {
 public:
  /// The title is that of boxes without one of their own.
  explicit Win32MessageBoxes(std::u16string title) : title_(std::move(title)) {}

  forms::BoxAnswer show(const std::u16string& text, forms::Buttons buttons,
                        const std::optional<std::u16string>& title) override;

  /// The boxes that are up go unanswered, as if they were closed.
  static void closeAll();

  /// The window a box stands above where none of the thread's windows is active.
  std::function<HWND()> owner;

 private:
  std::u16string title_;
};

/// Input boxes, as forms of their own.
class Win32InputBoxes final : public forms::InputBoxes {
 public:
  explicit Win32InputBoxes(Win32Forms& host) : host_(host) {}

  std::u16string ask(const std::u16string& prompt, const std::u16string& title) override;

 private:
  Win32Forms& host_;
};

}  // namespace pluvo::forms_win32
