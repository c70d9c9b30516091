#include "files/shared_flush.h"

namespace pluvo::files {

std::uint64_t SharedFlush::ask() {
  const std::lock_guard guard(mutex_);
  return begun_ + 1;  // one that is going on may have missed what was written
}

void SharedFlush::flush(FileSystem& system, Handle file, std::uint64_t asked) {
  std::unique_lock lock(mutex_);
  while (done_ < asked) {
    if (failure_) std::rethrow_exception(failure_);
    if (isGoing_) {
      ended_.wait(lock);
      continue;
    }
    isGoing_ = true;
    ++begun_;
    lock.unlock();
    std::exception_ptr failure;
    try {
      system.flush(file);
    } catch (...) {
      failure = std::current_exception();
    }
    lock.lock();
    isGoing_ = false;
    if (failure) {
      failure_ = failure;
    } else {
      done_ = begun_;
    }
    ended_.notify_all();
  }
}

std::shared_ptr<SharedFlush> FolderFlushes::of(FileSystem& system, const OpenFolder& folder) {
  const Stamp stamp = system.status(folder.handle()).stamp;
  const std::lock_guard guard(mutex_);
  std::weak_ptr<SharedFlush>& known = folders_[{stamp.device, stamp.inode}];
  if (auto flush = known.lock()) return flush;
  const auto flush = std::make_shared<SharedFlush>();
  known = flush;
  std::erase_if(folders_, [](const auto& each) { return each.second.expired(); });
  return flush;
}

}  // namespace pluvo::files
