#include "runs/run.h"

#include "base/at_once.h"
#include "document_run.h"
#include "group_saver.h"
#include "reports/report.h"
#include "results.h"
#include "slices/slice_run.h"
#include "unfinished.h"

#include <cerrno>
#include <cstring>
#include <set>
#include <system_error>
#include <thread>

namespace pluvo::runs {
namespace {

using CannotBeginFor = CannotBegin::Reason;

void makeOutputFolder(const Plan& plan, files::FileSystem& system) {
  if (!plan.outputFolder || plan.dryRun) return;
  const std::string& folder = *plan.outputFolder;
  const auto refuse = [](const std::string& why) { throw CannotBegin(CannotBeginFor::outputFolder, why); };
  try {
    if (!system.exists(folder)) system.createFolder(folder);
    if (system.statusAt(folder).kind != files::FileKind::folder) refuse(folder + " is not a folder.");
  } catch (const std::system_error& refused) {
    const int error = refused.code().value();
    refuse("cannot make the folder " + folder + ": " +
           (error == ENOTDIR  ? "a part of its path is a file; name another folder"
            : error == ENOENT ? "the folder above it is missing; make that first"
                              : std::strerror(error)) +
           ".");
  }
}

std::optional<std::string> journalOf(const Plan& plan) {
  return plan.journalFolder ? journal::folderBelow(*plan.journalFolder) : journal::defaultFolder();
}

/// The folder of the runs; throws CannotBegin where there can be none.
std::string requireJournalOf(const Plan& plan) {
  if (auto folder = journalOf(plan)) return *std::move(folder);
  throw CannotBegin(
      CannotBeginFor::stateFolder,
      "Neither XDG_STATE_HOME nor HOME names a folder, so there is no place to keep the originals.");
}

/// Makes a recorder. A journal that is refused becomes CannotBegin.
template <class Make>
auto recorderFrom(Make make) {
  try {
    return make();
  } catch (const errors::DocumentError& refused) {
    throw CannotBegin(CannotBeginFor::journal, refused);
  }
}

/// Which of two documents of one name came first in the other folder would be chance.
void refuseSharedPlaces(std::vector<NamedDocument>& documents, const Face& face) {
  std::set<std::string> taken;
  for (NamedDocument& document : documents) {
    if (document.failure || taken.insert(document.place).second) continue;
    document.failure = {errors::Problem::io, face.sentenceFor(Trouble::placeTaken)};
  }
}

/// An earlier report among the documents is left out; a document is not to be written over.
void refuseReportOnDocument(files::FileSystem& system, const Listing& listing, const std::string& report) {
  for (const LeftOut& each : listing.leftOut) {
    if (each.reason == Reason::writtenByRun && files::isSameFile(system, each.path, report))
      throw CannotBegin(CannotBeginFor::report,
                        each.path + " is one of the documents; give the report another name.");
  }
}

Listing listingFor(const Plan& plan, const Face& face, files::FileSystem& system,
                   const std::optional<ReportPlace>& report) {
  std::vector<std::string> written;
  if (plan.outputFolder) written.push_back(*plan.outputFolder);
  if (report) written.push_back(report->path);
  Listing listing = listDocuments(system, plan.selection, written,
                                  [&](Trouble trouble) { return face.sentenceFor(trouble); });
  if (report && report->isForeign) refuseReportOnDocument(system, listing, report->path);
  if (plan.outputFolder) refuseSharedPlaces(listing.documents, face);
  return listing;
}

/// A run that is going on.
class Run {
 public:
  Run(const Plan& plan, Face& face, files::FileSystem& system, Listing listing,
      const std::optional<ReportPlace>& report)
      : plan_(plan),
        face_(face),
        system_(system),
        store_(system),
        listing_(std::move(listing)),
        report_(report ? reportPrinter(*report, plan.command) : nullptr),
        jobs_(face.oneByOne() ? 1 : plan.jobs),
        results_(listing_.documents.size(), jobs_,
                 {[this](std::size_t document, const BlockReport& block) { tell(document, block); },
                  [this](std::size_t document, const Outcome& outcome) { tell(document, outcome); }}) {
    if (!plan.runName.empty()) {
      beginSliceOfRun();
    } else if (plan.journal && plan.changesInPlace()) {
      recorder_ = recorderFrom(
          [&] { return std::make_unique<journal::Recorder>(system, requireJournalOf(plan), plan.command); });
    }
  }

  Ended all() {
    face_.begins(listing_.documents.size());
    try {
      work();
      if (slice_ && cutShort_.empty() && results_.handedOut() == listing_.documents.size()) slice_->end();
    } catch (const std::exception&) {
      ended_.thrown = std::current_exception();
      return ended();
    }
    for (const LeftOut& each : listing_.leftOut) tell(each);
    ended_.totals.unfinished =
        static_cast<std::int64_t>(cutShort_.size() + listing_.documents.size() - results_.handedOut());
    for (std::size_t i = results_.handedOut(); i < listing_.documents.size(); ++i)
      tellAll([&](Observer& observer) { observer.leftOut({listing_.documents[i].path, Reason::stopped}); });
    try {
      if (report_) report_->ends(ended_.totals);
    } catch (const errors::DocumentError& unwritten) {
      ended_.reportProblem = unwritten.what();
    }
    face_.ends(ended_.totals);
    return ended();
  }

