#pragma once

#include "base/utf.h"
#include "forms/form.h"
#include "forms_win32/boxes.h"
#include "forms_win32/forms.h"
#include "forms_win32/machine.h"
#include "mirror.h"
#include "text.h"

#include <commctrl.h>
#include <windows.h>

#include <deque>
#include <functional>
#include <string>
#include <utility>

namespace pluvo::forms {

/// What there must be before a user is: windows at the screen's own resolution, as Word's are.
struct Toolkit {
  Toolkit(int, char**) { SetProcessDPIAware(); }
};

/// By window messages; see forms_shown/shown_form.h.
class User {
 public:
  /// Faults that nobody reported are shown in these boxes.
  explicit User(MessageBoxes& faults) : host(faults) {}
  User() : User(boxes) {}

  static constexpr int kEnter = VK_RETURN;
  static constexpr int kTab = VK_TAB;
  static constexpr int kControlKey = VK_CONTROL;
  static constexpr int kEscape = VK_ESCAPE;
  static constexpr int kPageUp = VK_PRIOR;
  static constexpr int kPageDown = VK_NEXT;

  HWND widget(const Control& control) const { return host.widgetOf(*form, control.Name()); }
  HWND window() const { return host.windowOf(*form); }
  static LRESULT send(HWND to, UINT message, WPARAM wparam = 0, LPARAM lparam = 0) {
    return SendMessageW(to, message, wparam, lparam);
  }
  void post(HWND to, UINT message, WPARAM wparam = 0, LPARAM lparam = 0) {
    if (to != nullptr) PostMessageW(to, message, wparam, lparam);
    settle();
  }
  /// What the parent is told of a widget's doing.
  void notify(HWND from, WORD code) {
    send(GetParent(from), WM_COMMAND, MAKEWPARAM(0, code), reinterpret_cast<LPARAM>(from));
    settle();
  }

  void open() {
    form->Visible(true);
    settle();
  }
  void focus(const Control& control) {
    SetFocus(widget(control));
    settle();
  }
  std::string focused() {
    const forms_win32::Mirror* mirror = forms_win32::mirrorOf(GetFocus());
    if (mirror == nullptr) mirror = forms_win32::mirrorOf(GetParent(GetFocus()));
    return mirror == nullptr ? "" : base::utf8(mirror->control().Name());
  }
  void type(const std::u16string& text) {
    for (const char16_t letter : text) post(GetFocus(), WM_CHAR, letter, 1);
  }
  void markAll() { send(GetFocus(), EM_SETSEL, 0, -1); }
  void keyDown(int key, int shift) {
    hold(shift);
    if (shift == kAlt) {
      post(GetFocus(), WM_SYSCHAR, static_cast<WPARAM>(key) + ('a' - 'A'), 1 << 29);
    } else {
      post(GetFocus(), WM_KEYDOWN, static_cast<WPARAM>(key), 1);
    }
    hold(0);
  }
  void keyUp(int key, int shift) {
    hold(shift);
    post(GetFocus(), WM_KEYUP, static_cast<WPARAM>(key), 1);
    hold(0);
  }
  void key(int key, int shift = 0) {
    keyDown(key, shift);
    keyUp(key, shift);
  }
  void click(const Control& control, MouseButton button = kLeft) {
    HWND on = widget(control);
    // The system keeps the mouse from disabled controls.
    if (IsWindowEnabled(GetAncestor(on, GA_ROOT)) == 0 || IsWindowEnabled(on) == 0) return;
    const bool left = button == kLeft;
    post(on, left ? WM_LBUTTONDOWN : WM_RBUTTONDOWN, 0, MAKELPARAM(3, 3));
    post(on, left ? WM_LBUTTONUP : WM_RBUTTONUP, 0, MAKELPARAM(3, 3));
  }
  void clickRow(const ListBox& list, int row, int shift = 0) {
    const WPARAM held = ((shift & kShift) != 0 ? MK_SHIFT : 0U) | ((shift & kControl) != 0 ? MK_CONTROL : 0U);
    post(widget(list), WM_LBUTTONDOWN, MK_LBUTTON | held, place(list, row));
    post(widget(list), WM_LBUTTONUP, held, place(list, row));
  }
  void doubleClickRow(const ListBox& list, int row) {
    clickRow(list, row);
    post(widget(list), WM_LBUTTONDBLCLK, MK_LBUTTON, place(list, row));
    post(widget(list), WM_LBUTTONUP, 0, place(list, row));
  }
  void choose(const ComboBox& list, int row) {
    SetFocus(widget(list));
    send(widget(list), CB_SETCURSEL, static_cast<WPARAM>(row));
    notify(widget(list), CBN_SELENDOK);
  }
  void turnTo(const MultiPage& pages, int page) {
    send(widget(pages), TCM_SETCURFOCUS, static_cast<WPARAM>(page));
    settle();
  }
  void closeWindow() { post(window(), WM_CLOSE); }

