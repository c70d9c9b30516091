#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

namespace pluvo::forms {

/// Raised to one handler; nothing happens where there is none.
template <class... Arguments>
class Event {
 public:
  void handledBy(std::function<void(Arguments...)> handler) { handler_ = std::move(handler); }
  void raise(Arguments... arguments) const {
    if (handler_) handler_(arguments...);
  }

 private:
  std::function<void(Arguments...)> handler_;
};

enum class ControlKind { label, commandButton, textBox };

/// One control of a form: plain values that handlers read and write, and that a renderer mirrors. The user's
/// doings arrive as calls from the renderer, or from a test.
class Control {
 public:
  Control(ControlKind kind, std::u16string name, std::u16string caption = {})
      : kind_(kind), name_(std::move(name)), caption_(std::move(caption)) {}
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;
  virtual ~Control() = default;

  ControlKind kind() const { return kind_; }
  const std::u16string& Name() const { return name_; }

  /// "&" stands before the letter that presses the control.
  const std::u16string& Caption() const { return caption_; }
  void Caption(std::u16string caption) { set(caption_, std::move(caption)); }
  bool Enabled() const { return enabled_; }
  void Enabled(bool value) { set(enabled_, value); }
  bool Visible() const { return visible_; }
  void Visible(bool value) { set(visible_, value); }
  /// Shown while the pointer rests on the control.
  const std::u16string& ControlTipText() const { return tip_; }
  void ControlTipText(std::u16string tip) { set(tip_, std::move(tip)); }

  /// For the renderer: something about the control is to be shown anew.
  Event<> changed;

 protected:
  template <class Value>
  void set(Value& field, Value value) {
    if (field == value) return;
    field = std::move(value);
    changed.raise();
  }

 private:
  ControlKind kind_;
  std::u16string name_;
  std::u16string caption_;
  std::u16string tip_;
  bool enabled_ = true;
  bool visible_ = true;
};

class Label final : public Control {
 public:
  explicit Label(std::u16string name, std::u16string caption = {})
      : Control(ControlKind::label, std::move(name), std::move(caption)) {}
};

class CommandButton final : public Control {
 public:
  explicit CommandButton(std::u16string name, std::u16string caption = {})
      : Control(ControlKind::commandButton, std::move(name), std::move(caption)) {}

  /// The user presses the button; one that is off or hidden cannot be pressed.
  void press() const {
    if (Enabled() && Visible()) Click.raise();
  }
  Event<> Click;
};

class TextBox final : public Control {
 public:
  explicit TextBox(std::u16string name) : Control(ControlKind::textBox, std::move(name)) {}

  const std::u16string& Text() const { return text_; }
  void Text(std::u16string text) { set(text_, std::move(text)); }
  /// What is shown in the place of every character typed; empty: the character itself.
  const std::u16string& PasswordChar() const { return passwordChar_; }
  void PasswordChar(std::u16string character) { set(passwordChar_, std::move(character)); }

  /// The user presses a key that makes this character; 13 is Enter. The renderer, which owns the caret, sets
  /// the text where the key changes it.
  void pressKey(std::int16_t character) const { KeyPress.raise(character); }
  Event<std::int16_t> KeyPress;

 private:
  std::u16string text_;
  std::u16string passwordChar_;
};

}  // namespace pluvo::forms
