#include "list_mirror.h"

#include "text.h"

#include <algorithm>

namespace pluvo::forms_win32 {

ListMirror::ListMirror(forms::ListBox& box, Stage& stage, HWND parent) : Mirror(box, stage), box_(box) {
  const DWORD kind = box.MultiSelect() ? LBS_EXTENDEDSEL : 0;
  mirrors(WC_LISTBOXW, kind | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_VSCROLL | WS_HSCROLL | WS_TABSTOP,
          WS_EX_CLIENTEDGE, parent);
}

void ListMirror::commanded(WORD notification) {
  if (notification == LBN_DBLCLK) PostMessageW(widget(), kOpened, 0, 0);
  if (notification != LBN_SELCHANGE) return;
  telling_ = true;
  userActions().does([this] {
    for (const bool value : {false, true}) {  // rows no longer selected come first
      for (std::size_t row = 0; row < std::min(rows_.size(), box_.ListCount()); ++row) {
        if (isShownSelected(row) == value && box_.Selected(row) != value) box_.select(row, value);
      }
    }
  });
  telling_ = false;
}

void ListMirror::open() {
  const LRESULT row = send(LB_GETCARETINDEX);
  if (row >= 0) userActions().decides([&] { box_.open(static_cast<std::size_t>(row)); });
}

std::optional<LRESULT> ListMirror::received(UINT message, WPARAM wparam, LPARAM /*lparam*/) {
  const bool enter = message == WM_KEYDOWN && wants(wparam);
  if (!enter && message != kOpened) return std::nullopt;
  open();
  return 0;
}

HBRUSH ListMirror::colored(HDC surface) {
  const COLORREF color = boxColor(box_);
  SetTextColor(surface, box_.Enabled() ? textColorOn(color) : GetSysColor(COLOR_GRAYTEXT));
  SetBkColor(surface, color);
  return look().brush(color);
}

void ListMirror::showRows() {
  const LRESULT top = send(LB_GETTOPINDEX);
  send(WM_SETREDRAW, FALSE);
  send(LB_RESETCONTENT);
  std::size_t longest = 0;
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    send(LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide(rows_[row])));
    if (rows_[row].size() > rows_[longest].size()) longest = row;
  }
  const int width = rows_.empty() ? 0 : look().size(rows_[longest], font(), 1 << 20, false).cx;
  const int extent = width + width / 8 + look().px(8);
  send(LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(extent));
  send(LB_SETTOPINDEX, static_cast<WPARAM>(top));
  send(WM_SETREDRAW, TRUE);
}

void ListMirror::refreshKind() {
  if (telling_) return;
  bool others = rows_.size() != box_.ListCount();
  for (std::size_t row = 0; !others && row < rows_.size(); ++row) others = rows_[row] != box_.List(row);
  if (others) {
    rows_.clear();
    for (std::size_t row = 0; row < box_.ListCount(); ++row) rows_.push_back(box_.List(row));
    showRows();
  }
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    if (isShownSelected(row) == box_.Selected(row)) continue;
    if (box_.MultiSelect()) {
      send(LB_SETSEL, box_.Selected(row) ? TRUE : FALSE, static_cast<LPARAM>(row));
    } else {
      send(LB_SETCURSEL, box_.Selected(row) ? row : static_cast<WPARAM>(-1));
    }
  }
}

}  // namespace pluvo::forms_win32
