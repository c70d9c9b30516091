#include "base/json.h"
#include "printer.h"
#include "runs/not_reached_json.h"

namespace pluvo::cli {
namespace {

std::string field(const char* name, std::int64_t value) {
  return ",\"" + std::string(name) + "\":" + std::to_string(value);
}

class JsonPrinter : public runs::Observer {
 public:
  void document(const runs::Outcome& outcome) override {
    std::string line = "{\"file\":" + base::jsonQuoted(outcome.path) + field("found", outcome.found) +
                       field("operated", outcome.operated) + field("skipped", outcome.skipped) +
                       ",\"saved\":" + (outcome.saved ? "true" : "false") + ",\"error\":";
    if (outcome.failure) {
      line += "{\"code\":" + base::jsonQuoted(errors::nameOf(outcome.failure->problem)) +
              ",\"message\":" + base::jsonQuoted(outcome.failure->message) + "}";
    } else {
      line += "null";
    }
    line += ",\"encoding\":" + (outcome.encoding.empty() ? "null" : base::jsonQuoted(outcome.encoding));
    writeOut(line + runs::notReachedInJson(outcome.elsewhere) + "}\n");
  }

  void ends(const runs::Totals& totals) override {
    writeOut("{\"summary\":{\"files\":" + std::to_string(totals.files) + field("found", totals.found) +
             field("operated", totals.operated) + field("skipped", totals.skipped) +
             field("changed", totals.changed) + field("failed", totals.failed) +
             field("left_out", totals.leftOut) + runs::notReachedInJson(totals) + "}}\n");
  }
};

}  // namespace

std::unique_ptr<runs::Observer> jsonPrinter() { return std::make_unique<JsonPrinter>(); }

}  // namespace pluvo::cli
