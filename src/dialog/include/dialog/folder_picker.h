#pragma once

#include <string>

namespace pluvo::dialog {

/// The window in which the user chooses a folder. Made for one showing.
class FolderPicker {
 public:
  virtual ~FolderPicker() = default;
  virtual void SetStartingDirectory(const std::u16string& folder) = 0;
  /// Shows the window and returns when it is gone.
  virtual void choose() = 0;
  /// Whether the user chose; closing the window is not choosing.
  virtual bool selected() const = 0;
  /// The folder shown.
  virtual std::u16string path() const = 0;
};

}  // namespace pluvo::dialog
