#pragma once

#include "base/names.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <tuple>
#include <vector>

namespace pluvo::scanner {

/// The identity of a file, the same under all its names.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t number = 0;
  bool operator==(const FileIdentity&) const = default;
  bool operator<(const FileIdentity& other) const {
    return std::tie(device, number) < std::tie(other.device, other.number);
  }
};

struct Entry {
  std::u16string name;
  bool isFolder = false;  ///< links are followed
  bool isHidden = false;  ///< by attribute (hidden or system), not by a dot
  bool isLink = false;    ///< symbolic, where folders tell
  /// Where reading the folder told it; never of a link.
  std::optional<FileIdentity> identity = std::nullopt;
};

/// Folders as a scan sees them. Names are texts as base::nameText makes them.
class Folders {
 public:
  virtual ~Folders() = default;
  using Visit = std::function<void(const Entry&)>;
  /// Visits the entries of a folder, in byte order of the names, without "." and "..". Nothing for a folder
  /// that is not there or cannot be read; where reading ends half-way, the entries read until then. Returns
  /// why it could not be read to its end. A visit may enter other folders.
  virtual std::error_code forEachEntry(const std::u16string& folder, const Visit& visit) = 0;
  /// The same text for the same folder, whatever links it is reached through.
  virtual std::u16string resolved(const std::u16string& folder) = 0;
  virtual bool isFolder(const std::u16string& path) = 0;
  /// "c:", "d:"; none where there are no drives.
  virtual std::vector<std::u16string> drives() = 0;
};

/// The machine's own. No search stays open after a call.
std::unique_ptr<Folders> machineFolders();

}  // namespace pluvo::scanner
