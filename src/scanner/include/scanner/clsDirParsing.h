#pragma once

#include "errors/context.h"
#include "scanner/folder_collection.h"
#include "scanner/folders.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::scanner {

/// Lists the files below a folder whose names match one of a set of masks (see mask.h), folder by folder and
/// mask by mask. A file that two masks match is listed twice.
///
/// A list with nothing in it is one empty entry. Texts are joined as they stand, so that every folder must
/// end with the separator.
class clsDirParsing {
 public:
  /// Context and folders outlive the scanner. The separator is the word processor's.
  clsDirParsing(errors::Context& context, Folders& folders, std::u16string separator);

  /// How many levels below the root are searched; 0 and less are as 1.
  std::int16_t DirectoriesDeep() const { return deep_; }
  void DirectoriesDeep(std::int16_t levels) { deep_ = levels; }
  /// Masks between commas. An empty one takes every file.
  std::u16string MasksCSstr() const;
  void MasksCSstr(std::u16string_view masks);
  const std::u16string& RootDirectory() const { return root_; }
  void RootDirectory(std::u16string folder) { root_ = std::move(folder); }
  bool ProcessSubDirectories() const { return subFolders_; }
  void ProcessSubDirectories(bool value) { subFolders_ = value; }
  /// 0 for the files; with any other value ProcessItems gives GetDirs.
  std::int32_t ItemsToProcess() const { return itemsToProcess_; }
  void ItemsToProcess(std::int32_t kind) { itemsToProcess_ = kind; }
  /// The files that the last scan found.
  const std::vector<std::u16string>& ProcessedItems() const { return items_; }
  /// Of each of them that is a file, where the scan came to know it; see Entry.
  const std::vector<std::optional<FileIdentity>>& identities() const { return identities_; }

  void ProcessItems();

  /// Adds the folders below a folder, each before its own sub-folders, as long as the level is less than the
  /// maximum depth minus 1. Folders whose names begin with a dot are left out.
  void GetSubdirs(const std::u16string& folder, FolderCollection& folders, std::int16_t& level,
                  std::int16_t& maximumDepth);

  // Kept for their names; no scan uses them.

  void FileTypes(std::u16string types) { fileTypes_ = std::move(types); }
  /// One empty entry from the first scan on: no walk fills this list.
  std::vector<std::u16string> GetDirs() const { return dirs_; }
  /// The older walk. It goes one level deeper for the same depth, and enters folders whose names begin with a
  /// dot, but not those hidden by attribute.
  void GetSubdirsOld2(const std::u16string& folder, FolderCollection& folders, std::int16_t& level,
                      std::int16_t& maximumDepth);

 private:
  using Descend = std::function<void(const std::u16string& folder)>;
  /// Adds the sub-folders that are taken, and goes down into each; nowhere without a way down.
  void addSubFolders(const std::u16string& folder, FolderCollection& folders, std::int16_t level,
                     bool (*taken)(const Entry&), const Descend& descend);
  void forEachMatching(const std::u16string& pattern, const Folders::Visit& visit);
  void listFiles(const std::u16string& folder, std::size_t& index);

  errors::Context& context_;
  Folders& folders_;
  std::u16string separator_;

  std::int16_t deep_ = 32000;
  std::vector<std::u16string> masks_;
  std::u16string root_;
  bool subFolders_ = false;
  std::int32_t itemsToProcess_ = 0;
  std::u16string fileTypes_;
  std::vector<std::u16string> dirs_;
  std::vector<std::u16string> items_;
  std::vector<std::optional<FileIdentity>> identities_;
};

}  // namespace pluvo::scanner
