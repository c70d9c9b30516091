#include "document_run.h"

#include "base/names.h"
#include "base/text.h"
#include "base/utf.h"
#include "dialog/clsProcessFind.h"
#include "errors/clsErrorLogging.h"
#include "errors/context.h"
#include "memory/application.h"
#include "message_policy.h"
#include "multifile/file_driver.h"
#include "not_reached.h"
#include "pass_watcher.h"
#include "prompt_answers.h"
#include "run_opener.h"

#include <memory>
#include <utility>
#include <vector>

namespace pluvo::cli {

using files::Problem;

namespace {

constexpr std::int32_t kFullDetail = 4;

void handOver(const engine::Request& request, bool confirm, dialog::clsProcessFind& find) {
  find.BeginBlock(request.begin);
  find.EndBlock(request.end);
  find.InsideBlock(request.inside);
  find.UnitsApart(base::decimal(request.distance));
  find.UnitsApartType(request.unit);
  find.Operation(request.operation);
  find.OperationLocation(request.location);
  find.BeforeOrAfter(request.place);
  find.ReplaceInsertTextString(request.text);
  find.ExtraSpaceSetting(request.extraSpace);
  find.HighlightColorSetting(request.highlightColour);
  find.MatchOnlyWholeWords(request.wholeWords);
  find.MatchTextCaseSetting(request.matchCase);
  find.ShowFieldCodes(request.showFieldCodes);
  find.StartFindsAtBeginningSetting(request.startAtTop);
  find.QuiteModeSetting(true);
  find.ConfirmEachOperationsetting(confirm && request.operation != engine::kNone);
  find.LiftLimitsSetting(request.liftLimits);
}

/// One document with an engine of its own: the multi-file driver over a list of one.
class DocumentRun {
 public:
  DocumentRun(const NamedDocument& named, const Surroundings& around, const BlockSink& blocks,
              Outcome& outcome)
      : around_(around),
        blocks_(blocks),
        outcome_(outcome),
        opener_(std::make_shared<RunOpener>(named, around, outcome)),
        application_(std::make_shared<memory::MemoryApplication>(opener_)),
        prompts_(around.plan.passwords.passwords, around.passwordBudget,
                 [this] { return opener_->file()->stored().hashesForPassword(); }),
        boxes_(outcome.path, around.interviewer, prompts_),
        engine_({[this] { return std::shared_ptr<word::Application>(application_); }, context_, boxes_,
                 prompts_}) {
    context_.reporter = std::make_shared<errors::clsErrorLogging>(context_.currentFault, report_);
    context_.reporter->ErrorDetailLevel(kFullDetail);
    engine_.stepper(std::make_shared<multifile::FileDriver>());
  }

  void work() {
    std::int32_t index = 0;
    if (!engine_.MultiPLUVO_OpenNextFile({base::nameText(outcome_.path)}, index)) {
      if (!outcome_.failure) outcome_.failure = unexplained();
      return;
    }
    for (const engine::Request& request : around_.plan.requests) {
      pass(request);
      if (outcome_.failure || boxes_.stopped()) break;
    }
    if (tellsNotReached(around_.plan)) lookElsewhere();
    settle();
    engine_.MultiPLUVO_CloseFile();
  }

  std::unique_ptr<files::Pending> takeVersion() {
    return opener_->file() ? opener_->file()->takeVersion() : nullptr;
  }

 private:
  void pass(const engine::Request& request) {
    PassWatcher watcher(*opener_->file(), around_, request, blocks_, outcome_);
    boxes_.watch(&watcher);
    engine_.observer(&watcher);
    handOver(request, around_.interviewer != nullptr, engine_);
    engine_.GoGetEmFARBOT();
    engine_.observer(nullptr);
    boxes_.watch(nullptr);

    refused_ += watcher.refused();
    if (!firstRefusal_) firstRefusal_ = watcher.firstRefusal();
    if (outcome_.failure) return;
    if (watcher.refused() > 0 && !around_.plan.keepGoing) {
      outcome_.failure = firstRefusal_;
    } else if (watcher.refused() == 0 && report_.text()) {
      outcome_.failure = unexplained();
    }
    report_.forget();
  }

