#pragma once

#include "base/secret_text.h"
#include "forms/control.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace pluvo::forms {

/// The bits of a shift state.
enum Shift : std::int16_t { kShift = 1, kControl = 2, kAlt = 4 };
enum MouseButton : std::int16_t { kLeft = 1, kRight = 2, kMiddle = 4 };
/// Keys by their codes; letters have those of their capitals.
enum Key : std::int16_t { kEnterKey = 13, kVKey = 86 };

class TextBox final : public Control {
 public:
  explicit TextBox(std::u16string name) : Control(ControlKind::textBox, std::move(name)) {}
  TextBox(const TextBox&) = delete;
  TextBox& operator=(const TextBox&) = delete;
  ~TextBox() override {
    if (!passwordChar_.empty()) base::wipe(text_);
  }

  const std::u16string& Text() const { return text_; }
  /// Raises Change where the text is another, as the user's typing does.
  void Text(std::u16string text) {
    if (text_ == text) return;
    // A password leaves nothing in memory, neither the one before nor the one given.
    const bool isSecret = !passwordChar_.empty();
    if (isSecret) base::wipe(text_);
    text_.swap(text);
    if (isSecret) base::wipe(text);
    noImage_.reset();
    if (isSecret && !text_.empty()) noImage_.emplace();
    changed.raise();
    Change.raise();
  }
  /// The character shown for every one typed; empty: the one typed.
  const std::u16string& PasswordChar() const { return passwordChar_; }
  void PasswordChar(std::u16string character) { set(passwordChar_, std::move(character)); }
  bool MultiLine() const { return multiLine_; }
  void MultiLine(bool value) { set(multiLine_, value); }
  /// Text can be marked and copied, not typed.
  bool ReadOnly() const { return readOnly_; }
  void ReadOnly(bool value) { set(readOnly_, value); }

  /// The user made this the text, by typing, pasting or cutting. A new line is CR LF.
  void type(std::u16string text) {
    if (inReach() && !readOnly_) Text(std::move(text));
  }
  /// The user presses a key that makes this character; 13 is Enter. The renderer, which owns the caret, sets
  /// the text where the key changes it.
  void pressKey(std::int16_t character) const {
    if (inReach()) KeyPress.raise(character);
  }
  /// The user lets a key go. The box has dealt with the key before.
  void releaseKey(std::int16_t code, std::int16_t shift) const {
    if (inReach()) KeyUp.raise(code, shift);
  }
  /// The user lets a mouse button go over the box.
  void releaseMouse(std::int16_t button) const {
    if (inReach()) MouseUp.raise(button);
  }

  Event<> Change;
  Event<std::int16_t> KeyPress;
  Event<std::int16_t, std::int16_t> KeyUp;
  Event<std::int16_t> MouseUp;

 private:
  std::u16string text_;
  std::u16string passwordChar_;
  std::optional<base::NoMemoryImage> noImage_;
  bool multiLine_ = false;
  bool readOnly_ = false;
};

}  // namespace pluvo::forms
