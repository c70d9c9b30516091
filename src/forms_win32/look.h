#pragma once

#include "forms/control.h"

#include <windows.h>

#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

namespace pluvo::forms_win32 {

struct DeletesObject {
  void operator()(HGDIOBJ object) const { DeleteObject(object); }
};
template <class Handle>
using Owned = std::unique_ptr<std::remove_pointer_t<Handle>, DeletesObject>;

/// Fonts, colours and lengths of a form's windows, at the resolution of the screen they are on.
class Look {
 public:
  explicit Look(UINT dotsPerInch) : dotsPerInch_(dotsPerInch) {}
  Look(const Look&) = delete;
  Look& operator=(const Look&) = delete;
  ~Look() { ReleaseDC(nullptr, measure_); }
  /// Of the screen the window is on, as far as the process cares.
  static UINT dotsPerInch(HWND window);

  /// A window of that style around its contents, at this resolution.
  RECT framed(RECT inside, DWORD style, DWORD extended) const;

  /// From 1/96 of an inch.
  int px(int length) const { return MulDiv(length, static_cast<int>(dotsPerInch_), 96); }

  /// The face where the system has it, else the system's own for dialogs.
  HFONT font(const forms::Font& font, bool underlined = false);
  /// For pictures; nothing where the system has none. In pixels.
  HFONT symbolFont(int height);
  HBRUSH brush(COLORREF color);

  /// Of the text as it is drawn, broken into lines where it is wider than the width. Without a width, that of
  /// its widest word.
  SIZE size(const std::u16string& text, HFONT font, int width, bool marks) const;
  int widestWord(const std::u16string& text, HFONT font) const;
  int lineHeight(HFONT font) const;
  int letterWidth(HFONT font) const;

 private:
  UINT dotsPerInch_;
  /// The screen, since texts are not as wide everywhere.
  HDC measure_ = GetDC(nullptr);
  std::map<std::pair<std::u16string, int>, Owned<HFONT>> fonts_;
  std::map<COLORREF, Owned<HBRUSH>> brushes_;
};

/// White is the system's colour for boxes.
COLORREF boxColor(const forms::Control& control);
/// Black or white, whichever reads on the color; the system's own on the system's.
COLORREF textColorOn(COLORREF background);
/// Between that and the background, and readable all the same; the system's grey need not be.
COLORREF fadedTextColorOn(COLORREF background);
/// The system's own where it reads on the color.
COLORREF linkColorOn(COLORREF background);

}  // namespace pluvo::forms_win32
