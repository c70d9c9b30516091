#include "runs/past_runs.h"

#include "journal/journal.h"
#include "runs/run.h"

#include <algorithm>

namespace pluvo::runs {
namespace {

std::string folderOfJournal() {
  auto folder = journal::defaultFolder();
  if (folder) return std::move(*folder);
  throw CannotBegin(CannotBegin::Reason::stateFolder,
                    "Neither XDG_STATE_HOME nor HOME names a folder, so no runs were kept.");
}

/// Other than a run, an undo cannot put a document elsewhere.
Failure failureFrom(const errors::DocumentError& problem) {
  if (problem.problem() != errors::Problem::readOnly || problem.happened().empty())
    return {problem.problem(), problem.what()};
  return {problem.problem(),
          problem.happened() + " Mend that, or ask for permission, and undo the run again."};
}

}  // namespace

PastRuns::PastRuns(files::FileSystem& system) : system_(system), folder_(folderOfJournal()) {
  for (journal::Run& run : journal::runs(system_, folder_))
    runs_.push_back({std::move(run.name), std::move(run.command), run.documents, run.notKept, run.bytes,
                     run.going, run.refused});
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
  journal::undo(system_, folder_, name, [&](const journal::Undone& undone) {
    TakenBack taken{undone.path, undone.outcome == journal::Outcome::asBefore};
    if (undone.problem) taken.failure = failureFrom(*undone.problem);
    tell(taken);
  });
}

}  // namespace pluvo::runs
