#include "forms_win32/machine.h"

#include "errors/at_end.h"
#include "errors/fault.h"

#include <windows.h>

namespace pluvo::forms_win32 {

namespace {

constexpr std::int32_t kFileNotFound = 53;
constexpr ULONGLONG kLongestYield = 20;  // milliseconds

std::u16string systemMessage(DWORD error) {
  wchar_t text[512] = {};
  const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                      error, 0, text, sizeof text / sizeof *text, nullptr);
  std::u16string message(text, text + length);
  while (!message.empty() && (message.back() <= u' ' || message.back() == u'.')) message.pop_back();
  return message;
}

}  // namespace

void Win32Yielding::yield() {
  if (yields_) return;
  yields_ = true;
  const errors::AtEnd yielded([this] { yields_ = false; });
  const ULONGLONG end = GetTickCount64() + kLongestYield;
  MSG message = {};
  while (GetTickCount64() < end && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
    if (message.message == WM_QUIT) {
      // Whoever runs the program's loop has to hear of it.
      PostQuitMessage(static_cast<int>(message.wParam));
      break;
    }
    host_.dispatch(message);
  }
}

void Win32Launcher::launchHidden(const std::u16string& commandLine) {
  std::wstring line(commandLine.begin(), commandLine.end());
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = SW_HIDE;
  PROCESS_INFORMATION started = {};
  if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr,
                     &startup, &started) == 0) {
    throw errors::Fault(kFileNotFound,
                        u"\"" + commandLine + u"\" could not be started: " + systemMessage(GetLastError()));
  }
  CloseHandle(started.hThread);
  CloseHandle(started.hProcess);
}

}  // namespace pluvo::forms_win32
