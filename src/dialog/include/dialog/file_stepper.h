#pragma once

#include "word/word_processor.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pluvo::dialog {

class clsProcessFind;

/// The way of a clsProcessFind to files: that of a word processor, which is the multi-file driver on the
/// floor above, or a program's own. Its members of these names pass through to it, and report the faults that
/// it lets out.
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
  /// The user goes on with the run no more: no other file is opened, and the one at hand stays open.
  virtual void abandon(clsProcessFind& /*engine*/) {}
  virtual std::u16string BrowseForFolder(clsProcessFind& engine, const std::u16string& start) = 0;

  /// A sentence about what the last run leaves besides the files; empty where there is nothing to tell.
  virtual std::u16string toldOfRun() const { return {}; }

  /// The document of the file being processed; none between files.
  virtual std::shared_ptr<word::Document> currentDocument() = 0;

  /// Told of each file before it is worked on: its path, and which it is of how many, counted from 1.
  std::function<void(const std::u16string& path, std::size_t number, std::size_t count)> fileBegins =
      [](const std::u16string&, std::size_t, std::size_t) {};
};

}  // namespace pluvo::dialog
