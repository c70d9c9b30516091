#include "base/shown.h"
#include "document/place_names.h"
#include "elsewhere/words.h"
#include "reports/report_file.h"
#include "reports/report_kinds.h"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace pluvo::runs {
namespace {

/// Signs that begin a formula in spreadsheets; some read the full-width signs as the plain ones.
constexpr std::array<std::string_view, 11> kFormulaSigns = {"=",  "+",      "-",      "@",      "\t",    "\r",
                                                            "\n", "\uFF1D", "\uFF0B", "\uFF0D", "\uFF20"};

/// A field. Text that a spreadsheet would take for a formula gets an apostrophe, which it shows as text.
std::string field(std::string_view text) {
  std::string guarded(text);
  if (std::ranges::any_of(kFormulaSigns, [&](std::string_view sign) { return text.starts_with(sign); }))
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

std::string notReached(const elsewhere::Elsewhere& found) {
  const std::string damage = damageInWords(found);
  return inWords(found) + (damage.empty() ? damage : ". " + damage);
}

class CsvReport final : public Observer {
 public:
  CsvReport(const ReportPlace& place, const std::vector<SliceTold>* slices) : file_(place), slices_(slices) {}

  bool wantsBlocks() const override { return true; }

  void block(const std::string& path, const BlockReport& block) override {
    const std::string message = block.deleted ? "in deleted text" : "";
    const char* const state = block.refused   ? "refused"
                              : block.skipped ? "skipped"
                              : block.after   ? "changed"
                                              : "found";
    file_.addLater(row({field("block"), field(path), field(state), "", "", "",
                        std::to_string(block.paragraph), field(block.before.lead), field(block.before.piece),
                        block.after ? field(block.after->piece) : "", field(block.before.trail),
                        field(message), "", "", "", field(block.place.empty() ? "main text" : block.place)}));
  }

  void document(const Outcome& outcome) override {
    std::string state = outcome.saved ? "saved" : "not saved";
    std::string message;
    if (outcome.failure) {
      state = errors::nameOf(outcome.failure->problem);
      message = outcome.failure->message;
    } else if (outcome.refused > 0) {
      message = base::counted(outcome.refused, "change") + " refused";
    }
    if (outcome.isTemplate) message += (message.empty() ? "" : "; ") + std::string("template");
    if (outcome.cutShort) message += (message.empty() ? "" : "; ") + std::string("the run was ended in it");
    file_.addLater(row({field("document"), field(outcome.path), field(state), std::to_string(outcome.found),
                        std::to_string(outcome.operated), std::to_string(outcome.skipped), "", "", "", "", "",
                        field(message), field(outcome.encoding), field(notReached(outcome.elsewhere)),
                        field(notLookedIntoInWords(outcome.elsewhere)), ""}));
    if (outcome.places) addPlaces(outcome.path, *outcome.places);
  }

  void leftOut(const LeftOut& leftOut) override {
    file_.addLater(row({field("not taken"), field(leftOut.path), field(wordsOf(leftOut.reason)), "", "", "",
                        "", "", "", "", "", "", "", "", "", ""}));
  }

  void ends(const Totals& /*totals*/) override {
    if (slices_ != nullptr) std::ranges::for_each(*slices_, [&](auto& slice) { addSlice(slice); });
    file_.finish(std::string(kCsvMark) + "message,encoding,not reached,not looked into,place\r\n", "");
  }

 private:
  /// The counts of each place of a document.
  void addPlaces(const std::string& path, const CountsByPlace& places) {
    for (const document::Place place : document::kAllPlaces) {
      const PlaceCounts& counts = places.at(static_cast<std::size_t>(place));
      if (counts.found == 0) continue;
      file_.addLater(
          row({field("place"), field(path), "", std::to_string(counts.found), std::to_string(counts.operated),
               std::to_string(counts.skipped), "", "", "", "", "", "", "", "", "", field(wordsOf(place))}));
    }
  }

  void addSlice(const SliceTold& slice) {
    const std::string name =
        slice.run + " " + std::to_string(slice.number) + "/" + std::to_string(slice.count);
    const std::string message = base::counted(slice.documents, "document") + ", " +
                                std::to_string(slice.done) + " done, " + std::to_string(slice.failed) +
                                " failed, " + std::to_string(slice.missing) + " missing" +
                                (slice.machines.empty() ? "" : "; " + slice.machines);
    file_.addLater(row({field("slice"), field(name), field(wordsOf(slice.stage)), "", "", "", "", "", "", "",
                        "", field(message), "", "", "", ""}));
  }

  ReportFile file_;
  const std::vector<SliceTold>* slices_;
};

}  // namespace

std::unique_ptr<Observer> csvReport(const ReportPlace& place, const std::vector<SliceTold>* slices) {
  return std::make_unique<CsvReport>(place, slices);
}

}  // namespace pluvo::runs
