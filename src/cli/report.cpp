#include "report.h"

#include "base/json.h"
#include "base/shown.h"
#include "names_from.h"
#include "printer.h"
#include "runs/outcome_json.h"
#include "runs/report_on_slices.h"
#include "usage_error.h"

#include <cstdio>

namespace pluvo::cli {
namespace {

/// Documents that failed or are missing, a line each, then the slices that have not ended, and counts.
class ReportPrinter final : public runs::Observer {
 public:
  void document(const runs::Outcome& outcome) override {
    if (!outcome.failure) return;
    writeOut(base::shown(outcome.path) + ": " + std::string(errors::nameOf(outcome.failure->problem)) + ": " +
             base::shown(outcome.failure->message) + "\n");
  }
  void leftOut(const runs::LeftOut& leftOut) override {
    writeOut(base::shown(leftOut.path) + ": " + std::string(wordsOf(leftOut.reason)) + "\n");
  }

  static void sum(const runs::SliceReport& report) {
    std::int64_t ended = 0;
    for (const runs::SliceTold& slice : report.slices()) {
      const bool isOver = slice.stage == runs::SliceTold::Stage::ended;
      ended += isOver ? 1 : 0;
      if (isOver) continue;
      std::string line = base::shown(slice.run) + ": slice " + std::to_string(slice.number) + " of " +
                         std::to_string(slice.count) + " " + std::string(wordsOf(slice.stage));
      if (!slice.machines.empty()) line += " (" + base::shown(slice.machines) + ")";
      if (slice.documents > 0)
        line +=
            ", " + std::to_string(slice.done) + " of " + base::counted(slice.documents, "document") + " done";
      writeOut(line + "\n");
    }
    const runs::Totals& totals = report.totals();
    std::string line = std::to_string(ended) + " of " +
                       base::counted(static_cast<std::int64_t>(report.slices().size()), "slice") +
                       " ended. " + base::counted(totals.files + report.missing(), "document") + ": " +
                       foundInWords(totals.found, totals.places) + ", " + std::to_string(totals.operated) +
                       " operated on, " + base::counted(totals.changed, "document") + " changed, " +
                       std::to_string(totals.failed) + " failed, " + std::to_string(report.missing()) +
                       " not worked on";
    if (totals.notReached > 0)
      line += ", " + std::to_string(totals.notReached) + " with text that was not reached";
    writeOut(line + "\n");
  }
};

class JsonLines final : public runs::Observer {
 public:
  void document(const runs::Outcome& outcome) override { writeOut(inJson(outcome) + "\n"); }
  void leftOut(const runs::LeftOut& leftOut) override {
    writeOut(base::JsonObject().text("missing", leftOut.path).str() + "\n");
  }
  static void sum(const runs::SliceReport& report) {
    for (const runs::SliceTold& slice : report.slices())
      writeOut(base::JsonObject().json("part", inJson(slice)).str() + "\n");
    base::JsonObject summary = summaryInJson(report.totals());
    summary.text("request", report.request()).text("command", report.command());
    writeOut(base::JsonObject().json("summary", summary.str()).str() + "\n");
  }
};

std::optional<std::vector<std::string>> listOf(const TypedOptions& typed) {
  if (typed.null && !typed.filesFrom && !typed.rest)
    throw UsageError("--null tells how names end in --files-from and in --rest; add one of them.");
  if (!typed.filesFrom) return std::nullopt;
  return namesFrom(*typed.filesFrom, typed.null);
}

ExitStatus made(const TypedOptions& typed, runs::SliceReport& report) {
  runs::ReportFiles files;
  files.report = typed.report;
  files.overwrite = typed.overwriteReport;
  files.rest = typed.rest;
  files.nullEnded = typed.null;
  ReportPrinter text;
  JsonLines json;
  runs::Observer none;
  runs::Observer& printer = typed.json ? static_cast<runs::Observer&>(json) : typed.quiet ? none : text;
  reportOn(report, files, printer);
  if (typed.json)
    JsonLines::sum(report);
  else if (!typed.quiet)
    ReportPrinter::sum(report);
  flushOut();
  if (!report.isWhole()) return kFailed;
  return report.totals().found > 0 ? kFound : kNoneFound;
}

}  // namespace

ExitStatus report(const TypedCommandLine& line, files::FileSystem& system) {
  const TypedOptions& typed = line.options;
  if (line.paths.empty())
    throw UsageError(
        "Name the runs, or files that runs printed with --json: pluvo report NAME. 'pluvo undo --list' shows "
        "the runs.");
  if (typed.overwriteReport && !typed.report)
    throw UsageError("--overwrite-report goes with --report; name the file there.");
  try {
    runs::SliceReport slices(system, line.paths, typed.journalDir, listOf(typed));
    return made(typed, slices);
  } catch (const runs::SlicesRefused& refused) {
    throw UsageError(refused.what());
  } catch (const runs::CannotBegin& refused) {
    throw UsageError(sentenceFor(refused));
  }
}

}  // namespace pluvo::cli
