#include "word_window.h"

#include "word_objects.h"

#include <oleacc.h>

namespace pluvo::stand_in {
namespace {

LRESULT CALLBACK pane(HWND window, UINT message, WPARAM wide, LPARAM what) {
  const bool asksForObject = message == WM_GETOBJECT && static_cast<LONG>(what) == OBJID_NATIVEOM;
  if (!asksForObject || World::instance().documents.empty())
    return DefWindowProcW(window, message, wide, what);
  const auto shown = make<PartObject>(PartObject::window(), World::instance().active());
  return LresultFromObject(IID_IDispatch, wide, shown.get());
}

HWND create(const wchar_t* name, WNDPROC procedure, DWORD style, const RECT& at, HWND parent) {
  WNDCLASSW kind{};
  kind.lpfnWndProc = procedure;
  kind.hInstance = GetModuleHandleW(nullptr);
  kind.lpszClassName = name;
  kind.hbrBackground = GetSysColorBrush(parent == nullptr ? COLOR_APPWORKSPACE : COLOR_WINDOW);
  RegisterClassW(&kind);
  return CreateWindowExW(0, name, L"Word", style, at.left, at.top, at.right - at.left, at.bottom - at.top,
                         parent, nullptr, kind.hInstance, nullptr);
}

}  // namespace

HWND makeWindow(bool visible) {
  const HWND main = create(L"OpusApp", DefWindowProcW, WS_OVERLAPPEDWINDOW | (visible ? WS_VISIBLE : 0U),
                           {20, 20, 920, 720}, nullptr);
  create(L"_WwG", pane, WS_CHILD | WS_VISIBLE, {40, 40, 840, 640}, main);
  return main;
}

}  // namespace pluvo::stand_in
