#include "run.h"

#include "base/shown.h"
#include "document_run.h"
#include "interrupt.h"
#include "not_reached.h"
#include "printer.h"
#include "progress.h"
#include "report/report.h"
#include "results.h"
#include "store/store.h"
#include "unfinished.h"
#include "usage_error.h"
#include "waiters.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <optional>
#include <set>
#include <system_error>
#include <thread>
#include <utility>

namespace pluvo::cli {
namespace {

void notePasswordFile(const Plan& plan) {
  if (plan.quiet || !plan.passwords.othersMayRead) return;
  sayNote("Note: other users can read the passwords in " + base::shown(plan.passwordFile) +
          "; keep them to yourself with chmod 600.");
}

void makeOutputFolder(const Plan& plan, files::FileSystem& system) {
  if (!plan.outputFolder || plan.dryRun) return;
  try {
    if (!system.exists(*plan.outputFolder)) system.createFolder(*plan.outputFolder);
    if (system.statusAt(*plan.outputFolder).kind == files::FileKind::folder) return;
    throw UsageError("--output: " + *plan.outputFolder + " is not a folder.");
  } catch (const std::system_error& refused) {
    const int error = refused.code().value();
    const std::string why = error == ENOTDIR  ? "what lies above it is a file; name another folder"
                            : error == ENOENT ? "the folder above it is missing; make that first"
                                              : std::strerror(error);
    throw UsageError("--output: cannot make the folder " + *plan.outputFolder + ": " + why + ".");
  }
}

std::unique_ptr<journal::Recorder> recorderFor(const Plan& plan, files::FileSystem& system) {
  if (!plan.journal || !plan.changesInPlace()) return nullptr;
  const auto folder = journal::defaultFolder();
  if (!folder)
    throw UsageError(
        "Neither XDG_STATE_HOME nor HOME names a folder, so there is no place to keep the originals for "
        "'pluvo "
        "undo'. Set one of them, or add --no-journal to change documents without a way back.");
  try {
    return std::make_unique<journal::Recorder>(system, *folder, plan.command);
  } catch (const files::DocumentError& refused) {
    throw UsageError(refused.what());
  }
}

/// Which of two documents of one name came first in the other folder would be chance.
void refuseSharedPlaces(std::vector<NamedDocument>& documents) {
  std::set<std::string> taken;
  for (NamedDocument& document : documents) {
    if (document.failure || taken.insert(document.place).second) continue;
    document.failure = {
        files::Problem::io,
        "An earlier document of this run has the same name and goes to the same place; give it "
        "another --output, or take both from their folder with --recursive, which keeps folders "
        "apart."};
  }
}

/// An earlier report among the documents is left out; a document is not to be written over.
void refuseReportOnDocument(files::FileSystem& system, const Listing& listing, const std::string& report) {
  for (const LeftOut& each : listing.leftOut) {
    if (each.reason == kWrittenByRun && files::isSameFile(system, each.path, report))
      throw UsageError("--report: " + each.path + " is one of the documents; give the report another name.");
  }
}

Listing listingFor(const Plan& plan, files::FileSystem& system, const std::optional<ReportPlace>& report) {
  std::vector<std::string> written;
  if (plan.outputFolder) written.push_back(*plan.outputFolder);
  if (report) written.push_back(report->path);
  Listing listing = listDocuments(system, plan.selection, written);
  if (report && report->isForeign) refuseReportOnDocument(system, listing, report->path);
  if (plan.outputFolder) refuseSharedPlaces(listing.documents);
  return listing;
}

std::unique_ptr<Printer> printersFor(const Plan& plan, const std::optional<ReportPlace>& report) {
  std::vector<std::unique_ptr<Printer>> printers;
  if (report) printers.push_back(reportPrinter(*report, plan.command));
  printers.push_back(printerFor(plan));
  return allOf(std::move(printers));
}

void sayFailure(const Outcome& outcome) {
  const Failure& failure = *outcome.failure;
  sayError((outcome.path.empty() ? "''" : outcome.path) + ": " + std::string(files::nameOf(failure.problem)) +
           ": " + failure.message);
}

void sayRefused(const Outcome& outcome) {
  sayNote(outcome.path + ": " + std::to_string(outcome.refused) +
          " of its changes were refused and left out.");
}

void sayOwner(const Outcome& outcome) {
  const std::string lost = outcome.notKept.words();
  if (lost.empty()) return;
  sayNote(outcome.path + ": you may not give the new version the " + lost +
          " of the original; it has yours.");
}

/// A run that is going on.
class Run {
 public:
  Run(const Plan& plan, files::FileSystem& system, Listing listing, const std::optional<ReportPlace>& report)
      : plan_(plan),
        system_(system),
        store_(system),
        listing_(std::move(listing)),
        printer_(printersFor(plan, report)),
        recorder_(recorderFor(plan, system)),
        progress_(plan, listing_.documents.size()),
        results_(listing_.documents.size(), plan.jobs,
                 {[this](std::size_t document, const BlockReport& block) { print(document, block); },
                  [this](std::size_t /*document*/, const Outcome& outcome) { print(outcome); }}) {
    if (plan.confirm) interviewer_.emplace(listing_.documents.size());
  }

