#include "settings.h"

#include <windows.h>

#include <algorithm>
#include <cwchar>

namespace pluvo::component {

namespace {

DWORD numberSet(const wchar_t* name) {
  DWORD number = 0;
  DWORD size = sizeof number;
  const LSTATUS status =
      RegGetValueW(HKEY_CURRENT_USER, L"Software\\PLUVO", name, RRF_RT_REG_DWORD, nullptr, &number, &size);
  return status == ERROR_SUCCESS ? number : 0;
}

DWORD numberInEnvironment(const wchar_t* name) {
  wchar_t text[4] = {};
  return GetEnvironmentVariableW(name, text, 4) == 1 ? static_cast<DWORD>(std::wcstoul(text, nullptr, 10))
                                                     : 0;
}

}  // namespace

word_com::Manner mannerOfUser() {
  const DWORD logging = std::max(numberSet(L"Log"), numberInEnvironment(L"PLUVO_LOG"));
  return {.careful = numberSet(L"Careful") != 0,
          .logging = logging == 0   ? word_com::Logging::off
                     : logging == 1 ? word_com::Logging::on
                                    : word_com::Logging::withTexts};
}

}  // namespace pluvo::component
