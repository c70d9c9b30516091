#include "word_log.h"

#include "base/text.h"
#include "base/utf.h"
#include "text.h"

#include <array>
#include <cstdio>

namespace pluvo::word_com {

namespace {

/// One that has grown beyond begins anew.
constexpr LONGLONG kLongest = 4 << 20;
constexpr std::size_t kMostWaiting = 1 << 16;

std::string now() {
  SYSTEMTIME time = {};
  GetLocalTime(&time);
  std::array<char, 32> text = {};
  const int length = std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d  ", time.wYear,
                                   time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond);
  return {text.data(), static_cast<std::size_t>(length)};
}

HANDLE opened(const std::u16string& path, DWORD how) {
  return CreateFileW(wide(path.c_str()), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, how,
                     FILE_ATTRIBUTE_NORMAL, nullptr);
}

void write(HANDLE file, const std::string& text) {
  DWORD written = 0;
  WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

}  // namespace

void WordLog::beginIn(const std::u16string& folder) noexcept {
  if (!isOn()) return;
  try {
    CreateDirectoryW(wide(folder.c_str()), nullptr);
    const std::u16string path = folder + u"\\word.log";
    HANDLE file = opened(path, OPEN_ALWAYS);
    LARGE_INTEGER size = {};
    if (file != INVALID_HANDLE_VALUE && GetFileSizeEx(file, &size) != 0 && size.QuadPart > kLongest) {
      CloseHandle(file);
      DeleteFileW(wide(path.c_str()));
      file = opened(path, OPEN_ALWAYS);
    }
    if (file == INVALID_HANDLE_VALUE) return;
    file_.reset(file);
    write(file, waiting_);
    waiting_.clear();
  } catch (...) {  // no run fails for its log
    file_.reset();
  }
}

void WordLog::line(std::u16string_view text) noexcept {
  if (!isOn()) return;
  try {
    std::string line = now();
    for (const char unit : base::utf8(text)) line += static_cast<unsigned char>(unit) < ' ' ? ' ' : unit;
    line += "\r\n";
    if (file_) return write(file_.get(), line);
    if (waiting_.size() < kMostWaiting) waiting_ += line;
  } catch (...) {  // the same
    return;
  }
}

void WordLog::refused(std::wstring_view member, HRESULT status) noexcept {
  if (!isOn()) return;
  std::array<char, 16> number = {};
  std::snprintf(number.data(), number.size(), "%08lX", static_cast<unsigned long>(status));
  try {
    line(std::u16string(utf16(member)) + u" refused: " + base::utf16(number.data()));
  } catch (...) {  // the same
    return;
  }
}

}  // namespace pluvo::word_com
