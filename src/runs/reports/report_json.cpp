#include "base/json.h"
#include "reports/report_file.h"
#include "reports/report_kinds.h"
#include "runs/not_reached_json.h"
#include "runs/written_request.h"

#include <utility>

namespace pluvo::runs {
namespace {

std::string member(std::string_view name, const std::string& value) {
  return "\"" + std::string(name) + "\":" + value;
}

std::string object(const Excerpt& excerpt) {
  return "{" + member("lead", base::jsonQuoted(excerpt.lead)) + "," +
         member("text", base::jsonQuoted(excerpt.piece)) + "," +
         member("trail", base::jsonQuoted(excerpt.trail)) + "}";
}

std::string object(const BlockReport& block) {
  return "{" + member("command", base::jsonQuoted(nameOf(block.request->operation))) + "," +
         member("paragraph", std::to_string(block.paragraph)) + "," + member("before", object(block.before)) +
         "," + member("after", block.after ? object(*block.after) : "null") + "," +
         member("deleted", block.deleted ? "true" : "false") + "," +
         member("refused", block.refused ? "true" : "false") + "," +
         member("skipped", block.skipped ? "true" : "false") + "}";
}

class JsonReport final : public Observer {
 public:
  JsonReport(const ReportPlace& place, std::string command) : file_(place), command_(std::move(command)) {}

  bool wantsBlocks() const override { return true; }

  void block(const std::string& path, const BlockReport& block) override {
    file_.addLater((inDocument_ ? std::string(",\n   ") : opening(path)) + object(block));
  }

  void document(const Outcome& outcome) override {
    std::string error = "null";
    if (outcome.failure) {
      error = "{" + member("code", base::jsonQuoted(errors::nameOf(outcome.failure->problem))) + "," +
              member("message", base::jsonQuoted(outcome.failure->message)) + "}";
    }
    file_.addLater(
        (inDocument_ ? "" : opening(outcome.path)) + "],\n  " +
        member("found", std::to_string(outcome.found)) + "," +
        member("operated", std::to_string(outcome.operated)) + "," +
        member("skipped", std::to_string(outcome.skipped)) + "," +
        member("refused", std::to_string(outcome.refused)) + "," +
        member("saved", outcome.saved ? "true" : "false") + "," +
        member("savedAs", base::jsonQuoted(outcome.savedAs)) + "," +
        member("backup", base::jsonQuoted(outcome.backup)) + "," + member("error", error) + "," +
        member("encoding", outcome.encoding.empty() ? "null" : base::jsonQuoted(outcome.encoding)) +
        notReachedInJson(outcome.elsewhere) + notLookedIntoInJson(outcome.elsewhere) + "}");
    inDocument_ = false;
  }

  void leftOut(const LeftOut& leftOut) override {
    notTaken_ += (notTaken_.empty() ? "\n " : ",\n ") +
                 ("{" + member("file", base::jsonQuoted(leftOut.path))) + "," +
                 member("reason", base::jsonQuoted(wordsOf(leftOut.reason))) + "}";
  }

  void ends(const Totals& totals) override {
    file_.finish(
        std::string(kJsonMark) + "\n" + member("command", base::jsonQuoted(command_)) + ",\n\"documents\":[",
        "],\n\"notTaken\":[" + notTaken_ + "],\n\"summary\":{" +
            member("files", std::to_string(totals.files)) + "," +
            member("found", std::to_string(totals.found)) + "," +
            member("operated", std::to_string(totals.operated)) + "," +
            member("skipped", std::to_string(totals.skipped)) + "," +
            member("changed", std::to_string(totals.changed)) + "," +
            member("failed", std::to_string(totals.failed)) + "," +
            member("left_out", std::to_string(totals.leftOut)) + notReachedInJson(totals) + "}}\n");
  }

 private:
  /// Of a document, as far as its first block.
  std::string opening(const std::string& path) {
    inDocument_ = true;
    return std::string(std::exchange(first_, false) ? "\n " : ",\n ") + "{" +
           member("file", base::jsonQuoted(path)) + ",\"blocks\":[";
  }

  ReportFile file_;
  std::string command_;
  std::string notTaken_;
  bool first_ = true;
  bool inDocument_ = false;
};

}  // namespace

std::unique_ptr<Observer> jsonReport(const ReportPlace& place, const std::string& command) {
  return std::make_unique<JsonReport>(place, command);
}

}  // namespace pluvo::runs
