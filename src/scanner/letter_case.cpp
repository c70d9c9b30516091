#include "scanner/letter_case.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <clocale>
#include <cwctype>
#endif

namespace pluvo::scanner {

#ifdef _WIN32

std::u16string upperCase(std::u16string_view text) {
  std::u16string upper(text);
  CharUpperBuffW(reinterpret_cast<wchar_t*>(upper.data()), static_cast<DWORD>(upper.size()));
  return upper;
}

#else

namespace {

char16_t upperCase(char16_t unit) {
  static const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  if (unit < 0x80 || unicode == nullptr)
    return u'a' <= unit && unit <= u'z' ? static_cast<char16_t>(unit - 0x20) : unit;
  return static_cast<char16_t>(towupper_l(unit, unicode));
}

}  // namespace

std::u16string upperCase(std::u16string_view text) {
  std::u16string upper;
  upper.reserve(text.size());
  for (const char16_t unit : text) upper += upperCase(unit);
  return upper;
}

#endif

}  // namespace pluvo::scanner