  ExitStatus all() {
    const Interrupt interrupt(plan_.confirm);
    try {
      work();
    } catch (const std::exception&) {
      leaveTheRest("Stopped");
      throw;
    }
    for (const LeftOut& each : listing_.leftOut) {
      printer_->leftOut(each);
      ++totals_.leftOut;
      if (each.reason == kLink) ++totals_.links;
    }
    for (std::size_t i = results_.handedOut(); i < listing_.documents.size(); ++i)
      printer_->leftOut({listing_.documents[i].path, "not opened before the run was stopped"});
    progress_.end(totals_);
    const bool isTold = told();
    if (recorder_ && recorder_->notKept() > 0) sayNotKept();
    if (totals_.found == 0 && totals_.tooFar > 0) suggestWholeDocument();
    if (totals_.notReached > 0) sayNotReached(plan_, totals_, listing_.documents.front().path);
    if (Interrupt::requested()) {
      leaveTheRest("Interrupted");
      return kFailed;
    }
    if (isCutShort() && plan_.selection.several()) leaveTheRest("Stopped");
    if (totals_.failed > 0 || !isTold || failsStrictly(plan_, totals_)) return kFailed;
    return totals_.found > 0 ? kFound : kNoneFound;
  }

 private:
  void work() {
    {
      Waiters waiters(waiting());
      const std::size_t useful = std::min(listing_.documents.size(), static_cast<std::size_t>(plan_.jobs));
      std::vector<std::thread> others;
      try {
        for (std::size_t i = 1; i < useful; ++i) others.emplace_back([&] { job(waiters); });
      } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): fewer threads do the same
      }
      job(waiters);
      for (std::thread& other : others) other.join();
    }
    results_.rethrow();
  }

  /// How many documents may wait for the disk while others are worked on. Whoever is asked about the next one
  /// knows what became of the one before.
  std::size_t waiting() const {
    constexpr std::size_t kWaiting = 15;
    const bool saves = plan_.changesInPlace() || plan_.outputFolder;
    return saves && !plan_.confirm && listing_.documents.size() > 1 ? kWaiting : 0;
  }

  void job(Waiters& waiters) {
    guarded([&] {
      while (const auto document = nextDocument()) {
        BlockSink blocks;
        if (printer_->wantsBlocks())
          blocks = [&](const BlockReport& block) { results_.block(*document, block); };
        Worked worked = runOn(listing_.documents[*document],
                              {plan_, system_, store_, interviewer_ ? &*interviewer_ : nullptr,
                               recorder_.get(), passwordBudget_},
                              blocks);
        if (worked.version == nullptr) {
          results_.done(*document, std::move(worked.outcome));
          continue;
        }
        waiters.add(Waiters::Work([this, document = *document, worked = std::move(worked)]() mutable {
          guarded([&] { results_.done(document, finished(std::move(worked))); });
        }));
      }
    });
  }

