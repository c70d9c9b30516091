#include "run.h"

#include "base/fresh_memory.h"
#include "base/shown.h"
#include "names_from.h"
#include "not_reached.h"
#include "runs/run.h"
#include "terminal_face.h"
#include "usage_error.h"

#include <unistd.h>

namespace pluvo::cli {
namespace {

/// For people at a terminal alone: output that goes to a script is not commented on.
void suggestWholeDocument(const Plan& plan) {
  if (!plan.findsOnly() || plan.quiet || plan.json || !isTerminal(STDERR_FILENO)) return;
  sayNote(
      "There are beginnings with an ending, but all too far apart; to find them at any distance, use --unit "
      "document without --apart.");
}

/// A slice needs no list of unfinished documents, since the journal knows which are done.
bool goesOnByItself(const Plan& plan) { return !plan.runName.empty(); }

void sayUnfinished(const Plan& plan, const runs::Ended& ended) {
  if (!ended.unfinished) return;
  const runs::Unfinished& left = *ended.unfinished;
  const std::string how = ended.isCancelled && !ended.thrown ? "Interrupted" : "Stopped";
  if (left.documents == 0) return sayError(how + "; all documents were worked on.");
  const std::string what = how + "; " + base::counted(static_cast<std::int64_t>(left.documents), "document") +
                           " of the run " +
                           (ended.isCutShort ? "are left, this one among them. " : "were not opened. ");
  if (goesOnByItself(plan)) return sayError(what + "To go on with them, give the same command again.");
  if (left.list.empty()) return sayError(what + "There is no list of them: " + left.problem);
  sayError(what +
           "To go on with them, give the same command with these in the place of the documents: --null "
           "--files-from " +
           left.list);
}

/// Where a list names folders, their documents belong to slices, not they.
void readNames(Plan& plan, files::FileSystem& system) {
  if (!plan.filesFrom) return;
  if (!plan.selection.slice || plan.selection.recursive) {
    plan.selection.listed = namesFrom(*plan.filesFrom, plan.nullEnded);
    return;
  }
  runs::SliceKeys keys(system, *plan.selection.slice);
  plan.selection.listed = namesOfSlice(*plan.filesFrom, plan.nullEnded, keys, plan.list.emplace());
}

ExitStatus told(const Plan& plan, const runs::Ended& ended) {
  if (ended.reportProblem) sayError(*ended.reportProblem);
  if (ended.notKept > 0)
    sayNote(std::to_string(ended.notKept) +
            " of the changed documents cannot be taken back: the originals kept for 'pluvo undo' would take "
            "more than 4 GiB.");
  if (ended.totals.found == 0 && ended.totals.tooFar > 0) suggestWholeDocument(plan);
  if (ended.totals.notReached > 0) sayNotReached(plan, ended.totals);
  sayUnfinished(plan, ended);
  const bool failed = ended.isCancelled || ended.totals.failed > 0 || ended.reportProblem;
  if (failed || failsStrictly(plan, ended.totals)) return kFailed;
  return ended.totals.found > 0 ? kFound : kNoneFound;
}

}  // namespace

std::string sentenceFor(const runs::CannotBegin& refused) {
  using Reason = runs::CannotBegin::Reason;
  switch (refused.reason()) {
    case Reason::outputFolder:
      return std::string("--output: ") + refused.what();
    case Reason::stateFolder:
      return "Neither XDG_STATE_HOME nor HOME names a folder, so there is no place to keep the originals for "
             "'pluvo undo'. Set one of them, or add --no-journal to change documents without a way back.";
    case Reason::reportKind:
      return "--report writes a page, a table or JSON: give it a name that ends in .html, .csv or .json.";
    case Reason::reportForeign:
      return "--report: " + refused.path() +
             " is there and is no report of PLUVO's; give another name, or add --overwrite-report to lose "
             "what "
             "it holds.";
    case Reason::report:
      return std::string("--report: ") + refused.what();
    case Reason::rest:
      return std::string("--rest: ") + refused.what();
    case Reason::journal:
      break;
  }
  return refused.what();
}

ExitStatus run(Plan plan, files::FileSystem& system) {
  if (plan.confirm && !Interviewer::canAsk())
    throw UsageError("--confirm needs a terminal to ask at; use --dry-run to see the changes first.");
  readNames(plan, system);
  if (!plan.selection.several()) base::shareHeap();
  TerminalFace face(plan);
  try {
    const runs::Ended ended = runs::run(plan, face, system);
    if (!ended.thrown) return told(plan, ended);
    sayUnfinished(plan, ended);
    std::rethrow_exception(ended.thrown);
  } catch (const runs::CannotBegin& refused) {
    throw UsageError(sentenceFor(refused));
  }
}

}  // namespace pluvo::cli
