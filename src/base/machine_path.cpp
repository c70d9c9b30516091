#include "base/names.h"

#ifdef _WIN32
#include <windows.h>
#endif

#include <string>

namespace pluvo::base {

#ifdef _WIN32

namespace {

/// Windows' calls take longer paths only in their literal form. Folders stop twelve characters before files.
constexpr std::size_t kLongestPlain = MAX_PATH - 12 - 1;
constexpr std::wstring_view kLiteral = L"\\\\?\\";
constexpr std::wstring_view kShare = L"\\\\";

/// The path in full, without "." and "..", with backslashes: the literal form knows none of those.
std::wstring inFull(const std::wstring& path) {
  std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
  full.resize(GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
  return full;
}

}  // namespace

std::filesystem::path machinePath(std::u16string_view path) {
  const std::wstring plain(path.begin(), path.end());
  if (plain.size() <= kLongestPlain || plain.starts_with(kLiteral)) return plain;
  const std::wstring full = inFull(plain);
  if (full.empty()) return plain;
  if (full.starts_with(kShare)) return std::wstring(kLiteral) + L"UNC" + full.substr(1);
  return std::wstring(kLiteral) + full;
}

std::u16string machineText(const std::filesystem::path& path) {
  return {path.native().begin(), path.native().end()};
}

#else

std::filesystem::path machinePath(std::u16string_view path) { return nameBytes(path); }

std::u16string machineText(const std::filesystem::path& path) { return nameText(path.native()); }

#endif

}  // namespace pluvo::base
