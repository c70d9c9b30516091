#include "undo.h"

#include "base/shown.h"
#include "printer.h"
#include "runs/past_runs.h"
#include "runs/run.h"
#include "runs/sliced.h"
#include "usage_error.h"

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

ExitStatus list(const std::vector<runs::PastRun>& all) {
  for (const runs::PastRun& run : all) {
    if (run.refused) {
      writeOut(run.name + "  is not yours alone, so that it cannot be taken back\n");
      continue;
    }
    std::string line = run.name + "  " + base::counted(static_cast<std::int64_t>(run.documents), "document") +
                       ", " + sizeText(run.bytes);
    if (run.notKept > 0) line += ", " + std::to_string(run.notKept) + " more not kept";
    if (run.slices > 0) line += ", " + base::counted(run.slices, "slice");
    if (run.going) line += ", still going on";
    writeOut(line + "\n    " + base::shown(run.command) + "\n");
  }
  flushOut();
  return all.empty() ? kNoneFound : kFound;
}

/// Not every run can be taken back, so the last one may be another than the user has in mind.
void sayWhich(const std::vector<runs::PastRun>& all, const std::string& name) {
  for (const runs::PastRun& run : all)
    if (run.name == name && !run.refused) sayNote("taking back the run " + run.name + ": " + run.command);
}

ExitStatus takeBack(runs::PastRuns& past, const std::string& run, bool quiet) {
  std::int64_t restored = 0;
  std::int64_t asBefore = 0;
  std::int64_t failed = 0;
  past.takeBack(run, [&](const runs::TakenBack& taken) {
    if (taken.failure) {
      ++failed;
      sayError(runs::failureLine(taken.path, *taken.failure));
    } else if (taken.asBefore) {
      ++asBefore;
    } else {
      ++restored;
      if (!quiet) writeOut(base::shown(taken.path) + ": as before\n");
    }
  });
  flushOut();
  if (!quiet) {
    std::string line = base::counted(restored, "document") + " put back";
    if (asBefore > 0) line += ", " + std::to_string(asBefore) + " already as before";
    if (failed > 0) line += ", " + std::to_string(failed) + " left as they are";
    sayNote(line);
  }
  if (failed > 0) return kFailed;
  return restored + asBefore > 0 ? kFound : kNoneFound;
}

ExitStatus undoLast(runs::PastRuns& past, bool quiet) {
  const runs::PastRun* const last = past.last();
  if (last == nullptr) throw UsageError("There is no run to take back.");
  // Where it cannot be put back, or not whole, it stays the last one.
  const runs::PastRun* const before = past.before(last->name);
  const std::string next = before == nullptr ? ""
                                             : "The run before it is taken back by 'pluvo undo " +
                                                   before->name + "': " + before->command;
  if (!quiet) sayWhich(past.all(), last->name);
  try {
    const ExitStatus status = takeBack(past, last->name, quiet);
    if (status == kFailed && before != nullptr) sayNote(next);
    return status;
  } catch (const errors::DocumentError& refused) {
    throw UsageError(refused.what() + (before == nullptr ? "" : "\n" + next));
  }
}

ExitStatus forget(runs::PastRuns& past, const std::vector<std::string>& paths, bool quiet) {
  if (paths.empty() || !runs::isRunName(paths.front()))
    throw UsageError("--forget is about a run that has a name of its own; name it.");
  past.forget(paths.front());
  if (!quiet) sayNote("the run " + paths.front() + " is forgotten; its documents stay as they are");
  return kFound;
}

}  // namespace

ExitStatus undo(const TypedCommandLine& line, files::FileSystem& system) {
  if (line.paths.size() > 1) throw UsageError("Name one run at a time; 'pluvo undo --list' shows them.");
  if (line.options.list && !line.paths.empty())
    throw UsageError("--list shows all runs; leave the name out.");
  const bool quiet = line.options.quiet;
  try {
    runs::PastRuns past(system, line.options.journalDir);
    if (line.options.list) return list(past.all());
    if (line.options.forget) return forget(past, line.paths, quiet);
    if (line.paths.empty()) return undoLast(past, quiet);
    if (!quiet) sayWhich(past.all(), line.paths.front());
    return takeBack(past, line.paths.front(), quiet);
  } catch (const runs::CannotBegin&) {
    throw UsageError(
        "Neither XDG_STATE_HOME nor HOME names a folder, so no runs were kept; set them as they were when "
        "the "
        "run was made.");
  } catch (const errors::DocumentError& refused) {
    throw UsageError(refused.what());
  }
}

}  // namespace pluvo::cli
