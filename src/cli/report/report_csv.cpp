#include "report/report_file.h"
#include "report/report_kinds.h"

#include <initializer_list>

namespace pluvo::cli {
namespace {

/// A field. What a spreadsheet would take for a formula gets an apostrophe, which it shows as text.
std::string field(std::string_view text) {
  std::string guarded(text);
  if (!guarded.empty() && std::string_view("=+-@\t\r").find(guarded.front()) != std::string_view::npos)
    guarded.insert(0, 1, '\'');
  std::string quoted = "\"";
  for (const char c : guarded) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + "\"";
}

std::string row(std::initializer_list<std::string> fields) {
  std::string line;
  for (const std::string& each : fields) line += (line.empty() ? "" : ",") + each;
  return line + "\r\n";
}

class CsvReport final : public Printer {
 public:
  explicit CsvReport(const std::string& path) : file_(path) {}

  bool wantsBlocks() const override { return true; }

  void block(const std::string& path, const BlockReport& block) override {
    const char* const state = block.refused   ? "refused"
                              : block.skipped ? "skipped"
                              : block.after   ? "changed"
                                              : "found";
    file_.addLater(row({field("block"), field(path), field(state), "", "", "",
                        std::to_string(block.paragraph), field(block.before.lead), field(block.before.piece),
                        block.after ? field(block.after->piece) : "", field(block.before.trail), ""}));
  }

  void document(const Outcome& outcome) override {
    std::string state = outcome.saved ? "saved" : "not saved";
    std::string message;
    if (outcome.failure) {
      state = files::nameOf(outcome.failure->problem);
      message = outcome.failure->message;
    } else if (outcome.refused > 0) {
      message = counted(outcome.refused, "change") + " refused";
    }
    file_.addLater(row({field("document"), field(outcome.path), field(state), std::to_string(outcome.found),
                        std::to_string(outcome.operated), std::to_string(outcome.skipped), "", "", "", "", "",
                        field(message)}));
  }

  void leftOut(const LeftOut& leftOut) override {
    file_.addLater(row({field("not taken"), field(leftOut.path), field(leftOut.reason), "", "", "", "", "",
                        "", "", "", ""}));
  }

  void end(const Totals& /*totals*/) override {
    // The mark at the front tells spreadsheets that this is UTF-8.
    file_.finish("\xEF\xBB\xBF" + row({"kind", "file", "state", "found", "operated", "skipped", "paragraph",
                                       "text before", "block", "block changed", "text behind", "message"}),
                 "");
  }

 private:
  ReportFile file_;
};

}  // namespace

std::unique_ptr<Printer> csvReport(const std::string& path) { return std::make_unique<CsvReport>(path); }

}  // namespace pluvo::cli