 private:
  void beginSliceOfRun() {
    const std::string folder = requireJournalOf(plan_);
    auto recorder = recorderFrom([&] { return beginSlice(plan_, system_, folder); });
    slice_.emplace(system_, listing_.documents, *recorder);
    recorder_ = std::move(recorder);
    for (const std::string& warning : lockWarnings(plan_, folder, listing_.documents)) face_.warns(warning);
  }

  void work() {
    {
      GroupSaver saver(waiting(), [this](GroupSaver::Version version) {
        guarded([&] { done(version.document, outcomeOf(std::move(version.worked))); });
      });
      const std::size_t useful = std::min(listing_.documents.size(), static_cast<std::size_t>(jobs_));
      std::vector<std::thread> others;
      try {
        for (std::size_t i = 1; i < useful; ++i) others.emplace_back([&] { job(saver); });
      } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): fewer threads do the same
      }
      job(saver);
      for (std::thread& other : others) other.join();
    }
    results_.rethrow();
  }

  /// How many documents may wait for the disk while others are worked on. None where the face works on one
  /// after the other: it is told the outcome of each before the next.
  std::size_t waiting() const {
    constexpr std::size_t kWaiting = 15;
    const bool saves = plan_.changesInPlace() || plan_.outputFolder;
    return saves && !face_.oneByOne() && listing_.documents.size() > 1 ? kWaiting : 0;
  }

  void job(GroupSaver& saver) {
    const base::Worker worker;
    guarded([&] {
      const bool wantsBlocks = report_ || face_.wantsBlocks();
      while (const auto document = nextDocument()) {
        if (auto earlier = slice_ ? slice_->earlier(*document) : std::nullopt) {
          results_.done(*document, *std::move(earlier));
          continue;
        }
        BlockSink blocks;
        if (wantsBlocks) blocks = [&](const BlockReport& block) { results_.block(*document, block); };
        Worked worked =
            runOn(listing_.documents[*document], *document + 1,
                  {plan_, store_, face_, recorder_.get(), passwordBudget_, waiting() == 0}, blocks);
        if (worked.outcome.cutShort) results_.stop();
        if (worked.version == nullptr) {
          done(*document, std::move(worked.outcome));
          continue;
        }
        saver.add({*document, std::move(worked)});
      }
    });
  }

  void done(std::size_t document, Outcome outcome) {
    if (slice_) slice_->result(document, outcome);
    results_.done(document, std::move(outcome));
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
    if (face_.cancelled() != Cancelled::no) results_.stop();
    return results_.next();
  }

  template <class Telling>
  void tellAll(Telling telling) {
    if (report_) telling(*report_);
    telling(face_);
  }

  void tell(std::size_t document, const BlockReport& block) {
    const std::string& path = listing_.documents[document].path;
    if (report_) report_->block(path, block);
    if (face_.wantsBlocks()) face_.block(path, block);
  }

  void tell(std::size_t document, const Outcome& outcome) {
    ended_.totals.add(outcome);
    if (outcome.cutShort) cutShort_.push_back(&listing_.documents[document]);
    tellAll([&](Observer& observer) { observer.document(outcome); });
  }

  void tell(const LeftOut& leftOut) {
    ++ended_.totals.leftOut;
    if (leftOut.reason == Reason::link) ++ended_.totals.links;
    tellAll([&](Observer& observer) { observer.leftOut(leftOut); });
  }

  Ended ended() {
    ended_.isCancelled = face_.cancelled() != Cancelled::no;
    ended_.isCutShort = !cutShort_.empty();
    if (recorder_) {
      ended_.undoName = recorder_->name();
      ended_.notKept = recorder_->notKept();
    }
    const bool several = plan_.selection.several();
    if (ended_.thrown || ended_.isCancelled || (ended_.isCutShort && several))
      ended_.unfinished = unfinished();
    return std::move(ended_);
  }

  Unfinished unfinished() const {
    std::vector<const NamedDocument*> documents = cutShort_;
    for (std::size_t i = results_.handedOut(); i < listing_.documents.size(); ++i)
      documents.push_back(&listing_.documents[i]);
    Unfinished left{documents.size()};
    if (documents.empty() || slice_) return left;
    try {
      left.list = writeUnfinished(system_, documents);
    } catch (const errors::DocumentError& unwritten) {
      left.problem = unwritten.what();
    }
    return left;
  }

  const Plan& plan_;
  Face& face_;
  files::FileSystem& system_;
  store::Store store_;
  Listing listing_;
  std::unique_ptr<Observer> report_;
  std::unique_ptr<journal::Recorder> recorder_;
  std::optional<SliceRun> slice_;
  PasswordBudget passwordBudget_;
  int jobs_;
  Ended ended_;
  std::vector<const NamedDocument*> cutShort_;
  Results results_;
};

}  // namespace

Ended run(const Plan& plan, Face& face, files::FileSystem& system) {
  std::optional<ReportPlace> report;
  if (plan.report) report = reportPlace(*plan.report, plan.overwriteReport);
  Listing listing = listingFor(plan, face, system, report);
  makeOutputFolder(plan, system);
  return Run(plan, face, system, std::move(listing), report).all();
}

}  // namespace pluvo::runs
