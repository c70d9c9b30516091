#include "forms_win32/machine.h"

#include "base/at_end.h"
#include "errors/fault.h"

#include <shellapi.h>
#include <windows.h>

#include <string>
#include <string_view>

namespace pluvo::forms_win32 {

namespace {

constexpr std::int32_t kFileNotFound = 53;
constexpr std::u16string_view kStart = u"start ";
constexpr ULONGLONG kLongestYield = 20;  // milliseconds

std::u16string systemMessage(DWORD error) {
  wchar_t text[512] = {};
  const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                      error, 0, text, sizeof text / sizeof *text, nullptr);
  std::u16string message(text, text + length);
  while (!message.empty() && (message.back() <= u' ' || message.back() == u'.')) message.pop_back();
  return message;
}

DWORD openPage(const std::u16string& address) {
  const std::wstring page(address.begin(), address.end());
  const auto result = reinterpret_cast<INT_PTR>(
      ShellExecuteW(nullptr, L"open", page.c_str(), nullptr, nullptr, SW_SHOWNORMAL));
  constexpr INT_PTR kLastOfErrors = 32;
  if (result > kLastOfErrors) return ERROR_SUCCESS;
  return result == 0 ? DWORD{ERROR_NOT_ENOUGH_MEMORY} : static_cast<DWORD>(result);
}

/// The program that the line begins with, from the system's folder and nowhere else.
DWORD startOwn(std::wstring line) {
  const std::wstring name = line.substr(0, line.find(L' '));
  wchar_t folder[MAX_PATH] = {};
  const UINT length = GetSystemDirectoryW(folder, MAX_PATH);
  if (length == 0 || length >= MAX_PATH || name.find_first_of(L"\\/:\"") != std::wstring::npos)
    return ERROR_FILE_NOT_FOUND;
  const std::wstring program = std::wstring(folder) + L'\\' + name;
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = SW_HIDE;
  PROCESS_INFORMATION started = {};
  if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, folder,
                     &startup, &started) == 0)
    return GetLastError();
  CloseHandle(started.hThread);
  CloseHandle(started.hProcess);
  return ERROR_SUCCESS;
}

}  // namespace

void Win32Yielding::yield() {
  if (yields_) return;
  yields_ = true;
  const base::AtEnd yielded([this] { yields_ = false; });
  const ULONGLONG end = GetTickCount64() + kLongestYield;
  MSG message = {};
  const auto fetch = [&] { return PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE); };
  while (GetTickCount64() < end && host_.pull(fetch) != 0) {
    if (message.message == WM_QUIT) {
      // The program's loop has to hear of it.
      PostQuitMessage(static_cast<int>(message.wParam));
      break;
    }
    host_.dispatch(message);
  }
}

Win32Launcher::Win32Launcher() : opener_(openPage) {}

void Win32Launcher::launchHidden(const std::u16string& commandLine) {
  DWORD error = ERROR_FILE_NOT_FOUND;
  if (commandLine.starts_with(kStart)) {
    const std::u16string address = commandLine.substr(kStart.size());
    // A name that is no address would be looked for in the current folder.
    if (address.starts_with(u"http://") || address.starts_with(u"https://")) error = opener_(address);
  } else {
    error = startOwn({commandLine.begin(), commandLine.end()});
  }
  if (error == ERROR_SUCCESS) return;
  throw errors::Fault(kFileNotFound,
                      u"\"" + commandLine + u"\" could not be started: " + systemMessage(error));
}

}  // namespace pluvo::forms_win32
