#include "forms_win32/forms.h"

#include "form_window.h"
#include "module.h"

#include <algorithm>
#include <utility>

namespace pluvo::forms_win32 {

namespace {

BOOL CALLBACK tell(HWND window, LPARAM document) {
  // NOLINTNEXTLINE(performance-no-int-to-ptr): Windows passes it on so
  if (FormWindow* form = FormWindow::of(window)) form->follow(reinterpret_cast<HWND>(document));
  return TRUE;
}

BOOL CALLBACK tellGone(HWND window, LPARAM document) {
  // NOLINTNEXTLINE(performance-no-int-to-ptr): Windows passes it on so
  if (FormWindow* form = FormWindow::of(window)) form->leave(reinterpret_cast<HWND>(document));
  return TRUE;
}

BOOL CALLBACK tellOfEnd(HWND window, LPARAM found) {
  const FormWindow* form = FormWindow::of(window);
  if (form == nullptr) return TRUE;
  // NOLINTNEXTLINE(performance-no-int-to-ptr): Windows passes it on so
  *reinterpret_cast<Win32Forms**>(found) = &form->host();
  return FALSE;
}

}  // namespace

Win32Forms::Win32Forms(forms::MessageBoxes& boxes) : boxes_(boxes), module_(std::make_unique<Module>()) {}

Win32Forms::~Win32Forms() {
  for (HHOOK hook : {keys_, activations_}) {
    if (hook != nullptr) UnhookWindowsHookEx(hook);
  }
}

/// As long as a form is shown: whose loop its messages come through is not known, nor which window the user
/// goes to.
void Win32Forms::listen() {
  const bool needed = std::ranges::any_of(windows_, [](const auto& each) { return each.second->isShown(); });
  const auto hook = [needed](HHOOK& held, int kind, HOOKPROC procedure) {
    if (needed && held == nullptr) held = SetWindowsHookExW(kind, procedure, nullptr, GetCurrentThreadId());
    if (!needed && held != nullptr) UnhookWindowsHookEx(std::exchange(held, nullptr));
  };
  hook(keys_, WH_GETMESSAGE, heard);
  hook(activations_, WH_CBT, activated);
}

LRESULT CALLBACK Win32Forms::heard(int code, WPARAM wparam, LPARAM data) {
  auto& message = *reinterpret_cast<MSG*>(data);
  if (code == HC_ACTION && wparam == PM_REMOVE && message.message == WM_QUIT) {
    Win32Forms* host = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), tellOfEnd, reinterpret_cast<LPARAM>(&host));
    // Not called where it lies: it may have the host go.
    if (const auto ends = host == nullptr ? nullptr : host->programEnds) ends();
    return CallNextHookEx(nullptr, code, wparam, data);
  }
  if (code == HC_ACTION && wparam == PM_REMOVE && message.hwnd != nullptr) {
    FormWindow* window = FormWindow::of(GetAncestor(message.hwnd, GA_ROOT));
    const bool isOthers = window != nullptr && (window->isBeside() || !window->host().pulls_);
    const bool isKey = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
    try {
      if (isOthers && isKey) {
        // Not left to the loop, which may take keys for its own before it asks whose they are.
        MSG key = std::exchange(message, MSG{});
        if (!window->takes(key)) {
          TranslateMessage(&key);
          DispatchMessageW(&key);
        }
      }
    } catch (...) {  // nothing may leave for the system
      message.message = WM_NULL;
    }
  }
  return CallNextHookEx(nullptr, code, wparam, data);
}

LRESULT CALLBACK Win32Forms::activated(int code, WPARAM wparam, LPARAM lparam) {
  const auto document = static_cast<LPARAM>(wparam);
  if (code == HCBT_ACTIVATE) EnumThreadWindows(GetCurrentThreadId(), tell, document);
  if (code == HCBT_DESTROYWND) EnumThreadWindows(GetCurrentThreadId(), tellGone, document);
  return CallNextHookEx(nullptr, code, wparam, lparam);
}

void Win32Forms::bringForward(std::u16string_view form) {
  for (const auto& [each, window] : windows_) {
    if (each->Name() == form) return window->bringForward();
  }
}

void Win32Forms::closeAll() {
  const auto isShown = [](const auto& each) { return each.second->isShown(); };
  // A form that is closed may have others come and go.
  for (std::size_t left = windows_.size(); left > 0; --left) {
    const auto shown = std::ranges::find_if(windows_, isShown);
    if (shown == windows_.end()) return;
    shown->second->closeUnasked();
  }
}

bool Win32Forms::isBusy() const {
  return std::ranges::any_of(windows_, [](const auto& each) { return each.second->isBusy(); });
}

FormWindow& Win32Forms::shownBy(forms::Form& form) {
  if (const auto there = windows_.find(&form); there != windows_.end()) return *there->second;
  const auto window = std::make_shared<FormWindow>(*this, form);
  form.changed.handledBy([window] { window->refresh(); });
  windows_[&form] = window.get();
  return *window;
}

void Win32Forms::runModal(forms::Form& form) { shownBy(form).run(); }

void Win32Forms::visibleChanged(forms::Form& form) {
  if (form.Visible()) {
    shownBy(form).show();
  } else if (const auto there = windows_.find(&form); there != windows_.end()) {
    there->second->hide();
  }
}

void Win32Forms::repaint(forms::Form& form) {
  if (const auto there = windows_.find(&form); there != windows_.end()) there->second->repaint();
}

void Win32Forms::dispatch(MSG& message) {
  HWND top = message.hwnd == nullptr ? nullptr : GetAncestor(message.hwnd, GA_ROOT);
  for (const auto& [form, window] : windows_) {
    if (window->window() != top || top == nullptr) continue;
    if (window->takes(message)) return;
    break;
  }
  TranslateMessage(&message);
  DispatchMessageW(&message);
  bringBack();
}

/// A caller that waits for a form would wait for ever.
void Win32Forms::bringBack() {
  const auto lost = std::ranges::find_if(windows_, [](const auto& each) { return each.second->isLost(); });
  if (lost != windows_.end()) lost->second->show();
}

bool Win32Forms::isForm(HWND window) const {
  return std::ranges::any_of(windows_, [&](const auto& each) { return each.second->window() == window; });
}

HWND Win32Forms::windowOf(const forms::Form& form) const {
  const auto there = windows_.find(&form);
  return there == windows_.end() ? nullptr : there->second->window();
}

HWND Win32Forms::widgetOf(const forms::Form& form, std::u16string_view control) const {
  const auto there = windows_.find(&form);
  const Mirror* mirror = there == windows_.end() ? nullptr : there->second->mirror(control);
  return mirror == nullptr ? nullptr : mirror->widget();
}

}  // namespace pluvo::forms_win32
