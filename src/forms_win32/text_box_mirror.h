#pragma once

#include "forms/text_box.h"
#include "mirror.h"

namespace pluvo::forms_win32 {

class TextBoxMirror final : public Mirror {
 public:
  TextBoxMirror(forms::TextBox& box, Stage& stage, HWND parent);
  bool grows() const override { return box_.MultiLine(); }
  int leastWidth() const override { return look().px(40); }
  int heightFor(int width) const override;
  int leastHeightFor(int width) const override;
  bool wants(WPARAM key) const override;
  void commanded(WORD notification) override;
  HBRUSH colored(HDC surface) override;
  std::optional<LRESULT> received(UINT message, WPARAM wparam, LPARAM lparam) override;

 private:
  void refreshKind() override;
  std::u16string shown() const { return box_.MultiLine() ? lines(box_.Text()) : box_.Text(); }
  static std::u16string lines(const std::u16string& text);
  int heightOf(int lines) const;
  std::optional<LRESULT> typed(char16_t character);
  void keyUp(WPARAM key);

  forms::TextBox& box_;
  /// The widget's text is being set.
  bool telling_ = false;
  /// Ctrl was down when the V key was pressed; it may come up first.
  bool pastes_ = false;
};

}  // namespace pluvo::forms_win32
