#pragma once

#include "forms/check_box.h"
#include "mirror.h"
#include "symbol.h"
#include "wrapping.h"

#include <QLabel>

namespace pluvo::forms_qt {

class LabelMirror final : public Mirror {
 public:
  LabelMirror(forms::Label& label, UserActions& userActions, QWidget& parent);
  bool eventFilter(QObject* watched, QEvent* event) override;
  bool press() override;
  QString keyText() const override;
  QLabel& label() const { return *shown_; }

 private:
  void refreshKind() override;
  QString text() const;

  forms::Label& label_;
  QLabel* shown_;
};

class ButtonMirror final : public Mirror {
 public:
  ButtonMirror(forms::CommandButton& button, UserActions& userActions, QWidget& parent);
  bool eventFilter(QObject* watched, QEvent* event) override;
  bool press() override;
  QString keyText() const override;

 private:
  void refreshKind() override;

  forms::CommandButton& button_;
  Wrapping<QPushButton>* shown_;
};

class CheckBoxMirror final : public Mirror {
 public:
  CheckBoxMirror(forms::CheckBox& box, UserActions& userActions, QWidget& parent);
  QString keyText() const override;

 private:
  void refreshKind() override;

  forms::CheckBox& box_;
  Wrapping<QCheckBox>* shown_;
};

class PictureMirror final : public Mirror {
 public:
  PictureMirror(forms::Picture& picture, UserActions& userActions, QWidget& parent);

 private:
  void refreshKind() override {}
};

}  // namespace pluvo::forms_qt
