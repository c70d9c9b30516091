#include "disk.h"

#include "errors/text.h"

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace pluvo::stand_in::disk {

namespace fs = std::filesystem;

std::optional<std::u16string> read(const std::u16string& path) {
  std::ifstream file(fs::path(path), std::ios::binary);
  if (!file || fs::is_directory(fs::path(path))) return std::nullopt;
  std::string bytes{std::istreambuf_iterator<char>(file), {}};
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.erase(0, 3);
  return errors::utf16(bytes);
}

bool write(const std::u16string& path, const std::u16string& text) {
  std::string bytes;
  for (const char unit : errors::utf8(text)) {
    bytes += unit;
    if (unit == '\r') bytes += '\n';
  }
  std::ofstream file(fs::path(path), std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  return file.good();
}

bool isReadOnly(const std::u16string& path) {
  const std::wstring wide(path.begin(), path.end());
  const DWORD attributes = GetFileAttributesW(wide.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

}  // namespace pluvo::stand_in::disk
