#pragma once

#include "forms/combo_box.h"
#include "mirror.h"

#include <cstddef>
#include <vector>

namespace pluvo::forms_win32 {

/// Shows the texts of the rows; their codes are not shown.
class ComboMirror final : public Mirror {
 public:
  ComboMirror(forms::ComboBox& box, Stage& stage, HWND parent);
  int leastWidth() const override { return look().px(50); }
  int heightFor(int width) const override;
  void place(const RECT& place) override;
  bool wants(WPARAM key) const override;
  void commanded(WORD notification) override;
  HBRUSH colored(HDC surface) override;
  std::optional<LRESULT> received(UINT message, WPARAM wparam, LPARAM lparam) override;
  /// Ends the edit; whether it stands. If not, the focus is here.
  bool commit();

 private:
  void refreshKind() override;
  bool isDropped() const { return send(CB_GETDROPPEDSTATE) != 0; }
  /// The row of the text, in capitals or not; CB_ERR.
  LRESULT rowOf(const std::u16string& text) const;
  void choose(std::size_t row);
  void unmarkUnlessFocused() const;
  void askForCommit() { PostMessageW(widget(), kCommit, 0, 0); }

  static constexpr UINT kChosen = WM_APP + 1;
  static constexpr UINT kCommit = WM_APP + 2;

  forms::ComboBox& box_;
  std::vector<forms::ComboBox::Row> rows_;
};

}  // namespace pluvo::forms_win32
