#include "word_window.h"

#include <string_view>

namespace pluvo::component {

namespace {

BOOL CALLBACK takeVisible(HWND window, LPARAM found) {
  if (!IsWindowVisible(window) || !isWordWindow(window)) return TRUE;
  *reinterpret_cast<HWND*>(found) = window;  // NOLINT(performance-no-int-to-ptr): Windows passes it on so
  return FALSE;
}

}  // namespace

bool isWordWindow(HWND window) {
  constexpr int kMost = 32;
  wchar_t name[kMost];
  const int length = GetClassNameW(window, name, kMost);
  return std::wstring_view(name, static_cast<std::size_t>(length)) == L"OpusApp";
}

HWND wordWindow() {
  // Word has a window for each document.
  const HWND active = GetAncestor(GetActiveWindow(), GA_ROOTOWNER);
  if (active != nullptr && isWordWindow(active)) return active;
  HWND found = nullptr;
  EnumThreadWindows(GetCurrentThreadId(), takeVisible, reinterpret_cast<LPARAM>(&found));
  return found;
}

}  // namespace pluvo::component
