#include "originals_limit.h"

#include <algorithm>
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

Record othersRecord(const std::vector<std::string>& names, std::uint64_t size) {
  return {Record::Kind::others, names.empty() ? "" : names.back(), size, {}, {}, {}};
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

std::optional<Record> OriginalsLimit::ask(const RunUnderWay& run, const std::vector<std::string>& names) {
  std::uint64_t size = 0;
  try {
    const auto isGoingOn = [&](const std::string& name) {
      return run.system.exists(run.runs->at(pathIn(name, kLock)));
    };
    if (std::ranges::any_of(names, isGoingOn)) return std::nullopt;
    if (!names.empty()) {
      const auto newest = openRunIfThere(run.system, *run.runs, names.back());
      const auto records = newest ? recordsIn(run.system, *newest) : std::nullopt;
      if (!records) return std::nullopt;
      const auto told = std::ranges::find(*records, Record::Kind::others, &Record::kind);
      const std::string second = names.size() > 1 ? names[names.size() - 2] : "";
      // Another program's run may have begun in between.
      if (told == records->end() || told->text != second) return std::nullopt;
      size = told->number + sizeOf(keptOf(*records));
    }
  } catch (const std::exception&) {  // weighing tells why, where it matters
    return std::nullopt;
  }
  isAsked_ = true;
  size_ = size;
  return othersRecord(names, size);
}

bool OriginalsLimit::makeRoomIn(RunUnderWay& run, std::uint64_t bytes) {
  if (!others_ && (!isAsked_ || run.size + bytes + size_ > limit_)) weigh(run);
  if (!others_) return true;
  while (!others_->empty() && run.size + bytes + size_ > limit_) {
    const Other oldest = std::move(others_->front());
    others_->pop_front();
    const auto other = openRunIfThere(run.system, *run.runs, oldest.name);
    if (!other || forget(run.system, *run.runs, oldest.name, *other)) size_ -= oldest.size;
  }
  return run.size + bytes + size_ <= limit_;
}

void OriginalsLimit::weigh(RunUnderWay& run) {
  others_.emplace();
  size_ = 0;
  bool isWhole = !isAsked_;
  std::vector<std::string> names;
  for (const std::string& name : runNames(run.system, *run.runs)) {
    if (name == run.name) continue;
    try {
      const auto other = openRunIfThere(run.system, *run.runs, name);
      const auto records = other ? recordsIn(run.system, *other) : std::nullopt;
      isWhole = isWhole && records;
      if (!records) continue;
      const std::vector<Record> kept = keptOf(*records);
      clearUp(run.system, *other, kept);
      // A run that was killed before it replaced anything.
      if (kept.empty() && forget(run.system, *run.runs, name, *other)) continue;
      isWhole = isWhole && !run.system.exists(other->at(kLock));
      const std::uint64_t size = sizeOf(kept);
      others_->push_back({name, size});
      size_ += size;
    } catch (const errors::DocumentError&) {  // not this user's, and left alone
    }
    names.push_back(name);
  }
  if (isWhole) run.append(othersRecord(names, size_));
}

}  // namespace pluvo::journal
