#include "base/json.h"
#include "printer.h"
#include "runs/outcome_json.h"

namespace pluvo::cli {
namespace {

class JsonPrinter : public runs::Observer {
 public:
  void document(const runs::Outcome& outcome) override {
    base::JsonObject line;
    line.text("file", outcome.path)
        .number("found", outcome.found)
        .number("operated", outcome.operated)
        .number("skipped", outcome.skipped)
        .truth("saved", outcome.saved);
    runs::addErrorAndEncoding(line, outcome);
    runs::addNotReached(line, outcome.elsewhere);
    writeOut(line.str() + "\n");
  }

  void ends(const runs::Totals& totals) override {
    writeOut(base::JsonObject().json("summary", runs::summaryInJson(totals)).str() + "\n");
  }
};

}  // namespace

std::unique_ptr<runs::Observer> jsonPrinter() { return std::make_unique<JsonPrinter>(); }

}  // namespace pluvo::cli
