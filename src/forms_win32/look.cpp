#include "look.h"

#include "text.h"

#include <algorithm>
#include <cstdlib>

namespace pluvo::forms_win32 {

namespace {

constexpr int kPointsPerInch = 72;

/// Has the font chosen on the surface.
class Chosen {
 public:
  Chosen(HDC surface, HFONT font) : surface_(surface), before_(SelectObject(surface, font)) {}
  Chosen(const Chosen&) = delete;
  Chosen& operator=(const Chosen&) = delete;
  ~Chosen() { SelectObject(surface_, before_); }

 private:
  HDC surface_;
  HGDIOBJ before_;
};

/// A function that Windows has since version 10; null before.
template <class Function>
Function newer(const char* name) {
  return reinterpret_cast<Function>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32"), name)));
}

int CALLBACK isThere(const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM found) {
  *reinterpret_cast<bool*>(found) = true;
  return 0;
}

bool hasFace(const std::u16string& name) {
  LOGFONTW wanted = {};
  wanted.lfCharSet = DEFAULT_CHARSET;
  lstrcpynW(wanted.lfFaceName, wide(name), LF_FACESIZE);
  bool found = false;
  HDC screen = GetDC(nullptr);
  EnumFontFamiliesExW(screen, &wanted, isThere, reinterpret_cast<LPARAM>(&found), 0);
  ReleaseDC(nullptr, screen);
  return found;
}

/// From 0 to 255, as it is seen.
int lightOf(COLORREF color) {
  return (GetRValue(color) * 299 + GetGValue(color) * 587 + GetBValue(color) * 114) / 1000;
}

LOGFONTW systemFont() {
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  return metrics.lfMessageFont;
}

}  // namespace

UINT Look::dotsPerInch(HWND window) {
  const auto ask = newer<UINT(WINAPI*)(HWND)>("GetDpiForWindow");
  if (ask != nullptr) {
    if (const UINT dots = ask(window); dots != 0) return dots;
  }
  HDC screen = GetDC(nullptr);
  const int dots = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  return static_cast<UINT>(dots);
}

RECT Look::framed(RECT inside, DWORD style, DWORD extended) const {
  const auto frame = newer<BOOL(WINAPI*)(RECT*, DWORD, BOOL, DWORD, UINT)>("AdjustWindowRectExForDpi");
  if (frame == nullptr || frame(&inside, style, FALSE, extended, dotsPerInch_) == 0)
    AdjustWindowRectEx(&inside, style, FALSE, extended);
  return inside;
}

HFONT Look::font(const forms::Font& font, bool underlined) {
  auto& made = fonts_[{font.name, underlined ? -font.size : font.size}];
  if (!made) {
    LOGFONTW wanted = systemFont();
    wanted.lfHeight = -MulDiv(font.size, static_cast<int>(dotsPerInch_), kPointsPerInch);
    wanted.lfWidth = 0;
    wanted.lfUnderline = underlined ? TRUE : FALSE;
    if (hasFace(font.name)) lstrcpynW(wanted.lfFaceName, wide(font.name), LF_FACESIZE);
    made.reset(CreateFontIndirectW(&wanted));
  }
  return made.get();
}

HFONT Look::symbolFont(int height) {
  auto& made = fonts_[{u"", height}];
  if (!made) {
    LOGFONTW wanted = systemFont();
    wanted.lfHeight = -height;
    wanted.lfWidth = 0;
    const std::u16string face = u"Segoe UI Symbol";
    if (!hasFace(face)) return nullptr;
    lstrcpynW(wanted.lfFaceName, wide(face), LF_FACESIZE);
    made.reset(CreateFontIndirectW(&wanted));
  }
  return made.get();
}

HBRUSH Look::brush(COLORREF color) {
  auto& made = brushes_[color];
  if (!made) made.reset(CreateSolidBrush(color));
  return made.get();
}

SIZE Look::size(const std::u16string& text, HFONT font, int width, bool marks) const {
  const Chosen chosen(measure_, font);
  // Some surfaces draw a little wider than they measure.
  RECT place = {0, 0, width - width / 40 - 1, 0};
  const UINT format = DT_CALCRECT | DT_WORDBREAK | DT_EXPANDTABS | (marks ? 0U : UINT{DT_NOPREFIX});
  DrawTextW(measure_, wide(text), static_cast<int>(text.size()), &place, format);
  return {place.right, place.bottom};
}

int Look::widestWord(const std::u16string& text, HFONT font) const {
  const Chosen chosen(measure_, font);
  int widest = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find_first_of(u" \t\r\n", at), text.size());
    SIZE size = {};
    GetTextExtentPoint32W(measure_, wide(text) + at, static_cast<int>(end - at), &size);
    widest = std::max(widest, static_cast<int>(size.cx));
    at = end + 1;
  }
  return widest;
}

int Look::lineHeight(HFONT font) const {
  const Chosen chosen(measure_, font);
  TEXTMETRICW metrics = {};
  GetTextMetricsW(measure_, &metrics);
  return metrics.tmHeight;
}

int Look::letterWidth(HFONT font) const {
  const Chosen chosen(measure_, font);
  TEXTMETRICW metrics = {};
  GetTextMetricsW(measure_, &metrics);
  return metrics.tmAveCharWidth;
}

COLORREF boxColor(const forms::Control& control) {
  if (control.BackStyle() == forms::BackStyle::transparent) return GetSysColor(COLOR_3DFACE);
  return control.BackColor() == forms::kWhite ? GetSysColor(COLOR_WINDOW) : control.BackColor();
}

COLORREF textColorOn(COLORREF background) {
  if (background == GetSysColor(COLOR_WINDOW)) return GetSysColor(COLOR_WINDOWTEXT);
  if (background == GetSysColor(COLOR_3DFACE)) return GetSysColor(COLOR_BTNTEXT);
  return lightOf(background) > 128 ? RGB(0, 0, 0) : RGB(255, 255, 255);
}

COLORREF fadedTextColorOn(COLORREF background) {
  const COLORREF text = textColorOn(background);
  const auto mixed = [](int one, int other) { return (one * 3 + other * 2) / 5; };
  return RGB(mixed(GetRValue(text), GetRValue(background)), mixed(GetGValue(text), GetGValue(background)),
             mixed(GetBValue(text), GetBValue(background)));
}

COLORREF linkColorOn(COLORREF background) {
  constexpr int kReads = 80;
  const COLORREF own = GetSysColor(COLOR_HOTLIGHT);
  if (std::abs(lightOf(own) - lightOf(background)) >= kReads) return own;
  return lightOf(background) > 128 ? RGB(0, 0, 204) : RGB(150, 190, 255);
}

}  // namespace pluvo::forms_win32
