#include "text_box_mirror.h"

#include "text.h"

#include <windowsx.h>

namespace pluvo::forms_win32 {

namespace {

constexpr UINT kMouseReleased = WM_APP + 1;
constexpr wchar_t kSelectAll = L'\x01';  // Ctrl+A

bool isDown(int key) { return (static_cast<unsigned short>(GetKeyState(key)) & 0x8000U) != 0; }

std::int16_t shiftState() {
  int state = 0;
  if (isDown(VK_SHIFT)) state |= forms::kShift;
  if (isDown(VK_CONTROL)) state |= forms::kControl;
  if (isDown(VK_MENU)) state |= forms::kAlt;
  return static_cast<std::int16_t>(state);
}

std::int16_t buttonOf(UINT message) {
  switch (message) {
    case WM_LBUTTONUP:
      return forms::kLeft;
    case WM_RBUTTONUP:
      return forms::kRight;
    case WM_MBUTTONUP:
      return forms::kMiddle;
    default:
      return 0;
  }
}

}  // namespace

TextBoxMirror::TextBoxMirror(forms::TextBox& box, Stage& stage, HWND parent) : Mirror(box, stage), box_(box) {
  const DWORD kind =
      box.MultiLine() ? ES_MULTILINE | ES_WANTRETURN | ES_AUTOVSCROLL | WS_VSCROLL : ES_AUTOHSCROLL;
  mirrors(WC_EDITW, kind | WS_TABSTOP, WS_EX_CLIENTEDGE, parent);
  send(EM_SETLIMITTEXT, 0);
}

std::u16string TextBoxMirror::lines(const std::u16string& text) { return forms_win32::lines(text); }

int TextBoxMirror::heightOf(int count) const { return look().lineHeight(font()) * count + look().px(8); }

int TextBoxMirror::heightFor(int /*width*/) const {
  return heightOf(!box_.MultiLine() ? 1 : box_.ReadOnly() ? 6 : 3);
}

int TextBoxMirror::leastHeightFor(int /*width*/) const {
  return heightOf(!box_.MultiLine() ? 1 : box_.ReadOnly() ? 3 : 2);
}

bool TextBoxMirror::wants(WPARAM key) const {
  const std::int16_t shift = shiftState();
  return key == VK_RETURN && box_.MultiLine() && !box_.ReadOnly() &&
         (shift == forms::kControl || shift == forms::kShift);
}

void TextBoxMirror::commanded(WORD notification) {
  if (notification != EN_CHANGE || telling_) return;
  userActions().does([this] { box_.type(textOf(widget())); });
}

HBRUSH TextBoxMirror::colored(HDC surface) {
  const COLORREF color = boxColor(box_);
  const bool faded = box_.BackStyle() == forms::BackStyle::transparent;
  SetTextColor(surface, !box_.Enabled() ? GetSysColor(COLOR_GRAYTEXT)
                        : faded         ? fadedTextColorOn(color)
                                        : textColorOn(color));
  SetBkColor(surface, color);
  return look().brush(color);
}

std::optional<LRESULT> TextBoxMirror::received(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_KEYDOWN:
      if (wparam == forms::kVKey && shiftState() == forms::kControl) pastes_ = true;
      return std::nullopt;
    case WM_CHAR:
      return typed(static_cast<char16_t>(wparam));
    case WM_KEYUP:
      keyUp(wparam);
      return std::nullopt;
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
    case WM_MBUTTONUP: {
      RECT inside = {};
      GetClientRect(widget(), &inside);
      // The box is to be done with the button first.
      if (PtInRect(&inside, {GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)}) != 0)
        PostMessageW(widget(), kMouseReleased, static_cast<WPARAM>(buttonOf(message)), 0);
      return std::nullopt;
    }
    case WM_CONTEXTMENU:
      // The right button means something else to this box; the keyboard's menu key does not.
      if (lparam != -1 && box_.MouseUp.isHandled()) return 0;
      return std::nullopt;
    case kMouseReleased:
      userActions().does([&] { box_.releaseMouse(static_cast<std::int16_t>(wparam)); });
      return 0;
    default:
      return std::nullopt;
  }
}

std::optional<LRESULT> TextBoxMirror::typed(char16_t character) {
  if (character == kSelectAll) {
    send(EM_SETSEL, 0, -1);
    return 0;
  }
  userActions().does([&] { box_.pressKey(static_cast<std::int16_t>(character)); });
  // The key may have closed the form, and is then no longer for it.
  if (!userActions().listening()) return 0;
  const bool enter = character == u'\r' || character == u'\n';
  if (enter && !box_.MultiLine()) return 0;  // which the box would answer with a noise
  return std::nullopt;
}

void TextBoxMirror::keyUp(WPARAM key) {
  // Ctrl may come up before the V does.
  const bool endsPaste = pastes_ && key == forms::kVKey;
  if (endsPaste) pastes_ = false;
  const std::int16_t shift = endsPaste ? std::int16_t{forms::kControl} : shiftState();
  userActions().does([&] { box_.releaseKey(static_cast<std::int16_t>(key), shift); });
}

void TextBoxMirror::refreshKind() {
  send(EM_SETREADONLY, box_.ReadOnly() ? TRUE : FALSE);
  const WPARAM hides = box_.PasswordChar().empty() ? 0 : box_.PasswordChar().front();
  if (static_cast<WPARAM>(send(EM_GETPASSWORDCHAR)) != hides) send(EM_SETPASSWORDCHAR, hides);
  const std::u16string text = shown();
  if (textOf(widget()) == text) return;
  telling_ = true;
  if (box_.MultiLine() && !box_.ReadOnly()) {
    // So that the user can undo it.
    send(EM_SETSEL, 0, -1);
    send(EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(wide(text)));
  } else {
    SetWindowTextW(widget(), wide(text));
    if (!box_.ReadOnly()) send(EM_SETSEL, text.size(), static_cast<LPARAM>(text.size()));
  }
  telling_ = false;
  if (box_.ReadOnly() && userActions().listening())
    PostMessageW(GetParent(widget()), kReveal, 0, reinterpret_cast<LPARAM>(widget()));
}

}  // namespace pluvo::forms_win32
