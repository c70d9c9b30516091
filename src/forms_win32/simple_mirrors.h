#pragma once

#include "forms/check_box.h"
#include "mirror.h"

namespace pluvo::forms_win32 {

class LabelMirror final : public Mirror {
 public:
  LabelMirror(forms::Label& label, Stage& stage, HWND parent);
  int leastWidth() const override;
  int heightFor(int width) const override;
  void commanded(WORD notification) override;

 private:
  void refreshKind() override;
  std::u16string text() const;

  forms::Label& label_;
};

/// A label that is a link: underlined, reached by the keyboard, pressed by Space and Enter too.
class LinkMirror final : public Mirror {
 public:
  LinkMirror(forms::Label& label, Stage& stage, HWND parent);
  int leastWidth() const override;
  int heightFor(int width) const override;
  bool press() override;
  bool wants(WPARAM key) const override { return key == VK_RETURN; }
  void commanded(WORD notification) override;
  void draws(const DRAWITEMSTRUCT& item) override;
  std::optional<LRESULT> received(UINT message, WPARAM wparam, LPARAM lparam) override;

 private:
  void refreshKind() override;
  HFONT underlined() const { return look().font(label_.Font(), true); }

  forms::Label& label_;
};

class ButtonMirror final : public Mirror {
 public:
  ButtonMirror(forms::CommandButton& button, Stage& stage, HWND parent);
  int leastWidth() const override;
  int heightFor(int width) const override;
  bool press() override;
  bool wants(WPARAM key) const override { return key == VK_RETURN; }
  void commanded(WORD notification) override;
  std::optional<LRESULT> received(UINT message, WPARAM wparam, LPARAM lparam) override;
  /// As wide as it would like to be, on one line.
  int width() const;

 private:
  void refreshKind() override;

  forms::CommandButton& button_;
};

class CheckBoxMirror final : public Mirror {
 public:
  CheckBoxMirror(forms::CheckBox& box, Stage& stage, HWND parent);
  int leastWidth() const override;
  int heightFor(int width) const override;
  void commanded(WORD notification) override;

 private:
  void refreshKind() override;
  int markWidth() const { return look().px(20); }

  forms::CheckBox& box_;
};

class PictureMirror final : public Mirror {
 public:
  PictureMirror(forms::Picture& picture, Stage& stage, HWND parent);
  int leastWidth() const override { return look().px(24); }
  int heightFor(int /*width*/) const override { return look().px(24); }
  void draws(const DRAWITEMSTRUCT& item) override;

 private:
  void refreshKind() override {}

  forms::Picture& picture_;
};

}  // namespace pluvo::forms_win32
