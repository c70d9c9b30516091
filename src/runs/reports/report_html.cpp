#include "base/ascii.h"
#include "base/shown.h"
#include "document/place_names.h"
#include "elsewhere/words.h"
#include "reports/html_text.h"
#include "reports/not_reached_section.h"
#include "reports/report_file.h"
#include "reports/report_kinds.h"
#include "reports/report_page.h"

#include <string_view>

namespace pluvo::runs {
namespace {

std::string cell(std::string_view name, std::int64_t number) {
  return "<td class=\"n\" data-name=\"" + std::string(name) + "\">" + std::to_string(number) + "</td>";
}

std::string line(std::string_view kind, const Excerpt& excerpt, std::string_view element) {
  const std::string name(element);
  return "<p class=\"block " + std::string(kind) + "\">" + escaped(excerpt.lead) + "<" + name + ">" +
         escaped(excerpt.piece) + "</" + name + ">" + escaped(excerpt.trail) + "</p>";
}

std::string item(const BlockReport& block) {
  std::string where = block.place.empty() ? "Paragraph " : block.place + ", paragraph ";
  where.front() = base::asciiUpper(where.front());
  std::string html = "<li><p class=\"soft\">" + where + std::to_string(block.paragraph);
  if (block.deleted) html += ", in deleted text";
  if (block.refused)
    return html + ": <span class=\"bad\">refused</span></p>" + line("", block.before, "mark") + "</li>\n";
  if (block.skipped) return html + ": left as it is</p>" + line("", block.before, "mark") + "</li>\n";
  if (!block.after) return html + "</p>" + line("", block.before, "mark") + "</li>\n";
  const bool sameText = block.after->piece == block.before.piece;
  if (sameText) return html + "</p>" + line("", *block.after, "mark") + "</li>\n";
  return html + "</p>" + line("old", block.before, "del") + line("new", *block.after, "ins") + "</li>\n";
}

class HtmlReport final : public Observer {
 public:
  HtmlReport(const ReportPlace& place, std::string command, const std::vector<SliceTold>* slices)
      : file_(place), command_(std::move(command)), slices_(slices) {}

  bool wantsBlocks() const override { return true; }

  void block(const std::string& /*path*/, const BlockReport& block) override { items_ += item(block); }

  void document(const Outcome& outcome) override {
    row(outcome);
    notReached_.add(outcome);
    if (!items_.empty()) {
      file_.addLater("<details><summary>" + escaped(base::shown(outcome.path)) + " <span class=\"soft\">" +
                     foundInWords(outcome.found, outcome.places) + "</span></summary><ol>\n" + items_ +
                     "</ol></details>\n");
    }
    items_.clear();
  }

  void leftOut(const LeftOut& leftOut) override {
    notTaken_ += "<tr><td>" + escaped(base::shown(leftOut.path)) + "</td><td>" +
                 std::string(wordsOf(leftOut.reason)) + "</td></tr>\n";
  }

  void ends(const Totals& totals) override {
    const auto total = [](std::string_view name, std::int64_t value) {
      return "<div><dt>" + std::string(name) + "</dt><dd>" + std::to_string(value) + "</dd></div>";
    };
    std::string beginning(kHtmlMark);
    beginning += kReportHead;
    beginning += "<header><h1>PLUVO report</h1><p><code>" + escaped(base::shown(command_)) +
                 "</code></p></header>\n<main>\n";
    beginning +=
        "<dl class=\"totals\">" + total("Documents", totals.files) + total("Blocks found", totals.found) +
        total("Operated on", totals.operated) + total("Skipped", totals.skipped) +
        total("Documents changed", totals.changed) + total("Failed", totals.failed) +
        total(slices_ != nullptr ? "Not worked on" : "Left out", totals.leftOut) +
        (totals.unfinished > 0 ? total("Unfinished", totals.unfinished) : "") +
        total("Not reached", blocksIn(totals.elsewhere) + occurrencesIn(totals.elsewhere)) + "</dl>\n";
    beginning += places(totals) + slices();
    beginning += table("Documents not processed", failures_, "<th>Reason</th><th>What to do</th>");
    beginning +=
        table("Documents", rows_,
              "<th class=\"n\">Found</th><th class=\"n\">Operated on</th><th class=\"n\">Skipped</th>"
              "<th class=\"n\">Not reached</th><th>Saved</th><th>Encoding</th>");
    beginning += notReached_.html();
    if (slices_ == nullptr) beginning += kBlocksHead;
    file_.finish(beginning,
                 (slices_ == nullptr ? table("Files not taken", notTaken_, "<th>Reason</th>")
                                     : table("Documents not worked on", notTaken_, "<th>Reason</th>")) +
                     "</main>" + std::string(slices_ == nullptr ? kReportTail : kPageTail));
  }

