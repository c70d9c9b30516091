#include "listing/tree_folders.h"

#include "errors/text.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

namespace pluvo::cli {

bool matchesOne(const std::vector<multifile::Mask>& masks, const std::u16string& name) {
  return std::any_of(masks.begin(), masks.end(), [&](auto& mask) { return mask.matches(name); });
}

TreeFolders::TreeFolders(files::FileSystem& system, const std::vector<multifile::Mask>& excluded,
                         const std::set<Identity>& avoided, Listing& listing)
    : system_(system), excluded_(excluded), avoided_(avoided), listing_(listing) {}

std::vector<multifile::Entry> TreeFolders::entriesOf(const std::u16string& folder) {
  if (const auto known = read_.find(folder); known != read_.end()) {
    auto entries = std::move(known->second);
    read_.erase(known);
    return entries;
  }
  const std::string path = errors::nameBytes(folder);
  std::vector<multifile::Entry> entries = machine_->entriesOf(folder);
  if (entries.empty()) noteUnreadable(path);
  std::erase_if(entries, [&](const multifile::Entry& entry) {
    const std::string entryPath = path + errors::nameBytes(entry.name);
    const char* const reason = reasonToLeaveOut(entryPath, entry);
    if (reason != nullptr) listing_.leftOut.push_back({entryPath, reason});
    return reason != nullptr;
  });
  read_.emplace(folder, entries);
  return entries;
}

/// One call instead of one for each step of the path.
std::u16string TreeFolders::resolved(const std::u16string& folder) {
  try {
    const auto [device, inode] = identityOf(system_.statusAt(errors::nameBytes(folder)).stamp);
    return errors::utf16(std::to_string(device) + ":" + std::to_string(inode));
  } catch (const std::system_error&) {
    return folder;
  }
}

const char* TreeFolders::reasonToLeaveOut(const std::string& path, const multifile::Entry& entry) const {
  if (matchesOne(excluded_, entry.name)) return "excluded";
  if (!entry.isFolder) return nullptr;
  if (entry.name.starts_with(u'.')) return "hidden folder";
  if (avoided_.empty()) return nullptr;
  try {
    return avoided_.count(identityOf(system_.statusAt(path).stamp)) > 0 ? "written by this run" : nullptr;
  } catch (const std::system_error&) {
    return nullptr;
  }
}

void TreeFolders::noteUnreadable(const std::string& folder) {
  if (::access(folder.c_str(), R_OK | X_OK) == 0) return;
  listing_.documents.push_back(
      {folder, "",
       Failure{files::Problem::io, std::string("The folder cannot be read (") + std::strerror(errno) +
                                       "), so nothing in it was looked at; ask its "
                                       "owner, or leave it out with --exclude."}});
}

}  // namespace pluvo::cli