  /// What all requests together did not reach, also of a document in which something failed: it was read.
  /// What goes wrong meanwhile is told, and keeps nothing from being saved.
  void lookElsewhere() {
    const store::StoredDocument& stored = opener_->file()->stored();
    std::vector<engine::Request> requests;
    for (const Request& request : around_.plan.requests) {
      handOver(request, false, engine_);
      requests.push_back(engine_.request());
    }
    Outcome looking;
    const bool looked = recordingFailure(looking, [&] {
      outcome_.elsewhere = elsewhere::lookElsewhere(stored.source(), stored.document()->model(), requests);
    });
    if (!looked) outcome_.elsewhere.damaged.push_back({"other parts", looking.failure->message});
  }

  /// Behind the last pass and before the document is closed, which saves it.
  void settle() {
    if (outcome_.failure) return;
    if (refused_ > 0 && outcome_.operated == 0) {
      outcome_.failure = firstRefusal_;
      return;
    }
    outcome_.refused = refused_;
    const store::StoredDocument& stored = opener_->file()->stored();
    outcome_.changed = stored.document()->model().changed();
    if (outcome_.changed) return;
    // A large text lies in its file; what was found in it counts only if nobody wrote there meanwhile.
    recordingFailure(outcome_, [&] { stored.requireUnchangedFile(); });
  }

  Failure unexplained() const {
    if (prompts_.spent() == PromptAnswers::Spent::document) {
      return {Problem::password,
              "The passwords that were tried are not its own, and trying all of them would cost more hashing "
              "than "
              "one document may; put the right one among the first in the file of --password-file."};
    }
    if (prompts_.spent() == PromptAnswers::Spent::run) {
      return {
          Problem::password,
          "Trying passwords has cost this run as much hashing as a run may; run again on the documents that "
          "are left, with the right passwords first in the file of --password-file."};
    }
    if (boxes_.passwordWrong()) {
      return {Problem::password,
              "No password in the file of --password-file lifts its protection; add the right one, on a line "
              "of its own."};
    }
    return {Problem::refused, base::utf8(report_.text().value_or(u"It could not be worked on."))};
  }

  const Surroundings& around_;
  const BlockSink& blocks_;
  Outcome& outcome_;
  FirstReport report_;
  errors::Context context_;
  std::shared_ptr<RunOpener> opener_;
  std::shared_ptr<memory::MemoryApplication> application_;
  PromptAnswers prompts_;
  RunBoxes boxes_;
  dialog::clsProcessFind engine_;
  std::int64_t refused_ = 0;
  std::optional<Failure> firstRefusal_;
};

}  // namespace

Worked runOn(const NamedDocument& named, const Surroundings& around, const BlockSink& blocks) {
  Worked worked;
  worked.outcome.path = named.path;
  worked.outcome.failure = named.failure;
  if (worked.outcome.failure) return worked;
  recordingFailure(worked.outcome, [&] {
    DocumentRun run(named, around, blocks, worked.outcome);
    run.work();
    worked.version = run.takeVersion();
  });
  return worked;
}

Outcome finished(Worked worked) {
  if (worked.version == nullptr) return std::move(worked.outcome);
  const bool saved = recordingFailure(worked.outcome, [&] {
    files::Saved version = worked.version->finish();
    worked.outcome.backup = std::move(version.backup);
    // A copy elsewhere is the user's.
    if (worked.outcome.savedAs.empty()) worked.outcome.notKept = version.notKept;
    worked.outcome.saved = true;
  });
  if (!saved) worked.outcome.savedAs.clear();
  return std::move(worked.outcome);
}

}  // namespace pluvo::cli
