#pragma once

#include "memory/document.h"

#include <memory>
#include <string>

namespace pluvo::memory {

/// The file behind an open document.
class DocumentFile {
 public:
  virtual ~DocumentFile() = default;
  /// Whether the document may not be saved under its name, as things are now.
  virtual bool readOnly() const = 0;
  /// Whether the path leads to this file, under whatever name.
  virtual bool isAt(const std::string& /*path*/) const { return false; }
  /// Saves the document, a read-only one under a name that the user gives. Fault 5155 where it is read-only
  /// and the user gives none.
  virtual void save() = 0;
};

struct OpenedFile {
  std::shared_ptr<MemoryDocument> document;
  std::shared_ptr<DocumentFile> file;
};

/// Where documents come from.
class DocumentOpener {
 public:
  virtual ~DocumentOpener() = default;
  /// Throws Fault: 5174 where there is no such file, 4605 where it is encrypted.
  virtual OpenedFile open(const std::string& path) = 0;
};

}  // namespace pluvo::memory
