#pragma once

#include "errors/context.h"
#include "forms/message_boxes.h"

#include <cstddef>
#include <memory>
#include <string>

namespace pluvo::fileops {
class FileActions;
}

namespace pluvo::multifile {

/// Copies of files as they were before a run changed them. Each run has a folder of its own, named by the
/// time, in which they lie as they did below the folder that was searched. It is made with the first copy.
class Originals {
 public:
  /// The run's folder is made in `Originals` in the folder given, which ends with a separator. Context and
  /// boxes outlive this.
  Originals(errors::Context& context, forms::MessageBoxes& boxes, std::u16string folder,
            std::u16string separator);
  Originals(const Originals&) = delete;
  Originals& operator=(const Originals&) = delete;
  ~Originals();

  /// Another run begins; the files below this folder keep their places.
  void begin(std::u16string searched);
  /// Copies the file. False: it could not be copied, and the user wants it left as it is.
  bool keep(const std::u16string& path);

  /// How many files the run copied, and where they are.
  std::size_t count() const { return count_; }
  const std::u16string& folder() const { return run_; }
  /// A sentence of that; empty where there are none.
  std::u16string told() const;

 private:
  bool makeRunFolder();
  void makeFolders(const std::u16string& path);
  bool copy(const std::u16string& path);

  errors::Context& context_;
  forms::MessageBoxes& boxes_;
  std::u16string folder_;
  std::u16string separator_;
  std::unique_ptr<fileops::FileActions> actions_;
  std::u16string searched_;
  std::u16string run_;
  std::size_t count_ = 0;
};

}  // namespace pluvo::multifile
