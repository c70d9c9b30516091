#include "undo/undo.h"

#include "base/shown.h"
#include "journal/journal.h"
#include "printer.h"
#include "usage_error.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace pluvo::cli {
namespace {

std::string sizeText(std::uint64_t bytes) {
  static constexpr std::array<const char*, 4> kUnits = {"bytes", "KiB", "MiB", "GiB"};
  auto size = static_cast<double>(bytes);
  std::size_t unit = 0;
  for (; size >= 1024 && unit + 1 < kUnits.size(); ++unit) size /= 1024;
  std::array<char, 32> text = {};
  (void)std::snprintf(text.data(), text.size(), unit == 0 ? "%.0f %s" : "%.1f %s", size, kUnits[unit]);
  return text.data();
}

ExitStatus list(const std::vector<journal::Run>& runs) {
  for (const journal::Run& run : runs) {
    if (run.refused) {
      writeOut(run.name + "  is not yours alone, so that it cannot be taken back\n");
      continue;
    }
    std::string line = run.name + "  " + counted(static_cast<std::int64_t>(run.documents), "document") +
                       ", " + sizeText(run.bytes);
    if (run.notKept > 0) line += ", " + std::to_string(run.notKept) + " more not kept";
    if (run.going) line += ", still going on";
    writeOut(line + "\n    " + base::shown(run.command) + "\n");
  }
  flushOut();
  return runs.empty() ? kNoneFound : kFound;
}

/// The last run that is over.
std::string lastOf(const std::vector<journal::Run>& runs) {
  const auto last = std::find_if(runs.rbegin(), runs.rend(), [](auto& run) { return !run.going; });
  if (last == runs.rend()) throw UsageError("There is no run to take back.");
  return last->name;
}

/// What to try after a run that cannot be put back, or not whole: it stays the last one.
std::string nextAfter(const std::vector<journal::Run>& runs, const std::string& name) {
  const journal::Run* next = nullptr;
  for (const journal::Run& run : runs) {
    if (run.name == name) break;
    if (!run.going) next = &run;
  }
  if (next == nullptr) return {};
  return "The run before it is taken back by 'pluvo undo " + next->name + "': " + next->command;
}

/// Not every run can be taken back, so the last one may be another than the user has in mind.
void sayWhich(const std::vector<journal::Run>& runs, const std::string& name) {
  for (const journal::Run& run : runs)
    if (run.name == name && !run.refused) sayNote("taking back the run " + run.name + ": " + run.command);
}

/// Other than a run, an undo cannot put a document elsewhere.
std::string sentenceFor(const files::DocumentError& problem) {
  if (problem.problem() != files::Problem::readOnly || problem.happened().empty()) return problem.what();
  return problem.happened() + " Mend that, or ask for permission, and undo the run again.";
}

ExitStatus takeBack(files::FileSystem& system, const std::string& folder, const std::string& run,
                    bool quiet) {
  std::int64_t restored = 0;
  std::int64_t asBefore = 0;
  std::int64_t failed = 0;
  journal::undo(system, folder, run, [&](const journal::Undone& undone) {
    switch (undone.outcome) {
      case journal::Outcome::restored:
        ++restored;
        if (!quiet) writeOut(base::shown(undone.path) + ": as before\n");
        break;
      case journal::Outcome::asBefore:
        ++asBefore;
        break;
      case journal::Outcome::failed:
        ++failed;
        sayError(undone.path + ": " + std::string(files::nameOf(undone.problem->problem())) + ": " +
                 sentenceFor(*undone.problem));
        break;
    }
  });
  flushOut();
  if (!quiet) {
    std::string line = counted(restored, "document") + " put back";
    if (asBefore > 0) line += ", " + std::to_string(asBefore) + " already as before";
    if (failed > 0) line += ", " + std::to_string(failed) + " left as they are";
    sayNote(line);
  }
  if (failed > 0) return kFailed;
  return restored + asBefore > 0 ? kFound : kNoneFound;
}

}  // namespace

ExitStatus undo(const TypedCommandLine& line, files::FileSystem& system) {
  if (line.paths.size() > 1) throw UsageError("Name one run at a time; 'pluvo undo --list' shows them.");
  if (line.options.list && !line.paths.empty())
    throw UsageError("--list shows all runs; leave the name out.");
  const auto folder = journal::defaultFolder();
  if (!folder)
    throw UsageError(
        "Neither XDG_STATE_HOME nor HOME names a folder, so no runs were kept; set them as they were when "
        "the "
        "run was made.");
  try {
    const std::vector<journal::Run> runs = journal::runs(system, *folder);
    if (line.options.list) return list(runs);
    const std::string run = line.paths.empty() ? lastOf(runs) : line.paths.front();
    if (!line.options.quiet) sayWhich(runs, run);
    const std::string next = line.paths.empty() ? nextAfter(runs, run) : std::string();
    try {
      const ExitStatus status = takeBack(system, *folder, run, line.options.quiet);
      if (status == kFailed && !next.empty()) sayNote(next);
      return status;
    } catch (const files::DocumentError& refused) {
      throw UsageError(refused.what() + (next.empty() ? "" : "\n" + next));
    }
  } catch (const files::DocumentError& refused) {
    throw UsageError(refused.what());
  }
}

}  // namespace pluvo::cli
