#include "simple_mirrors.h"

#include "text.h"

#include <algorithm>

namespace pluvo::forms_win32 {

namespace {

constexpr int kButtonWidth = 75;
constexpr int kButtonHeight = 23;
constexpr int kButtonFrame = 14;

/// Enter, but not one held down, which may have brought the focus here.
bool isEnter(UINT message, WPARAM key, LPARAM data) {
  return message == WM_KEYDOWN && key == VK_RETURN && (data & (LPARAM{1} << 30)) == 0;
}

}  // namespace

LabelMirror::LabelMirror(forms::Label& label, Stage& stage, HWND parent)
    : Mirror(label, stage), label_(label) {
  mirrors(WC_STATICW, SS_LEFT | SS_NOPREFIX | SS_NOTIFY, 0, parent);
}

std::u16string LabelMirror::text() const {
  const std::u16string text = lines(label_.Caption());
  // Line ends before the text push it down in a place of fixed size; here its place is as large as it is.
  return text.substr(std::min(text.find_first_not_of(u"\r\n"), text.size()));
}

int LabelMirror::leastWidth() const { return look().widestWord(text(), font()); }

int LabelMirror::heightFor(int width) const {
  const std::u16string shown = text();
  return shown.empty() ? look().lineHeight(font()) : look().size(shown, font(), width, false).cy;
}

void LabelMirror::commanded(WORD notification) {
  if (notification == STN_CLICKED && label_.Click.isHandled())
    userActions().decides([this] { label_.press(); });
}

void LabelMirror::refreshKind() {
  const std::u16string shown = text();
  if (textOf(widget()) == shown) return;
  show(shown);
  asksForArrangement();
}

LinkMirror::LinkMirror(forms::Label& label, Stage& stage, HWND parent) : Mirror(label, stage), label_(label) {
  mirrors(WC_BUTTONW, BS_OWNERDRAW | WS_TABSTOP, 0, parent);
}

int LinkMirror::leastWidth() const {
  return look().widestWord(label_.Caption(), underlined()) + look().px(4);
}

int LinkMirror::heightFor(int width) const {
  return look().size(label_.Caption(), underlined(), width - look().px(4), false).cy + look().px(4);
}

bool LinkMirror::press() {
  userActions().decides([this] {
    if (userActions().admits(&label_)) label_.press();
  });
  return true;
}

void LinkMirror::commanded(WORD notification) {
  if (notification == BN_CLICKED) press();
}

void LinkMirror::draws(const DRAWITEMSTRUCT& item) {
  FillRect(item.hDC, &item.rcItem, GetSysColorBrush(COLOR_3DFACE));
  HGDIOBJ before = SelectObject(item.hDC, underlined());
  SetBkMode(item.hDC, TRANSPARENT);
  SetTextColor(item.hDC,
               label_.Enabled() ? linkColorOn(GetSysColor(COLOR_3DFACE)) : GetSysColor(COLOR_GRAYTEXT));
  RECT place = item.rcItem;
  InflateRect(&place, -look().px(2), -look().px(2));
  const std::u16string& text = label_.Caption();
  RECT drawn = place;
  const UINT format = DT_WORDBREAK | DT_NOPREFIX;
  DrawTextW(item.hDC, wide(text), static_cast<int>(text.size()), &drawn, format | DT_CALCRECT);
  DrawTextW(item.hDC, wide(text), static_cast<int>(text.size()), &place, format);
  SelectObject(item.hDC, before);
  if ((item.itemState & ODS_FOCUS) == 0) return;
  InflateRect(&drawn, look().px(2), look().px(2));
  SetTextColor(item.hDC, GetSysColor(COLOR_BTNTEXT));
  DrawFocusRect(item.hDC, &drawn);
}

std::optional<LRESULT> LinkMirror::received(UINT message, WPARAM wparam, LPARAM lparam) {
  if (isEnter(message, wparam, lparam)) {
    press();
    return 0;
  }
  if (message == WM_SETCURSOR) {
    SetCursor(LoadCursorW(nullptr, IDC_HAND));
    return TRUE;
  }
  // Two quick clicks are two presses, not a double click.
  if (message == WM_LBUTTONDBLCLK) return send(WM_LBUTTONDOWN, wparam);
  return std::nullopt;
}

void LinkMirror::refreshKind() { show(label_.Caption()); }

ButtonMirror::ButtonMirror(forms::CommandButton& button, Stage& stage, HWND parent)
    : Mirror(button, stage), button_(button) {
  mirrors(WC_BUTTONW, BS_PUSHBUTTON | BS_MULTILINE | WS_TABSTOP, 0, parent);
}

int ButtonMirror::leastWidth() const {
  return look().widestWord(button_.Caption(), font()) + look().px(kButtonFrame);
}

int ButtonMirror::width() const {
  constexpr int kAny = 10000;
  const int text = look().size(marked(button_.Caption()), font(), kAny, true).cx;
  return std::max(text + look().px(kButtonFrame + 6), look().px(kButtonWidth));
}

int ButtonMirror::heightFor(int width) const {
  int text = look().size(marked(button_.Caption()), font(), width - look().px(kButtonFrame), true).cy;
  // The system may break one line more than it makes room for in the middle.
  const int line = look().lineHeight(font());
  if (text >= 2 * line) text += line;
  return std::max(text + look().px(10), look().px(kButtonHeight));
}

bool ButtonMirror::press() {
  userActions().decides([this] {
    if (userActions().admits(&button_)) button_.press();
  });
  return true;
}

void ButtonMirror::commanded(WORD notification) {
  if (notification == BN_CLICKED) press();
}

std::optional<LRESULT> ButtonMirror::received(UINT message, WPARAM wparam, LPARAM lparam) {
  if (!isEnter(message, wparam, lparam)) return std::nullopt;
  press();
  return 0;
}

void ButtonMirror::refreshKind() {
  show(marked(button_.Caption()));
  const DWORD kind = button_.Default() ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON;
  if ((static_cast<DWORD>(GetWindowLongW(widget(), GWL_STYLE)) & BS_TYPEMASK) != kind)
    send(BM_SETSTYLE, kind | BS_MULTILINE, TRUE);
}

CheckBoxMirror::CheckBoxMirror(forms::CheckBox& box, Stage& stage, HWND parent)
    : Mirror(box, stage), box_(box) {
  mirrors(WC_BUTTONW, BS_AUTOCHECKBOX | BS_MULTILINE | WS_TABSTOP, 0, parent);
}

int CheckBoxMirror::leastWidth() const { return markWidth() + look().widestWord(box_.Caption(), font()); }

int CheckBoxMirror::heightFor(int width) const {
  const int text = look().size(marked(box_.Caption()), font(), width - markWidth(), true).cy;
  return std::max(text, look().px(15)) + look().px(2);
}

void CheckBoxMirror::commanded(WORD notification) {
  if (notification != BN_CLICKED) return;
  userActions().decides([this] { box_.tick(send(BM_GETCHECK) == BST_CHECKED); });
  refresh();
}

void CheckBoxMirror::refreshKind() {
  show(marked(box_.Caption()));
  send(BM_SETCHECK, box_.Value() ? BST_CHECKED : BST_UNCHECKED);
}

PictureMirror::PictureMirror(forms::Picture& picture, Stage& stage, HWND parent)
    : Mirror(picture, stage), picture_(picture) {
  mirrors(WC_STATICW, SS_OWNERDRAW | SS_NOTIFY, 0, parent);
}

void PictureMirror::draws(const DRAWITEMSTRUCT& item) {
  FillRect(item.hDC, &item.rcItem, GetSysColorBrush(COLOR_3DFACE));
  RECT place = item.rcItem;
  const int side = std::min(place.right - place.left, place.bottom - place.top);
  HFONT font = look().symbolFont(side * 3 / 4);
  if (font == nullptr) return;
  HGDIOBJ before = SelectObject(item.hDC, font);
  SetBkMode(item.hDC, TRANSPARENT);
  SetTextColor(item.hDC, GetSysColor(COLOR_BTNTEXT));
  const std::u16string& symbol = picture_.Symbol();
  DrawTextW(item.hDC, wide(symbol), static_cast<int>(symbol.size()), &place,
            DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
  SelectObject(item.hDC, before);
}

}  // namespace pluvo::forms_win32
