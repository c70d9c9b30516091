#pragma once

#include "files/file_system.h"
#include "runs/listing.h"
#include "scanner/folders.h"

#include <set>
#include <unordered_map>
#include <utility>

namespace pluvo::runs {

using Identity = scanner::FileIdentity;
inline Identity identityOf(const files::Stamp& stamp) { return {stamp.device, stamp.inode}; }

/// The machine's folders as a scan is to see them, without excluded entries. Each is read from the disk once
/// though a scan asks twice. Entries that the scan does not see are told.
class TreeFolders final : public scanner::Folders {
 public:
  /// All of them outlive it.
  /// The length is that of the root's path, with the slash.
  TreeFolders(files::FileSystem& system, const Selection& selection, std::size_t rootLength,
              const std::set<Identity>& avoided, const Sentences& sentences, Listing& listing);

  std::error_code forEachEntry(const std::u16string& folder, const Visit& visit) override;
  std::u16string resolved(const std::u16string& folder) override;
  bool isFolder(const std::u16string& path) override { return machine_->isFolder(path); }
  std::vector<std::u16string> drives() override { return machine_->drives(); }

 private:
  std::vector<scanner::Entry> read(const std::u16string& folder);
  /// None for an entry that is taken.
  std::optional<Reason> reasonToLeaveOut(const std::u16string& folder, const scanner::Entry& entry) const;
  void noteUnreadable(const std::string& folder, std::error_code error, bool inPart);

  files::FileSystem& system_;
  const Selection& selection_;
  const std::size_t rootLength_;
  const std::set<Identity>& avoided_;
  const Sentences& sentences_;
  Listing& listing_;
  std::unique_ptr<scanner::Folders> machine_ = scanner::machineFolders();
  std::unordered_map<std::u16string, std::vector<scanner::Entry>> read_;
};

}  // namespace pluvo::runs
