#pragma once

#include <windows.h>

#include <vector>

namespace pluvo::forms_win32 {

/// Nothing can be done with the thread's other windows while this is: a window waits for an answer.
class ThreadWindows {
 public:
  /// All but this one.
  explicit ThreadWindows(HWND open) : open_(open) {
    EnumThreadWindows(GetCurrentThreadId(), shut, reinterpret_cast<LPARAM>(this));
  }
  ThreadWindows(const ThreadWindows&) = delete;
  ThreadWindows& operator=(const ThreadWindows&) = delete;
  ~ThreadWindows() { release(); }

  void release() {
    for (HWND window : shut_) EnableWindow(window, TRUE);
    shut_.clear();
  }

 private:
  static BOOL CALLBACK shut(HWND window, LPARAM self) {
    auto& windows = *reinterpret_cast<ThreadWindows*>(self);
    if (window == windows.open_ || IsWindowVisible(window) == 0 || IsWindowEnabled(window) == 0) return TRUE;
    try {
      windows.shut_.push_back(window);
    } catch (...) {  // a window that would not open again stays open
      return FALSE;
    }
    EnableWindow(window, FALSE);
    return TRUE;
  }

  HWND open_;
  std::vector<HWND> shut_;
};

}  // namespace pluvo::forms_win32
