#ifdef _WIN32

#include "base/names.h"
#include "scanner/folders.h"

#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <string>

namespace pluvo::scanner {

namespace {

using base::machinePath;
using base::machineText;

/// Closes its search when it goes.
class Search {
 public:
  explicit Search(const std::filesystem::path& pattern) : handle_(FindFirstFileW(pattern.c_str(), &found_)) {}
  Search(const Search&) = delete;
  Search& operator=(const Search&) = delete;
  ~Search() {
    if (started()) FindClose(handle_);
  }

  bool started() const { return handle_ != INVALID_HANDLE_VALUE; }
  bool next() { return FindNextFileW(handle_, &found_) != 0; }
  const WIN32_FIND_DATAW& found() const { return found_; }

 private:
  WIN32_FIND_DATAW found_ = {};
  HANDLE handle_;
};

/// The target of a path, through links; closed when it is destroyed.
class Opened {
 public:
  explicit Opened(const std::filesystem::path& path)
      : handle_(CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                            OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr)) {}
  Opened(const Opened&) = delete;
  Opened& operator=(const Opened&) = delete;
  ~Opened() {
    if (handle_ != INVALID_HANDLE_VALUE) CloseHandle(handle_);
  }

  /// 0 where there is nothing.
  DWORD pathLength() const { return GetFinalPathNameByHandleW(handle_, nullptr, 0, FILE_NAME_NORMALIZED); }
  DWORD path(std::wstring& buffer) const {
    return GetFinalPathNameByHandleW(handle_, buffer.data(), static_cast<DWORD>(buffer.size()),
                                     FILE_NAME_NORMALIZED);
  }

 private:
  HANDLE handle_;
};

class WindowsFolders : public Folders {
 public:
  std::error_code forEachEntry(const std::u16string& folder, const Visit& visit) override {
    std::error_code error;
    const std::vector<Entry> entries = sortedEntries(folder, error);
    std::ranges::for_each(entries, visit);
    return error;
  }

  std::u16string resolved(const std::u16string& folder) override {
    const Opened opened(machinePath(folder));
    std::wstring path(opened.pathLength(), L'\0');
    path.resize(opened.path(path));
    return path.empty() ? folder : machineText(path);
  }

  bool isFolder(const std::u16string& path) override {
    const DWORD attributes = GetFileAttributesW(machinePath(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  }

  std::vector<std::u16string> drives() override {
    std::vector<std::u16string> drives;
    const DWORD present = GetLogicalDrives();
    for (unsigned at = 0; at < 26; ++at) {
      if ((present >> at & 1U) != 0) drives.push_back({static_cast<char16_t>(u'a' + at), u':'});
    }
    return drives;
  }

 private:
  static std::vector<Entry> sortedEntries(const std::u16string& folder, std::error_code& error) {
    std::vector<Entry> entries;
    Search search(machinePath(folder) / L"*");
    for (bool more = search.started(); more; more = search.next()) {
      const WIN32_FIND_DATAW& found = search.found();
      Entry entry{machineText(found.cFileName), (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0,
                  (found.dwFileAttributes & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM)) != 0};
      if (entry.name != u"." && entry.name != u"..") entries.push_back(std::move(entry));
    }
    // A drive with nothing on it has not even the folder itself.
    if (const DWORD last = GetLastError(); last != ERROR_NO_MORE_FILES && last != ERROR_FILE_NOT_FOUND)
      error.assign(static_cast<int>(last), std::system_category());
    std::ranges::sort(entries, {}, [](const Entry& entry) { return base::nameBytes(entry.name); });
    return entries;
  }
};

}  // namespace

std::unique_ptr<Folders> machineFolders() { return std::make_unique<WindowsFolders>(); }

}  // namespace pluvo::scanner

#endif
