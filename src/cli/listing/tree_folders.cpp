#include "listing/tree_folders.h"

#include "errors/text.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

namespace pluvo::cli {

TreeFolders::TreeFolders(files::FileSystem& system, const Selection& selection, std::size_t rootLength,
                         const std::set<Identity>& avoided, Listing& listing)
    : system_(system), selection_(selection), rootLength_(rootLength), avoided_(avoided), listing_(listing) {}

void TreeFolders::forEachEntry(const std::u16string& folder, const Visit& visit) {
  if (const auto known = read_.extract(folder)) {
    std::ranges::for_each(known.mapped(), visit);
    return;
  }
  // A visit that reads other folders leaves this one where it lies.
  std::ranges::for_each(read_[folder] = read(folder), visit);
}

std::vector<multifile::Entry> TreeFolders::read(const std::u16string& folder) {
  const std::string path = errors::nameBytes(folder);
  std::vector<multifile::Entry> entries;
  bool any = false;
  machine_->forEachEntry(folder, [&](const multifile::Entry& entry) {
    any = true;
    if (const std::string_view reason = reasonToLeaveOut(folder, entry); !reason.empty()) {
      listing_.leftOut.push_back({path + errors::nameBytes(entry.name), reason});
    } else {
      entries.push_back(entry);
    }
  });
  if (!any) noteUnreadable(path);
  return entries;
}

/// One call instead of one for each step of the path.
std::u16string TreeFolders::resolved(const std::u16string& folder) {
  try {
    const files::Stamp stamp = system_.statusAt(errors::nameBytes(folder)).stamp;
    return errors::utf16(std::to_string(stamp.device) + ":" + std::to_string(stamp.inode));
  } catch (const std::system_error&) {
    return folder;
  }
}

std::string_view TreeFolders::reasonToLeaveOut(const std::u16string& folder,
                                               const multifile::Entry& entry) const {
  const std::u16string below = folder.substr(rootLength_) + entry.name;
  if (std::ranges::any_of(selection_.excluded,
                          [&](auto& mask) { return mask.matches(below, entry.isFolder); }))
    return "excluded";
  if (entry.isLink && !selection_.follow) return kLink;
  if (!entry.isFolder) return "";
  if (entry.name.starts_with(u'.')) return "hidden folder";
  if (avoided_.empty()) return "";
  try {
    return avoided_.contains(identityOf(system_.statusAt(errors::nameBytes(folder + entry.name)).stamp))
               ? kWrittenByRun
               : "";
  } catch (const std::system_error&) {
    return "";
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