 private:
  static constexpr std::string_view kBlocksHead =
      "<h2>Blocks</h2>\n<nav aria-label=\"Blocks\"><label for=\"filter\">Show documents named</label>"
      "<input id=\"filter\" type=\"search\"><span id=\"shown\" role=\"status\"></span>"
      "<button id=\"open\" type=\"button\">Open all</button><button id=\"close\" type=\"button\">Close "
      "all</button>"
      "<span class=\"soft\">Keys: / to the names, j and k from document to document, Enter "
      "opens</span></nav>\n";

  static std::string places(const Totals& totals) {
    if (!totals.places) return {};
    std::string rows;
    for (const document::Place place : document::kAllPlaces) {
      const PlaceCounts& counts = totals.places->at(static_cast<std::size_t>(place));
      if (counts.found == 0) continue;
      std::string name(wordsOf(place));
      name.front() = base::asciiUpper(name.front());
      rows += "<tr><td>" + name + "</td>" + cell("Found", counts.found) +
              cell("Operated on", counts.operated) + cell("Skipped", counts.skipped) + "</tr>\n";
    }
    if (rows.empty()) return {};
    return "<h2>Places</h2>\n<table><thead><tr><th>Place</th><th class=\"n\">Found</th>"
           "<th class=\"n\">Operated on</th><th class=\"n\">Skipped</th></tr></thead><tbody>\n" +
           rows + "</tbody></table>\n";
  }

  std::string slices() const {
    if (slices_ == nullptr) return {};
    std::string rows;
    for (const SliceTold& each : *slices_) {
      const bool isOver = each.stage == SliceTold::Stage::ended;
      rows += "<tr><td>" + escaped(base::shown(each.run)) + " " + std::to_string(each.number) + "/" +
              std::to_string(each.count) + "</td><td data-name=\"State\"" +
              (isOver ? ">" : " class=\"bad\">") + std::string(wordsOf(each.stage)) + "</td>" +
              cell("Documents", each.documents) + cell("Done", each.done) + cell("Failed", each.failed) +
              cell("Not worked on", each.missing) + "<td data-name=\"Machines\">" +
              escaped(base::shown(each.machines)) + "</td></tr>\n";
    }
    return "<h2>Slices</h2>\n<table><thead><tr><th>Slice</th><th>State</th><th class=\"n\">Documents</th>"
           "<th class=\"n\">Done</th><th class=\"n\">Failed</th><th class=\"n\">Not worked on</th>"
           "<th>Machines</th></tr></thead><tbody>\n" +
           rows + "</tbody></table>\n";
  }

  void row(const Outcome& outcome) {
    const std::string name =
        "<tr><td>" + escaped(base::shown(outcome.path)) + (outcome.isTemplate ? " (template)</td>" : "</td>");
    if (outcome.failure) {
      failures_ += name + "<td class=\"bad\">" + std::string(errors::nameOf(outcome.failure->problem)) +
                   "</td><td>" + escaped(base::shown(outcome.failure->message)) + "</td></tr>\n";
      return;
    }
    std::string saved = outcome.saved ? "yes" : "no";
    if (!outcome.savedAs.empty()) saved = "as " + escaped(base::shown(outcome.savedAs));
    if (!outcome.backup.empty()) saved += ", original kept as " + escaped(base::shown(outcome.backup));
    if (outcome.refused > 0) saved += ", " + std::to_string(outcome.refused) + " refused";
    rows_ += name + cell("Found", outcome.found) + cell("Operated on", outcome.operated) +
             cell("Skipped", outcome.skipped) +
             cell("Not reached", blocksIn(outcome.elsewhere) + occurrencesIn(outcome.elsewhere)) +
             "<td data-name=\"Saved\">" + saved +
             (outcome.encoding.empty() ? "</td><td>" : "</td><td data-name=\"Encoding\">") +
             escaped(outcome.encoding) + "</td></tr>\n";
  }

  static std::string table(std::string_view heading, const std::string& rows, std::string_view columns) {
    if (rows.empty()) return {};
    return "<h2>" + std::string(heading) + "</h2>\n<table><thead><tr><th>Document</th>" +
           std::string(columns) + "</tr></thead><tbody>\n" + rows + "</tbody></table>\n";
  }

  ReportFile file_;
  std::string command_;
  const std::vector<SliceTold>* slices_;
  std::string items_;
  std::string rows_;
  std::string failures_;
  std::string notTaken_;
  NotReachedSection notReached_;
};

}  // namespace

std::unique_ptr<Observer> htmlReport(const ReportPlace& place, const std::string& command,
                                     const std::vector<SliceTold>* slices) {
  return std::make_unique<HtmlReport>(place, command, slices);
}

}  // namespace pluvo::runs
