#pragma once

#include "base/names.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace pluvo::fileops {

/// The machine's number for an error; 0 is none.
using ErrorCode = std::int32_t;
inline constexpr ErrorCode kDone = 0;
/// A folder on the way is missing. The same number on every machine.
inline constexpr ErrorCode kPathNotFound = 3;

/// The calls that clsFileOperations makes on the machine. Paths are texts as base::nameText makes them.
class FileActions {
 public:
  virtual ~FileActions() = default;
  /// Over whatever file has the new name.
  virtual ErrorCode copy(const std::u16string& from, const std::u16string& to) = 0;
  virtual ErrorCode createFolder(const std::u16string& path) = 0;
  virtual ErrorCode deleteFile(const std::u16string& path) = 0;
  /// The folder must be empty.
  virtual ErrorCode deleteFolder(const std::u16string& path) = 0;
  /// Where the machine keeps its tool for registering libraries; nothing where there is none.
  virtual std::optional<std::u16string> systemFolder() = 0;
  /// Starts a program without a window and does not wait for it. Returns its process id, 0 when it could not
  /// be started.
  virtual std::uint32_t startHidden(const std::u16string& commandLine) = 0;
};

std::unique_ptr<FileActions> machineFileActions();

}  // namespace pluvo::fileops
