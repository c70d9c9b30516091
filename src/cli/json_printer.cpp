#include "base/json.h"
#include "printer.h"
#include "runs/outcome_json.h"
#include "runs/sliced.h"

namespace pluvo::cli {
namespace {

class JsonPrinter : public runs::Observer {
 public:
  explicit JsonPrinter(const Plan& plan) : plan_(plan), request_(requestDigestOf(plan)) {}

  /// A slice names its run before its documents, so that a killed one has named it.
  void begins(std::size_t /*documents*/) override {
    if (!plan_.selection.slice) return;
    base::JsonObject slice;
    slice.text("run", plan_.runName)
        .number("number", plan_.selection.slice->number)
        .number("of", plan_.selection.slice->count)
        .text("request", request_)
        .text("command", plan_.command);
    writeOut(base::JsonObject().json("slice", slice.str()).str() + "\n");
    flushOut();
  }
  void document(const runs::Outcome& outcome) override { writeOut(inJson(outcome) + "\n"); }
  void ends(const runs::Totals& totals) override {
    base::JsonObject summary = summaryInJson(totals);
    if (plan_.selection.slice) summary.text("request", request_);
    writeOut(base::JsonObject().json("summary", summary.str()).str() + "\n");
  }

 private:
  const Plan& plan_;
  const std::string request_;
};

}  // namespace

std::unique_ptr<runs::Observer> jsonPrinter(const Plan& plan) { return std::make_unique<JsonPrinter>(plan); }

}  // namespace pluvo::cli
