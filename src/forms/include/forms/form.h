#pragma once

#include "errors/fault.h"
#include "forms/check_box.h"
#include "forms/combo_box.h"
#include "forms/control.h"
#include "forms/list_box.h"
#include "forms/multi_page.h"
#include "forms/text_box.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pluvo::forms {

class Form;

/// Puts forms before the user: a toolkit's renderer, or a test's script.
class FormHost {
 public:
  virtual ~FormHost() = default;
  /// Shows the form and returns when it is hidden.
  virtual void runModal(Form& form) = 0;
  /// The form's Visible was set: it is to appear, without anybody waiting for it, or to go.
  virtual void visibleChanged(Form& form) = 0;
  /// The form is to be drawn at once.
  virtual void repaint(Form& form) = 0;
};

/// A window of controls. It owns no toolkit's widget; a host mirrors it.
class Form {
 public:
  Form(FormHost& host, std::u16string name, std::u16string caption)
      : host_(host), name_(std::move(name)), caption_(std::move(caption)) {}
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;
  /// A form that goes while it is shown is hidden first.
  virtual ~Form() { Hide(); }

  const std::u16string& Name() const { return name_; }
  const std::u16string& Caption() const { return caption_; }
  void Caption(std::u16string caption) {
    caption_ = std::move(caption);
    changed.raise();
  }

  bool Visible() const { return visible_; }
  /// Where the host throws, the form is hidden.
  void Visible(bool value);
  /// Shows the form and returns when it was hidden. Where the host throws, it is hidden.
  void ShowModal();
  void Hide() { Visible(false); }
  void Repaint() { host_.repaint(*this); }

  /// The user closes the window by other means than a button.
  void close() {
    Closed.raise();
    Hide();
  }
  Event<> Closed;

  /// The window came to the front.
  void activate() { Activated.raise(); }
  Event<> Activated;

  /// Whether the form is out of the way, so that the document behind it is seen: 1, else 0.
  int WindowState() const { return windowState_; }
  void WindowState(int state) {
    if (windowState_ == state) return;
    windowState_ = state;
    changed.raise();
  }

  /// A line below the controls that tells how things stand; none while it is empty.
  const std::u16string& StatusText() const { return statusText_; }
  void StatusText(std::u16string text) {
    if (statusText_ == text) return;
    statusText_ = std::move(text);
    changed.raise();
  }

  /// Where the keyboard goes; nowhere at first.
  Control* ActiveControl() const { return activeControl_; }
  void SetFocus(Control& control) {
    activeControl_ = &control;
    changed.raise();
  }

  /// The label that F1 presses, wherever the keyboard is; none at first.
  const Label* Help() const { return help_; }
  void Help(const Label& link) { help_ = &link; }

  /// Those that stand on the form itself, in the order in which they were added.
  const std::vector<Control*>& controls() const { return controls_; }
  /// Also one on a page. Nothing where there is none of that name.
  Control* control(std::u16string_view name) const;
  /// The control of that name and kind. Throws Fault kObjectNotSet where there is none.
  template <class Kind>
  Kind& get(std::u16string_view name) const {
    auto* found = dynamic_cast<Kind*>(control(name));
    if (found == nullptr) throw errors::objectNotSet();
    return *found;
  }

  /// For the renderer: caption, window state, status text or focus are to be shown anew.
  Event<> changed;

 protected:
  /// The control is a member of the derived form.
  void add(Control& control) { controls_.push_back(&control); }

 private:
  FormHost& host_;
  std::u16string name_;
  std::u16string caption_;
  std::u16string statusText_;
  bool visible_ = false;
  int windowState_ = 0;
  Control* activeControl_ = nullptr;
  const Label* help_ = nullptr;
  std::vector<Control*> controls_;
};

}  // namespace pluvo::forms
