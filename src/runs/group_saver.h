#pragma once

#include "document_run.h"

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <list>
#include <mutex>
#include <thread>
#include <vector>

namespace pluvo::runs {

/// Threads that save new versions, so that working threads need not wait for the disk. Versions are flushed
/// together, and put in their places together, so that they share what the disk writes for each flush.
class GroupSaver {
 public:
  struct Version {
    std::size_t document;  ///< its number in the list
    Worked worked;
  };
  /// Takes a version that is saved, or failed, on any thread. It must not throw.
  using Done = std::function<void(Version)>;

  /// With no threads, add() saves by itself.
  GroupSaver(std::size_t threads, Done done);
  GroupSaver(const GroupSaver&) = delete;
  GroupSaver& operator=(const GroupSaver&) = delete;
  /// Returns when all are saved.
  ~GroupSaver();

  /// Returns at once unless there are so many versions here that their open files could become too many.
  void add(Version version);

 private:
  using Versions = std::list<Version>;  ///< moved from list to list without taking memory

  void saveAll();
  bool awaitVersions(std::unique_lock<std::mutex>& lock);
  bool isWhole() const;
  Versions gathered(std::unique_lock<std::mutex>& lock);
  void finish(Versions group) const;

  const Done tell_;
  std::mutex mutex_;
  std::condition_variable added_;
  std::condition_variable done_;
  std::condition_variable whole_;
  Versions versions_;         ///< to be flushed
  std::size_t released_ = 0;  ///< of these, which wait for no others
  bool isWatched_ = false;    ///< a thread releases them after a while
  Versions group_;            ///< flushed, and not in their places
  std::size_t flushing_ = 0;  ///< threads
  std::size_t inHand_ = 0;    ///< versions that are not yet done
  bool isLast_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace pluvo::runs
