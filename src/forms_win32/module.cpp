#include "module.h"

#include <commctrl.h>
#include <wchar.h>

namespace pluvo::forms_win32 {

namespace {

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_NCCREATE) {
    const auto* made = reinterpret_cast<const CREATESTRUCTW*>(lparam);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(made->lpCreateParams));
  }
  auto* receiver = reinterpret_cast<Receiver*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (receiver == nullptr) return DefWindowProcW(window, message, wparam, lparam);
  if (message == WM_NCDESTROY) SetWindowLongPtrW(window, GWLP_USERDATA, 0);
  // Nothing may leave for the system; receivers pass on messages for the user.
  try {
    return receiver->receives(window, message, wparam, lparam);
  } catch (...) {
    return 0;
  }
}

HINSTANCE instanceOf(const void* code) {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     static_cast<const wchar_t*>(code), &module);
  return module;
}

/// The system's controls that the module asks for, while it is there.
class Controls {
 public:
  explicit Controls(HANDLE context) : active_(ActivateActCtx(context, &cookie_) != 0) {}
  Controls(const Controls&) = delete;
  Controls& operator=(const Controls&) = delete;
  ~Controls() {
    if (active_) DeactivateActCtx(0, cookie_);
  }

 private:
  ULONG_PTR cookie_ = 0;
  bool active_;
};

}  // namespace

errors::Fault noMoreWindows() {
  return {errors::kOutOfMemory, u"Windows has no more windows to give: close some programs and try again"};
}

Module::Module() : instance_(instanceOf(reinterpret_cast<const void*>(&procedure))) {
  ACTCTXW context = {};
  context.cbSize = sizeof context;
  context.dwFlags = ACTCTX_FLAG_RESOURCE_NAME_VALID | ACTCTX_FLAG_HMODULE_VALID;
  context.hModule = instance_;
  context.lpResourceName = MAKEINTRESOURCEW(2);
  controls_ = CreateActCtxW(&context);
  const Controls active(controls_);
  const INITCOMMONCONTROLSEX kinds = {
      sizeof kinds, ICC_STANDARD_CLASSES | ICC_TAB_CLASSES | ICC_BAR_CLASSES | ICC_WIN95_CLASSES};
  InitCommonControlsEx(&kinds);

  swprintf(className_, sizeof className_ / sizeof *className_, L"PLUVO form %p", static_cast<void*>(this));
  WNDCLASSEXW made = {};
  made.cbSize = sizeof made;
  made.style = CS_DBLCLKS;
  made.lpfnWndProc = procedure;
  made.hInstance = instance_;
  made.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  made.hbrBackground = GetSysColorBrush(COLOR_3DFACE);
  made.lpszClassName = className_;
  if (RegisterClassExW(&made) == 0) throw noMoreWindows();
}

Module::~Module() {
  UnregisterClassW(className_, instance_);
  if (controls_ != INVALID_HANDLE_VALUE) ReleaseActCtx(controls_);
}

HWND Module::makeWindow(Receiver& receiver, const wchar_t* text, DWORD style, DWORD extended,
                        HWND parent) const {
  const Controls active(controls_);
  HWND window = CreateWindowExW(extended, className_, text, style, CW_USEDEFAULT, CW_USEDEFAULT,
                                CW_USEDEFAULT, CW_USEDEFAULT, parent, nullptr, instance_, &receiver);
  if (window == nullptr) throw noMoreWindows();
  return window;
}

HWND Module::makeWidget(const wchar_t* kind, const wchar_t* text, DWORD style, DWORD extended,
                        HWND parent) const {
  const Controls active(controls_);
  HWND window = CreateWindowExW(extended, kind, text, style, 0, 0, 0, 0, parent, nullptr, instance_, nullptr);
  if (window == nullptr) throw noMoreWindows();
  return window;
}

}  // namespace pluvo::forms_win32
