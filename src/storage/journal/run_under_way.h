#pragma once

#include "files/shared_flush.h"
#include "record.h"
#include "run_folder.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

namespace pluvo::journal {

/// The run that is being recorded, its folder and its journal held open. While documents are replaced,
/// several threads use it, each with the mutex held.
struct RunUnderWay {
  RunUnderWay(files::FileSystem& itsSystem, std::string itsFolder)
      : system(itsSystem), folder(std::move(itsFolder)) {}

  files::FileSystem& system;
  const std::string folder;  ///< of the runs, for messages
  std::unique_ptr<OwnFolder> runs = {};
  std::string name = {};
  std::string undoName = {};  ///< of the run that it is taken back with
  std::unique_ptr<OwnFolder> run = {};
  std::unique_ptr<files::OpenFile> lockOfNamed = {};  ///< shared by the slices of a run with a name
  std::unique_ptr<files::OpenFile> lock = {};
  std::optional<files::OpenFile> journal = std::nullopt;
  bool keepsOriginals = true;
  bool torn = false;  ///< the journal's last line may lack its end

  /// Used without the mutex.
  files::SharedFlush journalFlush = {};
  files::SharedFlush runFlush = {};
  files::SharedFlush runsFlush = {};

  mutable std::mutex mutex = {};
  bool namesAsked = false;     ///< the first document has begun to flush these names
  bool namesOnDisk = false;    ///< of the run's folder and the journal in it
  std::uint64_t numbers = 0;   ///< given to originals
  std::uint64_t replaced = 0;  ///< documents, kept or not
  std::uint64_t notKept = 0;
  std::uint64_t size = 0;  ///< of this run's originals

  void append(const std::string& lines);
  void append(const Record& record) { append(lineOf(record)); }
};

/// Writes all of the bytes.
void writeAll(files::FileSystem& system, files::Handle file, base::ByteSpan bytes);

/// Failures of the disk become DocumentErrors that name the folder.
template <class Work>
void guarded(const std::string& folder, Work work) {
  try {
    work();
  } catch (const std::system_error& failure) {
    throw journalFailed(failure, folder);
  }
}

}  // namespace pluvo::journal
