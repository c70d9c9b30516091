#pragma once

#include "base/names.h"
#include "scanner/folders.h"

#include <map>
#include <string>
#include <vector>

namespace pluvo::scanner {

/// Folders that are written down: every path of a file makes the folders it lies in.
class ScriptedFolders : public Folders {
 public:
  explicit ScriptedFolders(const std::vector<std::string>& files, std::string separator = "/")
      : separator_(std::move(separator)) {
    for (const std::string& file : files) add(file, false);
  }

  /// A name that leads to a folder elsewhere.
  void link(const std::string& name, const std::string& target) {
    links_[name] = target;
    add(name, true);
  }
  void hide(const std::string& path) { entries_.at(path).isHidden = true; }

  std::error_code forEachEntry(const std::u16string& folder, const Visit& visit) override {
    const std::string real = base::nameBytes(resolved(folder));
    for (const auto& [path, entry] : entries_) {
      if (path != real && path.substr(0, path.rfind(separator_)) == real) visit(entry);
    }
    return {};
  }

  std::u16string resolved(const std::u16string& folder) override {
    std::string path = base::nameBytes(folder);
    if (path.ends_with(separator_)) path.pop_back();
    std::string real;
    for (std::size_t at = 0; at != std::string::npos;) {
      const std::size_t end = path.find(separator_, at + 1);
      real += path.substr(at, end == std::string::npos ? end : end - at);
      const auto link = links_.find(real);
      if (link != links_.end()) real = link->second;
      at = end;
    }
    return base::nameText(real);
  }

  bool isFolder(const std::u16string& path) override {
    const auto entry = entries_.find(base::nameBytes(resolved(path)));
    return entry != entries_.end() && entry->second.isFolder;
  }

  std::vector<std::u16string> drives() override { return driveNames; }

  std::vector<std::u16string> driveNames;

 private:
  /// A drive, and the root, lie nowhere.
  void add(const std::string& path, bool isFolder) {
    const std::size_t at = path.rfind(separator_);
    entries_.try_emplace(path, Entry{base::nameText(path.substr(at + 1)), isFolder});
    if (at != std::string::npos) add(path.substr(0, at), true);
  }

  std::string separator_;
  /// By their paths, and so in byte order, as a scan must find them.
  std::map<std::string, Entry> entries_;
  std::map<std::string, std::string> links_;
};

}  // namespace pluvo::scanner
