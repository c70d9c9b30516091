#include "run.h"

#include "document_run.h"
#include "interviewer.h"
#include "named_documents.h"
#include "printer.h"
#include "store/store.h"
#include "usage_error.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <optional>
#include <system_error>

namespace pluvo::cli {
namespace {

constexpr std::size_t kFindLimit = 255;

bool isCut(const std::u16string& text) {
  return text.size() > kFindLimit || text.find_first_of(u"\r\v") != std::u16string::npos;
}

void noteWholeWords(const Request& request) {
  if (request.quiet || !request.wholeWords) return;
  if (isCut(request.begin) || isCut(request.end) || isCut(request.inside)) {
    sayNote("Note: --whole-words has no effect with a text of several paragraphs or over 255 characters.");
  }
}

void makeOutputFolder(const Request& request, files::FileSystem& system) {
  if (!request.outputFolder || request.dryRun) return;
  try {
    if (!system.exists(*request.outputFolder)) system.createFolder(*request.outputFolder);
    if (system.statusAt(*request.outputFolder).kind == files::FileKind::folder) return;
    throw UsageError("--output: " + shownPath(*request.outputFolder) + " is not a folder.");
  } catch (const std::system_error& refused) {
    throw UsageError("--output: cannot make the folder " + shownPath(*request.outputFolder) + ": " +
                     std::strerror(refused.code().value()) + ".");
  }
}

void sayFailure(const Outcome& outcome) {
  const Failure& failure = *outcome.failure;
  sayError(shownPath(outcome.path) + ": " + std::string(files::nameOf(failure.problem)) + ": " +
           failure.message);
}

void sayRefused(const Outcome& outcome) {
  sayNote(shownPath(outcome.path) + ": " + std::to_string(outcome.refused) +
          " of its changes were refused and left out.");
}

void flushOut() {
  if (std::fflush(stdout) != 0) throw std::system_error(errno, std::generic_category());
}

}  // namespace

ExitStatus run(const Request& request, files::FileSystem& system) {
  std::optional<Interviewer> interviewer;
  if (request.confirm) {
    if (!Interviewer::canAsk()) {
      throw UsageError("--confirm needs a terminal to ask at; use --dry-run to see the changes first.");
    }
    interviewer.emplace(request);
  }
  noteWholeWords(request);
  makeOutputFolder(request, system);

  const auto printer = printerFor(request);
  const store::Store store(system);
  Totals totals;
  for (const NamedDocument& document : documentsNamed(system, request.paths)) {
    if (interviewer && interviewer->stopped()) break;
    const Outcome outcome =
        runOn(document, {request, store, *printer, interviewer ? &*interviewer : nullptr});
    if (outcome.failure) sayFailure(outcome);
    if (outcome.refused > 0) sayRefused(outcome);
    printer->document(outcome);
    flushOut();
    totals.add(outcome);
  }
  printer->end(totals);
  flushOut();
  if (totals.failed > 0) return kFailed;
  return totals.found > 0 ? kFound : kNoneFound;
}

}  // namespace pluvo::cli
