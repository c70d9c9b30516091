#pragma once

#include "errors/context.h"
#include "fileops/file_actions.h"
#include "forms/control.h"
#include "forms/message_boxes.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace pluvo::fileops {

/// Copies a file, creates and deletes folders, deletes a file, registers a component library. Nothing returns
/// a result: what fails sets Failures.
///
/// A full name is the folder's text followed by the file's; a folder that is given without a separator after
/// it gets one.
class clsFileOperations {
 public:
  /// All of them outlive this. The separator is the word processor's.
  clsFileOperations(errors::Context& context, forms::MessageBoxes& boxes, FileActions& actions,
                    std::u16string separator);

  void FailuresReset() { failures_ = false; }
  /// Whether anything has failed since the last reset.
  bool Failures() const { return failures_; }

  const std::u16string& DeletePath() const { return deletePath_; }
  void DeletePath(std::u16string_view folder) { deletePath_ = asFolder(folder); }
  const std::u16string& DeleteFileName() const { return deleteFileName_; }
  void DeleteFileName(std::u16string name) { deleteFileName_ = std::move(name); }
  /// The behaviour of Copy when the destination folder is missing: 0 asks, 1 creates it, 2 fails; any other
  /// value gives up without failing.
  std::int32_t AutoCreateFolders() const { return autoCreateFolders_; }
  void AutoCreateFolders(std::int32_t policy) { autoCreateFolders_ = policy; }
  const std::u16string& SourceFile() const { return sourceFile_; }
  void SourceFile(std::u16string name) { sourceFile_ = std::move(name); }
  const std::u16string& SourcePath() const { return sourcePath_; }
  void SourcePath(std::u16string_view folder) { sourcePath_ = asFolder(folder); }
  const std::u16string& DestinationFile() const { return destinationFile_; }
  void DestinationFile(std::u16string name) { destinationFile_ = std::move(name); }
  const std::u16string& DestinationPath() const { return destinationPath_; }
  void DestinationPath(std::u16string_view folder) { destinationPath_ = asFolder(folder); }

  /// Tries at most twice, the second time after a folder creation.
  void Copy();
  /// Creates DestinationPath.
  void CreateFolder();
  void DeleteFile();
  /// Deletes DeletePath, which must be empty.
  void DeleteFolder();
  /// An empty path is the destination. Whether the tool succeeded is not known. Fails where libraries are not
  /// registered (anywhere but on Windows).
  void RegisterDLL(const std::u16string& library);
  void UnRegisterDLL(const std::u16string& library);

  /// A copy failed: the machine's error number, the source's and the destination's full names.
  forms::Event<ErrorCode, std::u16string, std::u16string> CopyFailed;

 private:
  std::u16string asFolder(std::u16string_view folder) const;
  bool makeDestinationFolder();
  void runRegistration(std::u16string_view options, const std::u16string& library);
  void note(ErrorCode error) { failures_ = failures_ || error != kDone; }

  errors::Context& context_;
  forms::MessageBoxes& boxes_;
  FileActions& actions_;
  std::u16string separator_;

  bool failures_ = false;
  std::u16string deletePath_;
  std::u16string deleteFileName_;
  std::int32_t autoCreateFolders_ = 0;
  std::u16string sourceFile_;
  std::u16string sourcePath_;
  std::u16string destinationFile_;
  std::u16string destinationPath_;
};

}  // namespace pluvo::fileops
