#ifdef _WIN32

#include "errors/text.h"
#include "multifile/folders.h"

#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace pluvo::multifile {

namespace {

namespace fs = std::filesystem;

/// Closes its search when it goes.
class Search {
 public:
  explicit Search(const fs::path& pattern) : handle_(FindFirstFileW(pattern.c_str(), &found_)) {}
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

class WindowsFolders : public Folders {
 public:
  void forEachEntry(const std::u16string& folder, const Visit& visit) override {
    const std::vector<Entry> entries = sortedEntries(folder);
    std::ranges::for_each(entries, visit);
  }

  std::u16string resolved(const std::u16string& folder) override {
    std::error_code error;
    const fs::path path = fs::canonical(fs::path(folder), error);
    return error ? folder : path.u16string();
  }

  bool isFolder(const std::u16string& path) override {
    std::error_code error;
    return fs::is_directory(fs::path(path), error);
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
  static std::vector<Entry> sortedEntries(const std::u16string& folder) {
    std::vector<Entry> entries;
    Search search(fs::path(folder) / L"*");
    for (bool more = search.started(); more; more = search.next()) {
      const WIN32_FIND_DATAW& found = search.found();
      Entry entry{fs::path(found.cFileName).u16string(),
                  (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0,
                  (found.dwFileAttributes & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM)) != 0};
      if (entry.name != u"." && entry.name != u"..") entries.push_back(std::move(entry));
    }
    std::ranges::sort(entries, {}, [](const Entry& entry) { return errors::nameBytes(entry.name); });
    return entries;
  }
};

}  // namespace

std::unique_ptr<Folders> machineFolders() { return std::make_unique<WindowsFolders>(); }

}  // namespace pluvo::multifile

#endif
