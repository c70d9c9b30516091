#pragma once

#include "files/file_system.h"

#include <condition_variable>
#include <cstdint>
#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace pluvo::files {

/// Flushes of one file or folder that many ask for. A flush serves all who asked before it began, so that the
/// disk has fewer to do. May be used from several threads.
class SharedFlush {
 public:
  /// To be called after writing. What was written by then is on disk when flush() of this number returns.
  std::uint64_t ask();
  /// Throws std::system_error where the flush fails, and in every flush that begins later: a disk tells of a
  /// loss only once, and not whose it was.
  void flush(FileSystem& system, Handle file, std::uint64_t asked);

 private:
  std::mutex mutex_;
  std::condition_variable ended_;
  bool isGoing_ = false;
  std::uint64_t begun_ = 0;
  std::uint64_t done_ = 0;
  std::exception_ptr failure_;
};

/// The shared flushes of folders.
class FolderFlushes {
 public:
  /// The one of this folder, by whatever handle; forgotten when nobody holds it any more.
  std::shared_ptr<SharedFlush> of(FileSystem& system, const OpenFolder& folder);

 private:
  using Key = std::pair<std::uint64_t, std::uint64_t>;  ///< device and inode
  std::mutex mutex_;
  std::map<Key, std::weak_ptr<SharedFlush>> folders_;
};

}  // namespace pluvo::files
