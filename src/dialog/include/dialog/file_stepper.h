#pragma once

#include "word/word_processor.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace pluvo::dialog {

class clsProcessFind;

/// The way of a clsProcessFind to files, implemented by the multi-file driver on the floor above; its members
/// of these names pass through to it, and report the faults that it lets out.
class FileStepper {
 public:
  virtual ~FileStepper() = default;

  virtual std::vector<std::u16string> GetFiles(clsProcessFind& engine, bool subFolders,
                                               std::int16_t depth) = 0;
  virtual void MultiPLUVO(clsProcessFind& engine, const std::vector<std::u16string>& files) = 0;
  /// On true the index is that of the file now open.
  virtual bool MultiPLUVO_OpenNextFile(clsProcessFind& engine, const std::vector<std::u16string>& files,
                                       std::int32_t& index) = 0;
  virtual void MultiPLUVO_CloseFile(clsProcessFind& engine) = 0;
  virtual std::u16string BrowseForFolder(clsProcessFind& engine, const std::u16string& start) = 0;

  /// The document of the file being processed; none between files.
  virtual std::shared_ptr<word::Document> currentDocument() = 0;
};

}  // namespace pluvo::dialog
