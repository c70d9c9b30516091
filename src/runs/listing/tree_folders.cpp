#include "listing/tree_folders.h"

#include "base/names.h"
#include "base/utf.h"

#include <algorithm>
#include <system_error>

namespace pluvo::runs {

TreeFolders::TreeFolders(files::FileSystem& system, const Selection& selection, std::size_t rootLength,
                         const std::set<Identity>& avoided, const Sentences& sentences, Listing& listing)
    : system_(system),
      selection_(selection),
      rootLength_(rootLength),
      avoided_(avoided),
      sentences_(sentences),
      listing_(listing) {}

std::error_code TreeFolders::forEachEntry(const std::u16string& folder, const Visit& visit) {
  if (const auto known = read_.extract(folder)) {
    std::ranges::for_each(known.mapped(), visit);
  } else {
    // A visit that reads other folders leaves this one where it lies.
    std::ranges::for_each(read_[folder] = read(folder), visit);
  }
  return {};  // the fault is in the listing
}

std::vector<scanner::Entry> TreeFolders::read(const std::u16string& folder) {
  const std::string path = base::nameBytes(folder);
  std::vector<scanner::Entry> entries;
  bool any = false;
  const std::error_code error = machine_->forEachEntry(folder, [&](const scanner::Entry& entry) {
    any = true;
    if (const auto reason = reasonToLeaveOut(folder, entry)) {
      listing_.leftOut.push_back({path + base::nameBytes(entry.name), *reason});
    } else {
      entries.push_back(entry);
    }
  });
  if (error) noteUnreadable(path, error, any);
  return entries;
}

/// One call instead of one for each step of the path.
std::u16string TreeFolders::resolved(const std::u16string& folder) {
  try {
    const files::Stamp stamp = system_.statusAt(base::nameBytes(folder)).stamp;
    return base::utf16(std::to_string(stamp.device) + ":" + std::to_string(stamp.inode));
  } catch (const std::system_error&) {
    return folder;
  }
}

std::optional<Reason> TreeFolders::reasonToLeaveOut(const std::u16string& folder,
                                                    const scanner::Entry& entry) const {
  if (!selection_.excluded.empty()) {
    const std::u16string below = folder.substr(rootLength_) + entry.name;
    if (std::ranges::any_of(selection_.excluded,
                            [&](auto& mask) { return mask.matches(below, entry.isFolder); }))
      return Reason::excluded;
  }
  if (entry.isLink && !selection_.follow) return Reason::link;
  if (!entry.isFolder) return std::nullopt;
  if (entry.name.starts_with(u'.')) return Reason::hiddenFolder;
  if (std::count(folder.begin() + static_cast<std::ptrdiff_t>(rootLength_), folder.end(), u'/') >=
      selection_.levels)
    return Reason::tooDeep;
  if (avoided_.empty()) return std::nullopt;
  try {
    if (avoided_.contains(identityOf(system_.statusAt(base::nameBytes(folder + entry.name)).stamp)))
      return Reason::writtenByRun;
  } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): a missing file was not written
  }
  return std::nullopt;
}

void TreeFolders::noteUnreadable(const std::string& folder, std::error_code error, bool inPart) {
  std::string advice = "check the disk that it is on.";
  if (error == std::errc::permission_denied || error == std::errc::operation_not_permitted)
    advice = sentences_(Trouble::folderRefused);
  if (error == std::errc::filename_too_long)
    advice = "its path is too long; run this from a folder nearer to it.";
  if (error == std::errc::no_such_file_or_directory) advice = "another program moved or deleted it.";
  const std::string reason = " (" + error.message() + "), so ";
  listing_.documents.push_back(
      {folder, "",
       Failure{errors::Problem::io,
               (inPart ? "The folder cannot be read to its end" + reason + "documents in it may be missing; "
                       : "The folder cannot be read" + reason + "nothing in it was looked at; ") +
                   advice}});
}

}  // namespace pluvo::runs
