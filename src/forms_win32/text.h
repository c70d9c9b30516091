#pragma once

#include <windows.h>

#include <string>
#include <string_view>

/// Texts on their way between forms and windows.
namespace pluvo::forms_win32 {

inline const wchar_t* wide(const std::u16string& text) {
  return reinterpret_cast<const wchar_t*>(text.c_str());
}
inline wchar_t* wide(std::u16string& text) { return reinterpret_cast<wchar_t*>(text.data()); }

std::u16string textOf(HWND window);

/// A caption for windows in which "&" marks a key. Only one before a letter or a digit does so here; any
/// other is shown, and two are one.
std::u16string marked(const std::u16string& caption);

/// Line ends of any kind as CR LF.
std::u16string lines(const std::u16string& text);

}  // namespace pluvo::forms_win32
