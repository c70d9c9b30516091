#include "originals_limit.h"

#include <cerrno>
#include <system_error>
#include <utility>
#include <vector>

namespace pluvo::journal {

namespace {

std::uint64_t sizeOf(const std::vector<Record>& kept) {
  std::uint64_t size = 0;
  for (const Record& record : kept) size += record.before.stamp.size;
  return size;
}

/// False while the run is going on.
bool forget(files::FileSystem& system, const OwnFolder& runs, const std::string& name, const OwnFolder& run) {
  const auto lock = lockRun(system, run);
  if (lock == nullptr) return false;
  const auto records = recordsIn(system, run);
  if (!records) return false;
  for (const Record& record : keptOf(*records)) clearBeside(system, run, record, folderOf(system, record));
  try {
    removeRun(system, runs, name, run);
  } catch (const std::system_error& failure) {
    // A program that has just made the folder came back to it.
    if (failure.code().value() == ENOTEMPTY) return false;
    // Another program that forgets it, too, was ahead.
    if (failure.code().value() != ENOENT) throw;
  }
  return true;
}

}  // namespace

bool OriginalsLimit::makeRoomIn(const RunUnderWay& run, std::uint64_t bytes) {
  if (!others_) weigh(run);
  while (!others_->empty() && run.size + bytes + size_ > limit_) {
    const Other oldest = std::move(others_->front());
    others_->pop_front();
    const auto other = openRunIfThere(run.system, *run.runs, oldest.name);
    if (!other || forget(run.system, *run.runs, oldest.name, *other)) size_ -= oldest.size;
  }
  return run.size + bytes + size_ <= limit_;
}

void OriginalsLimit::weigh(const RunUnderWay& run) {
  others_.emplace();
  for (const std::string& name : runNames(run.system, *run.runs)) {
    if (name == run.name) continue;
    try {
      const auto other = openRunIfThere(run.system, *run.runs, name);
      const auto records = other ? recordsIn(run.system, *other) : std::nullopt;
      if (!records) continue;
      const std::vector<Record> kept = keptOf(*records);
      clearUp(run.system, *other, kept);
      // A run that was killed before it replaced anything.
      if (kept.empty() && forget(run.system, *run.runs, name, *other)) continue;
      const std::uint64_t size = sizeOf(kept);
      others_->push_back({name, size});
      size_ += size;
    } catch (const errors::DocumentError&) {  // NOLINT(bugprone-empty-catch): not this user's, and left alone
    }
  }
}

}  // namespace pluvo::journal
