#include "document_run.h"

#include "engine/clsProcessFind.h"
#include "errors/clsErrorLogging.h"
#include "errors/context.h"
#include "errors/text.h"
#include "forms/form.h"
#include "memory/application.h"
#include "message_policy.h"
#include "pass_watcher.h"

#include <memory>
#include <new>

namespace pluvo::cli {

using files::DocumentError;
using files::Problem;

namespace {

constexpr std::int32_t kFullDetail = 4;

std::string_view fileName(std::string_view path) { return path.substr(path.rfind('/') + 1); }

std::int32_t operationOf(Command command) {
  switch (command) {
    case Command::insert:
      return engine::kInsert;
    case Command::replace:
      return engine::kReplace;
    case Command::remove:
      return engine::kDelete;
    case Command::highlight:
      return engine::kHighlight;
    case Command::find:
      break;
  }
  return engine::kNone;
}

void handOver(const Request& request, engine::clsProcessFind& find) {
  find.BeginBlock(request.begin);
  find.EndBlock(request.end);
  find.InsideBlock(request.inside);
  find.UnitsApart(request.apart);
  find.UnitsApartType(static_cast<std::int32_t>(request.unit));
  find.Operation(operationOf(request.command));
  find.OperationLocation(static_cast<std::int32_t>(request.place));
  find.BeforeOrAfter(request.after ? engine::kAfter : engine::kBefore);
  find.ReplaceInsertTextString(request.text);
  find.ExtraSpaceSetting(request.extraSpace);
  find.HighlightColorSetting(static_cast<std::int16_t>(request.color));
  find.MatchOnlyWholeWords(request.wholeWords);
  find.MatchTextCaseSetting(request.matchCase);
  find.ShowFieldCodes(request.fieldCodes);
  find.StartFindsAtBeginningSetting(true);
  find.QuiteModeSetting(true);
  find.ConfirmEachOperationsetting(request.confirm);
  find.LiftLimitsSetting(true);
}

/// In quiet mode a pass shows no form.
class NoForms final : public forms::FormHost {
 public:
  void runModal(forms::Form& /*form*/) override {}
  void visibleChanged(forms::Form& /*form*/) override {}
  void repaint(forms::Form& /*form*/) override {}
};

/// One pass; what was refused, and what else went wrong in it, is in the outcome behind it.
void pass(store::StoredDocument& document, const Surroundings& around, Outcome& outcome) {
  PassWatcher watcher(document, around, outcome);
  PassBoxes boxes(outcome.path, watcher, around.interviewer);
  FirstReport report;
  errors::Context context;
  context.reporter = std::make_shared<errors::clsErrorLogging>(context.currentFault, report);
  context.reporter->ErrorDetailLevel(kFullDetail);
  NoForms forms;
  auto application = std::make_shared<memory::MemoryApplication>();
  application->add(document.document());

  engine::clsProcessFind find(
      {[&] { return std::shared_ptr<word::Application>(application); }, context, boxes, forms});
  find.observer(&watcher);
  handOver(around.request, find);
  find.GoGetEmFARBOT();

  if (outcome.failure) return;
  const bool allRefused = watcher.refused() > 0 && outcome.operated == 0;
  if (watcher.refused() > 0 && (!around.request.keepGoing || allRefused)) {
    outcome.failure = watcher.firstRefusal();
  } else if (watcher.refused() > 0) {
    outcome.refused = watcher.refused();
  } else if (report.text()) {
    outcome.failure = {Problem::refused, errors::utf8(*report.text())};
  }
}

void save(store::StoredDocument& document, const Request& request, Outcome& outcome) {
  outcome.changed = document.document()->model().changed();
  if (!outcome.changed) {
    // A large text lies in its file; what was found in it counts only if nobody wrote there meanwhile.
    document.requireUnchangedFile();
    return;
  }
  if (request.dryRun) return;
  store::SaveOptions options;
  options.backupSuffix = request.backupSuffix;
  if (request.outputFolder) {
    options.otherPath = *request.outputFolder + "/" + std::string(fileName(outcome.path));
  }
  const auto saved = document.save(options);
  outcome.saved = saved.written;
  outcome.backup = saved.backup;
  outcome.savedAs = options.otherPath.value_or("");
}

}  // namespace

Outcome runOn(const NamedDocument& named, const Surroundings& around) {
  Outcome outcome;
  outcome.path = named.path;
  outcome.failure = named.failure;
  if (outcome.failure) return outcome;
  try {
    const auto document = around.store.open(named.path);
    pass(*document, around, outcome);
    if (!outcome.failure) save(*document, around.request, outcome);
  } catch (const DocumentError& error) {
    outcome.failure = {error.problem(), error.what()};
  } catch (const errors::Fault& fault) {
    outcome.failure = failureFrom(fault);
  } catch (const std::bad_alloc&) {
    outcome.failure = {Problem::tooLarge,
                       "There is not enough memory for it; close other programs, or divide it."};
  }
  return outcome;
}

}  // namespace pluvo::cli
