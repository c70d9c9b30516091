#pragma once

#include "forms/list_box.h"
#include "mirror.h"

#include <string>
#include <vector>

namespace pluvo::forms_win32 {

class ListMirror final : public Mirror {
 public:
  ListMirror(forms::ListBox& box, Stage& stage, HWND parent);
  bool grows() const override { return true; }
  int leastWidth() const override { return look().px(80); }
  int heightFor(int /*width*/) const override { return heightOf(6); }
  int leastHeightFor(int /*width*/) const override { return heightOf(3); }
  bool wants(WPARAM key) const override { return key == VK_RETURN && box_.DblClick.isHandled(); }
  void commanded(WORD notification) override;
  HBRUSH colored(HDC surface) override;
  std::optional<LRESULT> received(UINT message, WPARAM wparam, LPARAM lparam) override;

 private:
  void refreshKind() override;
  int heightOf(int rows) const { return look().lineHeight(font()) * rows + look().px(6); }
  bool isShownSelected(std::size_t row) const { return send(LB_GETSEL, row) > 0; }
  void showRows();
  void open();

  static constexpr UINT kOpened = WM_APP + 1;

  forms::ListBox& box_;
  std::vector<std::u16string> rows_;
  /// The box is being told of the user's selection, which the widget shows already.
  bool telling_ = false;
};

}  // namespace pluvo::forms_win32
