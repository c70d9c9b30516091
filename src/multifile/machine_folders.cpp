#ifndef _WIN32

#include "errors/text.h"
#include "multifile/folders.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace pluvo::multifile {

namespace {

namespace fs = std::filesystem;

class MachineFolders : public Folders {
 public:
  std::vector<Entry> entriesOf(const std::u16string& folder) override {
    struct Found {
      std::string name;
      bool isFolder;
    };
    std::vector<Found> found;
    std::error_code error;
    for (fs::directory_iterator at(errors::nameBytes(folder), error), end; !error && at != end;
         at.increment(error)) {
      std::error_code unreadable;
      found.push_back({at->path().filename().native(), at->is_directory(unreadable)});
    }
    std::ranges::sort(found, {}, &Found::name);
    std::vector<Entry> entries;
    entries.reserve(found.size());
    for (const Found& one : found) entries.push_back({errors::nameText(one.name), one.isFolder, false});
    return entries;
  }

  std::u16string resolved(const std::u16string& folder) override {
    std::error_code error;
    const fs::path path = fs::canonical(errors::nameBytes(folder), error);
    return error ? folder : errors::nameText(path.native());
  }

  bool isFolder(const std::u16string& path) override {
    std::error_code error;
    return fs::is_directory(errors::nameBytes(path), error);
  }

  std::vector<std::u16string> drives() override { return {}; }
};

}  // namespace

std::unique_ptr<Folders> machineFolders() { return std::make_unique<MachineFolders>(); }

}  // namespace pluvo::multifile

#endif
