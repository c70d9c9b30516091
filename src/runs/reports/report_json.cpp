#include "base/json.h"
#include "reports/report_file.h"
#include "reports/report_kinds.h"
#include "runs/outcome_json.h"
#include "runs/written_request.h"

#include <utility>

namespace pluvo::runs {
namespace {

std::string object(const Excerpt& excerpt) {
  return base::JsonObject()
      .text("lead", excerpt.lead)
      .text("text", excerpt.piece)
      .text("trail", excerpt.trail)
      .str();
}

std::string object(const BlockReport& block) {
  return base::JsonObject()
      .text("command", nameOf(block.request->operation))
      .text("place", block.place.empty() ? "main text" : block.place)
      .number("paragraph", block.paragraph)
      .json("before", object(block.before))
      .json("after", block.after ? object(*block.after) : "null")
      .truth("deleted", block.deleted)
      .truth("refused", block.refused)
      .truth("skipped", block.skipped)
      .str();
}

class JsonReport final : public Observer {
 public:
  JsonReport(const ReportPlace& place, std::string command, const std::vector<SliceTold>* slices)
      : file_(place), command_(std::move(command)), slices_(slices) {}

  bool wantsBlocks() const override { return true; }

  void block(const std::string& path, const BlockReport& block) override {
    file_.addLater((inDocument_ ? std::string(",\n   ") : opening(path)) + object(block));
  }

  void document(const Outcome& outcome) override {
    base::JsonObject members;
    addResult(members, outcome);
    members.number("refused", outcome.refused)
        .text("savedAs", outcome.savedAs)
        .text("backup", outcome.backup);
    if (outcome.cutShort) members.truth("unfinished", true);
    file_.addLater((inDocument_ ? "" : opening(outcome.path)) + "],\n  " + members.members() + "}");
    inDocument_ = false;
  }

  void leftOut(const LeftOut& leftOut) override {
    notTaken_ += (notTaken_.empty() ? "\n " : ",\n ") +
                 base::JsonObject().text("file", leftOut.path).text("reason", wordsOf(leftOut.reason)).str();
  }

  void ends(const Totals& totals) override {
    file_.finish(std::string(kJsonMark) + "\n" + base::JsonObject().text("command", command_).members() +
                     ",\n\"documents\":[",
                 "],\n\"notTaken\":[" + notTaken_ + "]," + slices() +
                     "\n\"summary\":" + summaryInJson(totals).str() + "}\n");
  }

 private:
  std::string slices() const {
    if (slices_ == nullptr) return {};
    std::string list;
    for (const SliceTold& each : *slices_) list += (list.empty() ? "\n " : ",\n ") + inJson(each);
    return "\n\"slices\":[" + list + "],";
  }

  /// Of a document, as far as its first block.
  std::string opening(const std::string& path) {
    inDocument_ = true;
    return std::string(std::exchange(first_, false) ? "\n " : ",\n ") + "{" +
           base::JsonObject().text("file", path).members() + ",\"blocks\":[";
  }

  ReportFile file_;
  std::string command_;
  const std::vector<SliceTold>* slices_;
  std::string notTaken_;
  bool first_ = true;
  bool inDocument_ = false;
};

}  // namespace

std::unique_ptr<Observer> jsonReport(const ReportPlace& place, const std::string& command,
                                     const std::vector<SliceTold>* slices) {
  return std::make_unique<JsonReport>(place, command, slices);
}

}  // namespace pluvo::runs
