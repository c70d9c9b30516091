#pragma once

#include "errors/text.h"
#include "multifile/folders.h"

#include <map>
#include <string>
#include <vector>

namespace pluvo::multifile {

/// Folders that are written down: every path of a file makes the folders it lies in.
class ScriptedFolders : public Folders {
 public:
  explicit ScriptedFolders(const std::vector<std::string>& files, std::string separator = "/")
      : separator_(std::move(separator)) {
    for (const std::string& file : files) add(file);
  }

  /// A name that leads to a folder elsewhere.
  void link(const std::string& name, const std::string& target) {
    links_[name] = target;
    add(name);
    entryOf(name).isFolder = true;
  }
  void hide(const std::string& path) { entryOf(path).isHidden = true; }

  void forEachEntry(const std::u16string& folder, const Visit& visit) override {
    ++listings;
    const auto found = folders_.find(errors::nameBytes(resolved(folder)));
    if (found == folders_.end()) return;
    for (const auto& [name, entry] : found->second) visit(entry);
  }

  std::u16string resolved(const std::u16string& folder) override {
    std::string path = errors::nameBytes(folder);
    if (path.ends_with(separator_)) path.pop_back();
    std::string real;
    for (std::size_t at = 0; at != std::string::npos;) {
      const std::size_t end = path.find(separator_, at + 1);
      real += path.substr(at, end == std::string::npos ? end : end - at);
      const auto link = links_.find(real);
      if (link != links_.end()) real = link->second;
      at = end;
    }
    return errors::nameText(real);
  }

  bool isFolder(const std::u16string& path) override {
    const std::string real = errors::nameBytes(resolved(path));
    if (folders_.count(real) != 0) return true;
    const std::size_t at = real.rfind(separator_);
    const auto parent = folders_.find(real.substr(0, at));
    if (at == std::string::npos || parent == folders_.end()) return false;
    const auto entry = parent->second.find(real.substr(at + 1));
    return entry != parent->second.end() && entry->second.isFolder;
  }

  std::vector<std::u16string> drives() override { return driveNames; }

  std::vector<std::u16string> driveNames;
  int listings = 0;

 private:
  void add(const std::string& path) {
    for (std::size_t end = path.find(separator_, 1);; end = path.find(separator_, end + 1)) {
      const bool last = end == std::string::npos;
      const std::string part = path.substr(0, end);
      if (part.find(separator_) != std::string::npos) entryOf(part).isFolder = !last;  // a drive lies nowhere
      if (last) break;
    }
  }
  Entry& entryOf(const std::string& path) {
    const std::size_t at = path.rfind(separator_);
    const std::string name = path.substr(at + 1);
    Entry& entry = folders_[path.substr(0, at)][name];
    entry.name = errors::nameText(name);
    return entry;
  }

  std::string separator_;
  /// In byte order, as a scan must find them.
  std::map<std::string, std::map<std::string, Entry>> folders_;
  std::map<std::string, std::string> links_;
};

}  // namespace pluvo::multifile
