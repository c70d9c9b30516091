#pragma once

#include "forms/list_box.h"
#include "scanner/folders.h"

#include <string>
#include <vector>

namespace pluvo::dialog {

/// A list that shows one folder in its tree: the folders it lies in, from the root, itself, and the folders
/// in it. Opening a row shows that folder.
class FolderList final : public forms::ListBox {
 public:
  /// The folders outlive it. The separator stands between the folders of a path.
  FolderList(std::u16string name, scanner::Folders& folders, std::u16string separator);

  /// The folder shown, with a separator after it only where it is a root.
  const std::u16string& Path() const { return path_; }
  /// Throws Fault kPathNotFound where the path is no folder; the list then stays as it is.
  void Path(const std::u16string& folder);
  void Refresh();

 private:
  void addRow(std::vector<std::u16string>& texts, std::u16string path, std::u16string_view name,
              std::size_t depth);

  scanner::Folders& folders_;
  std::u16string separator_;
  std::u16string path_;
  /// Of the rows, in their order.
  std::vector<std::u16string> paths_;
};

}  // namespace pluvo::dialog
