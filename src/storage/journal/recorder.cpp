#include "journal/journal.h"
#include "keeping.h"
#include "originals_limit.h"
#include "run_under_way.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

namespace pluvo::journal {

namespace {

std::string utcNow() {
  // The C library's clock would read the file of the time zone.
  const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
  const auto day = std::chrono::floor<std::chrono::days>(now);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(now - day);
  std::array<char, 32> text = {};
  const int length =
      std::snprintf(text.data(), text.size(), "%04d%02u%02u-%02d%02d%02d", static_cast<int>(date.year()),
                    static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                    static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                    static_cast<int>(time.seconds().count()));
  return {text.data(), static_cast<std::size_t>(length)};
}

/// The name of a new run, whose folder it makes. It comes after the names of this second, even where an
/// earlier run is gone, and after those of a clock that was ahead.
std::string createRun(files::FileSystem& system, const OwnFolder& runs,
                      const std::vector<std::string>& names) {
  std::string start = utcNow() + "-";
  if (!names.empty()) start = std::max(start, names.back().substr(0, start.size()));
  unsigned number = 0;
  for (const std::string& name : names) {
    unsigned taken = 0;
    if (name.starts_with(start) &&
        std::from_chars(name.data() + start.size(), name.data() + name.size(), taken).ec == std::errc())
      number = taken + 1;
  }
  for (;; ++number) {
    std::string name = start + std::to_string(number);
    try {
      system.createFolder(runs.at(name));
      return name;
    } catch (const std::system_error& failure) {
      if (failure.code().value() != EEXIST) throw;
    }
  }
}

}  // namespace

std::optional<std::string> defaultFolder() {
  const char* state = std::getenv("XDG_STATE_HOME");
  if (state != nullptr && *state == '/') return std::string(state) + "/pluvo/runs";
  const char* home = std::getenv("HOME");
  if (home == nullptr || *home != '/') return std::nullopt;
  return std::string(home) + "/.local/state/pluvo/runs";
}

std::string folderBelow(const std::string& folder) {
  std::string path = std::filesystem::absolute(folder).lexically_normal().native();
  while (path.ends_with('/')) path.pop_back();
  return path + "/pluvo/runs";
}

Recorder::Recorder(files::FileSystem& system, std::string folder, std::string command, std::uint64_t limit)
    : run_(std::make_unique<RunUnderWay>(system, std::move(folder))),
      limit_(std::make_unique<OriginalsLimit>(limit)) {
  RunUnderWay& run = *run_;
  guarded(run.folder, [&] {
    run.runs = std::make_unique<OwnFolder>(openRuns(system, run.folder, Missing::isMade));
    // Until it is locked, another program may take the new folder for one that was left behind.
    std::vector<std::string> others;
    do {
      others = runNames(system, *run.runs);
      run.name = createRun(system, *run.runs, others);
      auto opened = openRunIfThere(system, *run.runs, run.name);
      if (!opened) continue;
      run.run = std::make_unique<OwnFolder>(std::move(*opened));
      run.lock = lockRun(system, *run.run);
    } while (run.lock == nullptr);
    run.journal.emplace(system, system.openToAppend(run.run->at(kJournal)));
    // Flushed with the first document: without one there is nothing to take back.
    std::string lines = lineOf({Record::Kind::command, std::move(command), 0, {}, {}, {}});
    if (const auto known = limit_->ask(run, others)) lines += lineOf(*known);
    run.append(lines);
    run.undoName = run.name;
  });
}

Recorder::Recorder(std::unique_ptr<RunUnderWay> slice) : run_(std::move(slice)) {}

Recorder::~Recorder() {
  const RunUnderWay& run = *run_;
  if (run.lock == nullptr) return;  // a slice that did not begin
  try {
    if (run.replaced > 0 || isSlice()) {
      run.system.remove(run.run->at(kLock));
    } else {
      removeRun(run.system, *run.runs, run.name, *run.run);
    }
  } catch (const std::system_error&) {
    // An empty run in the list does no harm, and one with a lock is looked through once more.
  }
}

std::unique_ptr<files::Keeping> Recorder::keep(const files::Replacement& replacement,
                                               const std::string& outcome) {
  RunUnderWay& run = *run_;
  const std::lock_guard guard(run.mutex);
  std::unique_ptr<files::Keeping> keeping;
  guarded(run.folder, [&] {
    if (isSlice())
      run.append(
          {Record::Kind::intended, replacement.path, 0, {}, replacement.before, replacement.after, outcome});
    const bool hasRoom = isSlice() || limit_->makeRoomIn(run, replacement.before.stamp.size);
    keeping =
        run.keepsOriginals && hasRoom ? keepOriginal(run, replacement) : leaveOriginal(run, replacement);
  });
  return keeping;
}

void Recorder::intend(const std::string& key, const std::string& outcome) {
  const std::lock_guard guard(run_->mutex);
  run_->append({Record::Kind::intended, key, 0, {}, {}, {}, outcome});
}

std::string Recorder::name() const {
  const std::lock_guard guard(run_->mutex);
  return run_->keepsOriginals && run_->replaced > run_->notKept ? run_->undoName : std::string();
}

std::uint64_t Recorder::notKept() const {
  const std::lock_guard guard(run_->mutex);
  return run_->notKept;
}

}  // namespace pluvo::journal