  std::string seen(const Control& control) {
    HWND shown = widget(control);
    if (IsWindowVisible(shown) == 0) return "-";
    return (IsWindowEnabled(shown) != 0 ? "" : "off: ") + textOf(shown, control.kind());
  }
  std::u16string tip(const Control& control) {
    HWND tips = FindWindowExW(nullptr, nullptr, TOOLTIPS_CLASSW, nullptr);
    while (tips != nullptr && GetWindow(tips, GW_OWNER) != window())
      tips = FindWindowExW(nullptr, tips, TOOLTIPS_CLASSW, nullptr);
    // Without the style, "&" would be a mark.
    if ((GetWindowLongW(tips, GWL_STYLE) & TTS_NOPREFIX) == 0) return u"without TTS_NOPREFIX";
    const bool ofPage = control.kind() == ControlKind::multiPage;
    wchar_t shown[200] = {};
    TTTOOLINFOW tool = {};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.hwnd = ofPage ? widget(control) : GetParent(widget(control));
    tool.uId = ofPage ? 0 : reinterpret_cast<UINT_PTR>(widget(control));
    tool.lpszText = shown;
    send(tips, TTM_GETTEXTW, 200, reinterpret_cast<LPARAM>(&tool));
    return {shown, shown + lstrlenW(shown)};
  }
  std::string status() {
    HWND line = FindWindowExW(window(), nullptr, STATUSCLASSNAMEW, nullptr);
    return IsWindowVisible(line) != 0 ? base::utf8(forms_win32::textOf(line)) : "-";
  }
  std::string title() {
    return IsWindowVisible(window()) != 0 ? base::utf8(forms_win32::textOf(window())) : "-";
  }

  static void later(std::function<void()> doing) {
    static std::deque<std::function<void()>> userActions;
    userActions.push_back(std::move(doing));
    SetTimer(nullptr, 0, 50, [](HWND, UINT, UINT_PTR timer, DWORD) {
      KillTimer(nullptr, timer);
      const auto next = std::move(userActions.front());
      userActions.pop_front();
      next();
    });
  }
  std::string answerBox(std::optional<BoxAnswer> answer) {
    HWND box = FindWindowW(L"#32770", nullptr);
    const std::u16string says =
        forms_win32::textOf(box) + u": " + forms_win32::textOf(GetDlgItem(box, 0xFFFF));
    WPARAM button = IDCANCEL;
    if (answer == BoxAnswer::ok) button = IDOK;
    if (answer == BoxAnswer::yes) button = IDYES;
    if (answer == BoxAnswer::no) button = IDNO;
    PostMessageW(box, WM_COMMAND, button, 0);
    return base::utf8(says);
  }
  /// Deals with all messages that wait, those that come of them included.
  void settle() {
    MSG message = {};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) host.dispatch(message);
  }

  Form* form = nullptr;
  forms_win32::Win32MessageBoxes boxes{u"Host"};
  forms_win32::Win32Forms host;
  forms_win32::Win32InputBoxes inputs{host};
  forms_win32::Win32Yielding yielding{host};
  forms_win32::Win32Launcher launcher;

 private:
  /// The thread's keyboard, as the windows see it.
  static void hold(int shift) {
    BYTE keys[256] = {};
    if ((shift & kShift) != 0) keys[VK_SHIFT] = 0x80;
    if ((shift & kControl) != 0) keys[VK_CONTROL] = 0x80;
    SetKeyboardState(keys);
  }
  LPARAM place(const ListBox& list, int row) const {
    RECT rows = {};
    send(widget(list), LB_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&rows));
    return MAKELPARAM(rows.left + 3, (rows.top + rows.bottom) / 2);
  }
  /// Without the marks of keys.
  static std::string read(const std::u16string& text) {
    std::string read;
    const std::string marked = base::utf8(text);
    for (std::size_t at = 0; at < marked.size(); ++at) {
      if (marked[at] == '&') ++at;
      if (at < marked.size()) read += marked[at];
    }
    return read;
  }
  static std::string textOf(HWND shown, ControlKind kind) {
    std::u16string text = forms_win32::textOf(shown);
    switch (kind) {
      case ControlKind::textBox:
        if (const LRESULT hides = send(shown, EM_GETPASSWORDCHAR); hides != 0)
          text.assign(text.size(), static_cast<char16_t>(hides));
        std::erase(text, u'\r');
        break;
      case ControlKind::checkBox:
        return (send(shown, BM_GETCHECK) == BST_CHECKED ? "[x] " : "[ ] ") + read(text);
      case ControlKind::commandButton:
        return read(text);
      case ControlKind::comboBox:
        return base::utf8(text) + " of " + std::to_string(send(shown, CB_GETCOUNT));
      case ControlKind::listBox:
        return rowsOf(shown);
      case ControlKind::multiPage:
        return frontOf(shown);
      default:
        break;
    }
    return base::utf8(text);
  }
  static std::string rowsOf(HWND list) {
    std::string rows;
    for (WPARAM row = 0; row < static_cast<WPARAM>(send(list, LB_GETCOUNT)); ++row) {
      wchar_t text[100] = {};
      send(list, LB_GETTEXT, row, reinterpret_cast<LPARAM>(text));
      rows += row == 0 ? "" : "|";
      rows += send(list, LB_GETSEL, row) > 0 ? "*" : "";
      rows += base::utf8(std::u16string(text, text + lstrlenW(text)));
    }
    return rows;
  }
  static std::string frontOf(HWND pages) {
    wchar_t text[100] = {};
    TCITEMW tab = {};
    tab.mask = TCIF_TEXT;
    tab.pszText = text;
    tab.cchTextMax = 100;
    send(pages, TCM_GETITEMW, static_cast<WPARAM>(send(pages, TCM_GETCURSEL)),
         reinterpret_cast<LPARAM>(&tab));
    return read({text, text + lstrlenW(text)});
  }
};

}  // namespace pluvo::forms
