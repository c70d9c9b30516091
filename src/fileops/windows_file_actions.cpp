#ifdef _WIN32

#include "base/names.h"
#include "fileops/file_actions.h"

#include <windows.h>

#include <array>

namespace pluvo::fileops {

namespace {

using base::machinePath;

ErrorCode lastError(BOOL done) { return done != 0 ? kDone : static_cast<ErrorCode>(GetLastError()); }

class WindowsFileActions : public FileActions {
 public:
  ErrorCode copy(const std::u16string& from, const std::u16string& to) override {
    return lastError(CopyFileW(machinePath(from).c_str(), machinePath(to).c_str(), FALSE));
  }
  ErrorCode createFolder(const std::u16string& folder) override {
    return lastError(CreateDirectoryW(machinePath(folder).c_str(), nullptr));
  }
  ErrorCode deleteFile(const std::u16string& file) override {
    return lastError(DeleteFileW(machinePath(file).c_str()));
  }
  ErrorCode deleteFolder(const std::u16string& folder) override {
    return lastError(RemoveDirectoryW(machinePath(folder).c_str()));
  }

  std::optional<std::u16string> systemFolder() override {
    std::array<wchar_t, 256> buffer = {};
    const UINT length = GetSystemDirectoryW(buffer.data(), static_cast<UINT>(buffer.size()));
    if (length == 0 || length >= buffer.size()) return std::nullopt;
    return std::u16string(buffer.data(), buffer.data() + length);
  }

  std::uint32_t startHidden(const std::u16string& commandLine) override {
    std::wstring line(commandLine.begin(), commandLine.end());
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = SW_HIDE;
    PROCESS_INFORMATION started = {};
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                       &started) == 0)
      return 0;
    CloseHandle(started.hThread);
    CloseHandle(started.hProcess);
    return started.dwProcessId;
  }
};

}  // namespace

std::unique_ptr<FileActions> machineFileActions() { return std::make_unique<WindowsFileActions>(); }

}  // namespace pluvo::fileops

#endif
