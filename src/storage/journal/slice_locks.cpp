#include "slice_locks.h"

#include "files/locking.h"
#include "slice_folder.h"

#include <unistd.h>

#include <chrono>
#include <exception>
#include <sstream>
#include <thread>
#include <utility>

namespace pluvo::journal {

namespace {

using errors::DocumentError;
using errors::Problem;

/// The last line of a lock: the machine and the process that held it last.
std::pair<std::string, std::string> holderIn(files::FileSystem& system, const OwnFolder& slice) {
  try {
    std::istringstream lines(textOf(system, slice.at(kLock)));
    std::pair<std::string, std::string> holder;
    for (std::string machine, process; lines >> machine >> process;) holder = {machine, process};
    return holder;
  } catch (const std::exception&) {
    return {};
  }
}

std::string holderInWords(const std::pair<std::string, std::string>& holder) {
  return holder.first.empty() ? "" : " (process " + holder.second + " on " + holder.first + ")";
}

}  // namespace

std::unique_ptr<files::OpenFile> holdNamed(files::FileSystem& system, const OwnFolder& run,
                                           files::Hold hold) {
  auto lock = std::make_unique<files::OpenFile>(system, system.openToAppend(run.at(kLock)));
  const bool isHeld = system.tryHold(lock->handle(), hold) && system.status(lock->handle()).names > 0;
  return isHeld ? std::move(lock) : nullptr;
}

std::unique_ptr<files::OpenFile> holdSlice(files::FileSystem& system, const OwnFolder& slice,
                                           const std::string& what) {
  // A program that only asks whether the slice is going on holds it for a moment.
  constexpr int kTries = 20;
  std::unique_ptr<files::OpenFile> lock;
  for (int i = 0; i < kTries && lock == nullptr; ++i) {
    if (i > 0) std::this_thread::sleep_for(std::chrono::milliseconds(50));
    lock = lockRun(system, slice);
  }
  const auto holder = holderIn(system, slice);
  if (lock == nullptr)
    throw DocumentError(Problem::locked, what + " is still going on" + holderInWords(holder) +
                                             "; wait for its end, or interrupt it.");
  const bool isOthers = !holder.first.empty() && holder.first != thisMachine();
  const files::Locking locking = isOthers ? files::lockingAt(slice.path()) : files::Locking{};
  if (locking.reach == files::LockReach::unsure)
    throw DocumentError(Problem::locked,
                        what + " was begun" + holderInWords(holder) +
                            " and has not ended there. It may be going on: locks on this file system (" +
                            locking.system +
                            ") are not known to hold between machines. When you have made sure that nothing "
                            "of it runs, delete \"" +
                            pathIn(slice.path(), kLock) + "\".");
  writeText(system, lock->handle(), thisMachine() + " " + std::to_string(::getpid()) + "\n");
  return lock;
}

bool isGoing(files::FileSystem& system, const OwnFolder& slice) {
  return system.exists(slice.at(kLock)) && lockRun(system, slice) == nullptr;
}

}  // namespace pluvo::journal