  /// Stops the run where something is thrown.
  template <class Work>
  void guarded(Work work) {
    try {
      work();
    } catch (...) {
      results_.fail(std::current_exception());
    }
  }

  std::optional<std::size_t> nextDocument() {
    if (Interrupt::requested() || (interviewer_ && interviewer_->stopped())) results_.stop();
    const auto document = results_.next();
    if (document && interviewer_) interviewer_->nextDocument();
    return document;
  }

  void print(std::size_t document, const BlockReport& block) {
    progress_.add(block);
    progress_.clear();
    printer_->block(listing_.documents[document].path, block);
    progress_.show();
  }

  void print(const Outcome& outcome) {
    totals_.add(outcome);
    progress_.add(outcome);
    progress_.clear();
    if (outcome.failure) sayFailure(outcome);
    if (outcome.refused > 0) sayRefused(outcome);
    sayOwner(outcome);
    printer_->document(outcome);
    flushOut();
    progress_.show();
  }

  /// False where the report cannot be written; all else is said nevertheless.
  bool told() {
    try {
      printer_->end(totals_);
      flushOut();
      return true;
    } catch (const files::DocumentError& unwritten) {
      sayError(unwritten.what());
      return false;
    }
  }

  void sayNotKept() const {
    sayNote(std::to_string(recorder_->notKept()) +
            " of the changed documents cannot be taken back: the originals kept for 'pluvo undo' would take "
            "more than 4 GiB.");
  }

  /// A script knows what it asks for.
  void suggestWholeDocument() const {
    if (!plan_.findsOnly() || plan_.quiet || plan_.json || !isTerminal(STDERR_FILENO)) return;
    sayNote(
        "There are beginnings with an ending, but all too far apart; to find them at any distance, use "
        "--unit "
        "document without --apart.");
  }

  /// Whether somebody who was asked about a block ended the run there.
  bool isCutShort() const { return interviewer_ && interviewer_->stopped(); }

  void leaveTheRest(const std::string& how) const {
    const std::size_t from = results_.handedOut() - (isCutShort() ? 1 : 0);
    const std::size_t left = listing_.documents.size() - from;
    if (left == 0) return sayError(how + "; all documents were worked on.");
    const std::string what = how + "; " + counted(static_cast<std::int64_t>(left), "document") +
                             " of the run " +
                             (isCutShort() ? "are left, this one among them. " : "were not opened. ");
    try {
      const std::string list = writeUnfinished(system_, listing_.documents, from);
      sayError(what +
               "To go on with them, give the same command with these in the place of the documents: --null "
               "--files-from " +
               list);
    } catch (const files::DocumentError& unwritten) {
      sayError(what + "There is no list of them: " + unwritten.what());
    }
  }

  const Plan& plan_;
  files::FileSystem& system_;
  store::Store store_;
  Listing listing_;
  std::unique_ptr<Printer> printer_;
  std::unique_ptr<journal::Recorder> recorder_;
  std::optional<Interviewer> interviewer_;
  PasswordBudget passwordBudget_;
  Totals totals_;
  Progress progress_;
  Results results_;
};

}  // namespace

ExitStatus run(const Plan& plan, files::FileSystem& system) {
  if (plan.confirm && !Interviewer::canAsk())
    throw UsageError("--confirm needs a terminal to ask at; use --dry-run to see the changes first.");
  std::optional<ReportPlace> report;
  if (plan.report) report = reportPlace(*plan.report, plan.overwriteReport);
  Listing listing = listingFor(plan, system, report);
  notePasswordFile(plan);
  makeOutputFolder(plan, system);
  return Run(plan, system, std::move(listing), report).all();
}

}  // namespace pluvo::cli
