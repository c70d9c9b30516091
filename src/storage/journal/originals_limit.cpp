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

/// Whether the run has a journal that is quickly read.
bool hasShortJournal(const RunUnderWay& run, const std::string& name) {
  constexpr std::uint64_t kShort = std::uint64_t{1} << 20U;
  const files::Place journal = run.runs->at(pathIn(name, kJournal));
  return run.system.exists(journal) && run.system.statusAt(journal).stamp.size <= kShort;
}

/// The bytes that all runs with these names keep, as the newest of them tells. None where it does not tell,
/// or where they are more than the limit.
std::optional<std::uint64_t> toldByNewest(const RunUnderWay& run, const std::vector<std::string>& names,
                                          std::uint64_t limit) {
  if (names.empty()) return 0;
  // A run's lock comes before its journal: where that is, and then no lock, the run has ended.
  if (!hasShortJournal(run, names.back())) return std::nullopt;
  // Older ones had ended when it recorded what they keep, and an undo is a run of its own.
  if (run.system.exists(run.runs->at(pathIn(names.back(), kLock)))) return std::nullopt;
  const auto newest = openRunIfThere(run.system, *run.runs, names.back());
  const auto records = newest ? recordsIn(run.system, *newest) : std::nullopt;
  if (!records) return std::nullopt;
  const auto told = std::ranges::find(*records, Record::Kind::others, &Record::kind);
  const std::string second = names.size() > 1 ? names[names.size() - 2] : "";
  // Another program's run may have begun in between.
  if (told == records->end() || told->text != second) return std::nullopt;
  const std::uint64_t own = sizeOf(keptOf(*records));
  if (told->number > limit || own > limit - told->number) return std::nullopt;
  return told->number + own;
}

enum class Forgotten { always, ifEmpty };

/// False while the run is going on, and where it is not to be forgotten.
bool forget(files::FileSystem& system, const OwnFolder& runs, const std::string& name, const OwnFolder& run,
            Forgotten which) {
  const auto lock = lockRun(system, run);
  if (lock == nullptr) return false;
  // It may have kept something, and ended, a moment ago.
  const auto records = recordsIn(system, run);
  if (!records || (which == Forgotten::ifEmpty && !keptOf(*records).empty())) return false;
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
  std::optional<std::uint64_t> told;
  try {
    told = toldByNewest(run, names, limit_);
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): weighing tells why, where it matters
  }
  if (!told) return std::nullopt;
  isAsked_ = true;
  size_ = *told;
  return othersRecord(names, size_);
}

bool OriginalsLimit::makeRoomIn(RunUnderWay& run, std::uint64_t bytes) {
  if (!others_ && (!isAsked_ || run.size + bytes + size_ > limit_)) weigh(run);
  if (!others_) return true;
  while (!others_->empty() && run.size + bytes + size_ > limit_) {
    const Other oldest = std::move(others_->front());
    others_->pop_front();
    const auto other = openRunIfThere(run.system, *run.runs, oldest.name);
    if (!other || forget(run.system, *run.runs, oldest.name, *other, Forgotten::always)) size_ -= oldest.size;
  }
  return run.size + bytes + size_ <= limit_;
}

void OriginalsLimit::weigh(RunUnderWay& run) {
  std::deque<Other> others;
  std::uint64_t sum = 0;
  bool isWhole = !isAsked_;
  std::vector<std::string> names;
  for (const std::string& name : runNames(run.system, *run.runs)) {
    if (name == run.name) continue;
    try {
      const auto other = openRunIfThere(run.system, *run.runs, name);
      const bool isLocked = other && run.system.exists(other->at(kLock));
      const auto records = other ? recordsIn(run.system, *other) : std::nullopt;
      isWhole = isWhole && records && !isLocked;
      if (!records) continue;
      const std::vector<Record> kept = keptOf(*records);
      clearUp(run.system, *other, kept);
      // A run that was killed before it replaced anything.
      if (kept.empty() && forget(run.system, *run.runs, name, *other, Forgotten::ifEmpty)) continue;
      isWhole = isWhole && !run.system.exists(other->at(kLock));
      const std::uint64_t size = sizeOf(kept);
      others.push_back({name, size});
      sum += size;
    } catch (const errors::DocumentError&) {  // not this user's, and left alone
    }
    names.push_back(name);
  }
  others_ = std::move(others);
  size_ = sum;
  if (isWhole) run.append(othersRecord(names, size_));
}

}  // namespace pluvo::journal
