#pragma once

#include "errors/fault.h"

#include <windows.h>

namespace pluvo::forms_win32 {

errors::Fault noMoreWindows();

/// Messages to a window of this module; each kind keeps itself in its window's user data.
class Receiver {
 public:
  virtual ~Receiver() = default;
  virtual LRESULT receives(HWND window, UINT message, WPARAM wparam, LPARAM lparam) = 0;
};

/// The program or DLL that this code is part of. It holds its window classes, and its choice of the system's
/// controls.
class Module {
 public:
  Module();
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;
  ~Module();

  /// A window of the module's own class, which tells the receiver. Throws Fault where there is none to be
  /// had.
  HWND makeWindow(Receiver& receiver, const wchar_t* text, DWORD style, DWORD extended, HWND parent) const;
  /// A window of one of the system's classes.
  HWND makeWidget(const wchar_t* kind, const wchar_t* text, DWORD style, DWORD extended, HWND parent) const;

 private:
  HINSTANCE instance_ = nullptr;
  HANDLE controls_ = INVALID_HANDLE_VALUE;  ///< an activation context
  wchar_t className_[48] = {};              ///< one for each instance, so that two do not share a procedure
};

}  // namespace pluvo::forms_win32
