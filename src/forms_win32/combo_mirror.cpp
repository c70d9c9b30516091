#include "combo_mirror.h"

#include "text.h"

#include <algorithm>

namespace pluvo::forms_win32 {

namespace {

constexpr int kMostRowsShown = 12;

}  // namespace

ComboMirror::ComboMirror(forms::ComboBox& box, Stage& stage, HWND parent) : Mirror(box, stage), box_(box) {
  const DWORD kind = box.TypingAllowed() ? CBS_DROPDOWN : CBS_DROPDOWNLIST;
  mirrors(WC_COMBOBOXW, kind | CBS_AUTOHSCROLL | WS_VSCROLL | WS_TABSTOP, 0, parent);
}

int ComboMirror::heightFor(int /*width*/) const {
  // The system knows best, and keeps to it.
  RECT now = {};
  GetWindowRect(widget(), &now);
  return now.bottom - now.top;
}

void ComboMirror::place(const RECT& place) {
  Mirror::place(place);
  // The window's height is that with the list; the box itself has the height it needs.
  const int rows = std::clamp(static_cast<int>(rows_.size()), 1, kMostRowsShown);
  const int list = static_cast<int>(send(CB_GETITEMHEIGHT)) * rows + look().px(4);
  SetWindowPos(widget(), nullptr, 0, 0, place.right - place.left, heightFor(0) + list,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  unmarkUnlessFocused();
}

/// The system marks the text of a list that is filled, chosen from or resized, wherever the focus is.
void ComboMirror::unmarkUnlessFocused() const {
  HWND focus = GetFocus();
  if (focus == nullptr || (focus != widget() && IsChild(widget(), focus) == 0))
    send(CB_SETEDITSEL, 0, MAKELPARAM(-1, 0));
}

bool ComboMirror::wants(WPARAM key) const { return (key == VK_RETURN || key == VK_ESCAPE) && isDropped(); }

void ComboMirror::commanded(WORD notification) {
  switch (notification) {
    case CBN_EDITCHANGE:
      userActions().begun([this] { return commit(); });
      userActions().does([this] { box_.type(textOf(widget())); });
      return;
    case CBN_SELENDOK:
    case CBN_SELCHANGE: {
      // In a list that is open the choice is made when it closes. Its consequences wait until the widget is
      // done with it.
      if (notification == CBN_SELCHANGE && isDropped()) return;
      const LRESULT row = send(CB_GETCURSEL);
      if (row >= 0) PostMessageW(widget(), kChosen, static_cast<WPARAM>(row), 0);
      return;
    }
    case CBN_KILLFOCUS:
      send(CB_SETEDITSEL, 0, MAKELPARAM(-1, 0));
      askForCommit();
      return;
    default:
      return;
  }
}

std::optional<LRESULT> ComboMirror::received(UINT message, WPARAM wparam, LPARAM /*lparam*/) {
  switch (message) {
    case kChosen:
      choose(wparam);
      return 0;
    case kCommit:
      userActions().endEdit();
      return 0;
    default:
      return std::nullopt;
  }
}

void ComboMirror::choose(std::size_t row) {
  // A choice may be told of twice.
  if (row >= box_.ListCount() || box_.List(row, 0) == box_.Text()) return;
  userActions().begun({});
  userActions().does([&] { box_.choose(row); });
  refresh();
}

LRESULT ComboMirror::rowOf(const std::u16string& text) const {
  return send(CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(wide(text)));
}

bool ComboMirror::commit() {
  bool stands = true;
  userActions().does([&] {
    // "insert" is the row "Insert".
    const LRESULT row = rowOf(box_.Text());
    if (row >= 0) box_.type(std::u16string(box_.List(static_cast<std::size_t>(row), 0)));
    stands = box_.commit();
  });
  if (widget() == nullptr) return stands;
  refresh();
  if (!stands) {
    SetFocus(widget());
    send(CB_SETEDITSEL, 0, MAKELPARAM(0, -1));
  }
  return stands;
}

HBRUSH ComboMirror::colored(HDC surface) {
  const COLORREF color = boxColor(box_);
  SetTextColor(surface, box_.Enabled() ? textColorOn(color) : GetSysColor(COLOR_GRAYTEXT));
  SetBkColor(surface, color);
  return look().brush(color);
}

void ComboMirror::refreshKind() {
  if (rows_ != box_.rows()) {
    rows_ = box_.rows();
    send(CB_RESETCONTENT);
    for (const auto& row : rows_) send(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide(row.text)));
    asksForArrangement();  // the list is as high as its rows
  }
  const auto shown = std::ranges::find(rows_, box_.Text(), &forms::ComboBox::Row::text);
  const LRESULT row = shown == rows_.end() ? CB_ERR : shown - rows_.begin();
  if (!isDropped() && send(CB_GETCURSEL) != row && (row >= 0 || textOf(widget()) != box_.Text()))
    send(CB_SETCURSEL, static_cast<WPARAM>(row));
  if (box_.TypingAllowed()) show(box_.Text());
  unmarkUnlessFocused();
}

}  // namespace pluvo::forms_win32
