#include "forms_win32/boxes.h"

#include "forms/text_box.h"
#include "text.h"
#include "thread_windows.h"

#include <commctrl.h>

#include <algorithm>
#include <utility>

namespace pluvo::forms_win32 {

namespace {

UINT kindOf(forms::Buttons buttons) {
  switch (buttons) {
    case forms::Buttons::yesNo:
      return MB_YESNO | MB_ICONQUESTION;
    case forms::Buttons::yesNoCancel:
      return MB_YESNOCANCEL | MB_ICONQUESTION;
    case forms::Buttons::ok:
      break;
  }
  return MB_OK;
}

/// One question, answered with a text.
class InputForm final : public forms::Form {
 public:
  InputForm(forms::FormHost& host, const std::u16string& prompt, const std::u16string& title)
      : Form(host, u"InputBox", title), prompt_(u"lblPrompt", prompt) {
    ok_.Default(true);
    add(prompt_);
    add(text_);
    add(ok_);
    add(cancel_);
    ok_.Click.handledBy([this] {
      answer_ = text_.Text();
      Hide();
    });
    cancel_.Click.handledBy([this] { Hide(); });
    SetFocus(text_);
  }
  const std::u16string& answer() const { return answer_; }

 private:
  forms::Label prompt_;
  forms::TextBox text_{u"txtAnswer"};
  forms::CommandButton ok_{u"cmdOK", u"OK"};
  forms::CommandButton cancel_{u"cmdCancel", u"Cancel"};
  std::u16string answer_;
};

int titleWidth(HWND window) {
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  const std::u16string title = textOf(window);
  HFONT font = CreateFontIndirectW(&metrics.lfCaptionFont);
  HDC surface = GetDC(window);
  HGDIOBJ before = SelectObject(surface, font);
  SIZE size = {};
  GetTextExtentPoint32W(surface, wide(title), static_cast<int>(title.size()), &size);
  SelectObject(surface, before);
  ReleaseDC(window, surface);
  DeleteObject(font);
  return size.cx;
}

BOOL CALLBACK movesButton(HWND child, LPARAM by) {
  wchar_t kind[8] = {};
  GetClassNameW(child, kind, 8);
  if (lstrcmpiW(kind, WC_BUTTONW) != 0) return TRUE;
  POINT place = {};
  MapWindowPoints(child, GetParent(child), &place, 1);
  SetWindowPos(child, nullptr, place.x + static_cast<LONG>(by), place.y, 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  return TRUE;
}

/// The message box that comes up while this is there: as wide as its title, where Windows makes it as wide as
/// its text.
class ShownBox {
 public:
  ShownBox()
      : hook_(SetWindowsHookExW(WH_CBT, told, nullptr, GetCurrentThreadId())),
        outer_(std::exchange(innermost, this)) {}
  ShownBox(const ShownBox&) = delete;
  ShownBox& operator=(const ShownBox&) = delete;
  ~ShownBox() {
    innermost = outer_;
    if (hook_ != nullptr) UnhookWindowsHookEx(hook_);
  }

  static void closeAll() {
    for (const ShownBox* each = innermost; each != nullptr; each = each->outer_) {
      if (each->box_ != nullptr) EndDialog(each->box_, IDCANCEL);
    }
  }

 private:
  static LRESULT CALLBACK told(int code, WPARAM wparam, LPARAM lparam) {
    if (code == HCBT_ACTIVATE) {
      HWND window = reinterpret_cast<HWND>(wparam);
      wchar_t kind[8] = {};
      GetClassNameW(window, kind, 8);
      if (lstrcmpW(kind, L"#32770") == 0 && innermost != nullptr && innermost->box_ == nullptr) {
        innermost->box_ = window;
        widen(window);
      }
    }
    return CallNextHookEx(nullptr, code, wparam, lparam);
  }
  static void widen(HWND box) {
    RECT now = {};
    GetWindowRect(box, &now);
    // The close button, the frame, and some room between them and the title.
    const int besides = GetSystemMetrics(SM_CXSIZE) * 2 + GetSystemMetrics(SM_CXSIZEFRAME) * 4;
    const int screen = GetSystemMetrics(SM_CXSCREEN);
    const int more = std::min(titleWidth(box) + besides, screen) - static_cast<int>(now.right - now.left);
    if (more <= 0) return;
    SetWindowPos(box, nullptr, std::max<LONG>(now.left - more / 2, 0), now.top, now.right - now.left + more,
                 now.bottom - now.top, SWP_NOZORDER | SWP_NOACTIVATE);
    EnumChildWindows(box, movesButton, more / 2);
  }

  /// All boxes are shown on one thread.
  static inline ShownBox* innermost = nullptr;

  HHOOK hook_;
  ShownBox* outer_;
  HWND box_ = nullptr;
};

}  // namespace

forms::BoxAnswer Win32MessageBoxes::show(const std::u16string& text, forms::Buttons buttons,
                                         const std::optional<std::u16string>& title) {
  HWND above = GetActiveWindow();
  if (above == nullptr && owner) above = owner();
  const std::u16string& caption = title ? *title : title_;
  const ThreadWindows others(above);
  const ShownBox shown;
  switch (MessageBoxW(above, wide(text), wide(caption), kindOf(buttons) | MB_SETFOREGROUND)) {
    case IDYES:
      return forms::BoxAnswer::yes;
    case IDNO:
      return forms::BoxAnswer::no;
    case IDOK:
      return forms::BoxAnswer::ok;
    default:
      break;
  }
  // Closed, or there is no box to be had.
  return forms::closedAnswer(buttons);
}

void Win32MessageBoxes::closeAll() { ShownBox::closeAll(); }

std::u16string Win32InputBoxes::ask(const std::u16string& prompt, const std::u16string& title) {
  InputForm form(host_, prompt, title);
  form.ShowModal();
  return form.answer();
}

}  // namespace pluvo::forms_win32
