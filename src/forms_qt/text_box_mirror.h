#pragma once

#include "forms/text_box.h"
#include "mirror.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>

namespace pluvo::forms_qt {

/// Text boxes of one line and of several share this: keys and mouse buttons become the control's events.
class TextBoxMirror : public Mirror {
 public:
  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  TextBoxMirror(forms::TextBox& box, UserActions& userActions) : Mirror(box, userActions), box_(box) {}
  void dress() override;
  /// The ordinary paste of the box.
  virtual void paste() = 0;
  /// Whether the box took the key for itself before it got to the widget.
  virtual bool takes(const QKeyEvent& key) = 0;

  forms::TextBox& box_;

 private:
  bool pressed(QKeyEvent& key);
  void released(const QKeyEvent& key);

  /// Ctrl was down when the V key was pressed; it may come up first.
  bool pastes_ = false;
};

class LineMirror final : public TextBoxMirror {
 public:
  LineMirror(forms::TextBox& box, UserActions& userActions, QWidget& parent);

 private:
  void refreshKind() override;
  void paste() override { shown_->paste(); }
  bool takes(const QKeyEvent& /*key*/) override { return false; }

  QLineEdit* shown_;
};

class LinesMirror final : public TextBoxMirror {
 public:
  LinesMirror(forms::TextBox& box, UserActions& userActions, QWidget& parent);
  bool grows() const override { return true; }

 private:
  void refreshKind() override;
  void paste() override { shown_->paste(); }
  bool takes(const QKeyEvent& key) override;
  /// The widget's text, as the control has it.
  std::u16string held() const;

  QPlainTextEdit* shown_;
};

}  // namespace pluvo::forms_qt
