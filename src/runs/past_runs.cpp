#include "runs/past_runs.h"

#include "journal/named_runs.h"
#include "runs/run.h"

#include <algorithm>
#include <ctime>

namespace pluvo::runs {
namespace {

std::string folderOfJournal(const std::optional<std::string>& chosen) {
  auto folder = chosen ? journal::folderBelow(*chosen) : journal::defaultFolder();
  if (folder) return std::move(*folder);
  throw CannotBegin(CannotBegin::Reason::stateFolder,
                    "Neither XDG_STATE_HOME nor HOME names a folder, so no runs were kept.");
}

/// "20261121-142233-0" begins with the time, in UTC.
std::int64_t timeOf(const std::string& name) {
  std::tm parts = {};
  return strptime(name.c_str(), "%Y%m%d-%H%M%S", &parts) == nullptr ? 0 : timegm(&parts);
}

/// Other than a run, an undo cannot put a document elsewhere.
Failure failureFrom(const errors::DocumentError& problem) {
  if (problem.problem() != errors::Problem::readOnly || problem.happened().empty())
    return {problem.problem(), problem.what()};
  return {problem.problem(),
          problem.happened() + " Mend that, or ask for permission, and undo the run again."};
}

}  // namespace

PastRuns::PastRuns(files::FileSystem& system, const std::optional<std::string>& journalFolder)
    : system_(system), folder_(folderOfJournal(journalFolder)) {
  for (journal::Run& run : journal::runs(system_, folder_)) {
    const std::int64_t begun = timeOf(run.name);
    runs_.push_back({std::move(run.name), std::move(run.command), run.documents, run.notKept, run.bytes,
                     run.going, run.refused, 0, begun});
  }
  for (const std::string& name : journal::namedRuns(system_, folder_)) addNamed(name);
  std::ranges::stable_sort(runs_, {}, &PastRun::begun);
}

void PastRuns::addNamed(const std::string& name) {
  PastRun run;
  run.name = name;
  try {
    const journal::NamedRun named(system_, folder_, name);
    run.command = named.request().command;
    run.slices = named.request().slices;
    for (std::uint32_t number = 1; number <= run.slices; ++number) {
      const journal::SliceState slice = named.slice(number);
      run.documents += slice.kept;
      run.notKept += slice.notKept;
      run.bytes += slice.bytes;
      run.going |= slice.stage == journal::SliceState::Stage::going;
      for (const journal::Attempt& attempt : slice.attempts)
        run.begun = run.begun == 0 ? attempt.begun : std::min(run.begun, attempt.begun);
    }
  } catch (const errors::DocumentError&) {
    run.refused = true;
  }
  // What an undo could not remove is an empty folder.
  if (run.begun != 0 || run.refused) runs_.push_back(std::move(run));
}

const PastRun* PastRuns::last() const {
  const auto last = std::find_if(runs_.rbegin(), runs_.rend(), [](auto& run) { return !run.going; });
  return last == runs_.rend() ? nullptr : &*last;
}

const PastRun* PastRuns::before(const std::string& name) const {
  const PastRun* before = nullptr;
  for (const PastRun& run : runs_) {
    if (run.name == name) break;
    if (!run.going) before = &run;
  }
  return before;
}

void PastRuns::takeBack(const std::string& name, const std::function<void(const TakenBack&)>& tell) {
  const auto told = [&](const journal::Undone& undone) {
    TakenBack taken{undone.path, undone.outcome == journal::Outcome::asBefore};
    if (undone.problem) taken.failure = failureFrom(*undone.problem);
    tell(taken);
  };
  if (!journal::isNameForRun(name)) return journal::undo(system_, folder_, name, told);
  journal::NamedRun(system_, folder_, name).takeBack(told);
}

void PastRuns::forget(const std::string& name) { journal::NamedRun(system_, folder_, name).forget(); }

}  // namespace pluvo::runs
