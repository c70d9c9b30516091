#pragma once

#include <memory>
#include <string>
#include <vector>

namespace pluvo::multifile {

struct Entry {
  std::u16string name;
  bool isFolder = false;  ///< links are followed
  bool isHidden = false;  ///< by attribute (hidden or system), not by a dot
};

/// Folders as a scan sees them. Names are texts as errors::nameText makes them.
class Folders {
 public:
  virtual ~Folders() = default;
  /// In byte order of their names, without "." and "..". Nothing for a folder that is not there or cannot be
  /// read.
  virtual std::vector<Entry> entriesOf(const std::u16string& folder) = 0;
  /// The same text for the same folder, whatever links it is reached through.
  virtual std::u16string resolved(const std::u16string& folder) = 0;
  virtual bool isFolder(const std::u16string& path) = 0;
  /// "c:", "d:"; none where there are no drives.
  virtual std::vector<std::u16string> drives() = 0;
};

/// The machine's own. No search stays open behind a call.
std::unique_ptr<Folders> machineFolders();

}  // namespace pluvo::multifile
