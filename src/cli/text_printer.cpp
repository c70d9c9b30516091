#include "base/shown.h"
#include "printer.h"
#include "runs/colors.h"

namespace pluvo::cli {
namespace {

/// The original is kept beside the document.
std::string_view fileName(std::string_view path) { return path.substr(path.rfind('/') + 1); }

class TextPrinter : public runs::Observer {
 public:
  TextPrinter(const Plan& plan, const Style& style) : plan_(plan), style_(style) {}

  bool wantsBlocks() const override { return finds() || plan_.dryRun; }

  void block(const std::string& path, const runs::BlockReport& block) override {
    if (block.skipped) return;
    const std::string where =
        style_.file(base::shown(path)) + ":" + (block.place.empty() ? "" : block.place + ":") +
        style_.number(std::to_string(block.paragraph)) + ":" + (block.deleted ? " (deleted)" : "");
    if (block.request->operation == engine::kNone) {
      writeOut(where + " " + style_.match(base::shown(block.before.piece)) + "\n");
    } else if (block.refused || !block.after) {
      writeOut(where + " refused\n  " + marked(block.before, "[-", "-]", kRemoved) + "\n");
    } else {
      writeOut(where + "\n" + preview(block));
    }
  }

  void document(const runs::Outcome& outcome) override {
    const bool alone = !plan_.selection.several();
    if (alone && !outcome.failure && outcome.found == 0) sayNote(outcome.path + ": 0 blocks");
    if (finds() || outcome.failure || outcome.found == 0 || outcome.earlier) return;
    std::string line =
        style_.file(base::shown(outcome.path)) + ": " + foundInWords(outcome.found, outcome.places) + ", ";
    line += std::to_string(outcome.lasting()) + (plan_.dryRun ? " would be " : " ") + done();
    if (outcome.skipped > 0 || plan_.confirm) line += ", " + std::to_string(outcome.skipped) + " skipped";
    if (!outcome.savedAs.empty()) line += "; saved as " + base::shown(outcome.savedAs);
    if (!outcome.backup.empty()) line += "; original kept as " + base::shown(fileName(outcome.backup));
    if (outcome.guessed) line += "; read as " + outcome.encoding;
    if (!outcome.changed) line += "; no difference, not saved";
    writeOut(line + "\n");
  }

  void ends(const runs::Totals& totals) override {
    if (!plan_.selection.several() && totals.leftOut == 0) return;
    std::string line =
        base::counted(totals.files, "document") + ": " + foundInWords(totals.found, totals.places);
    if (!finds()) {
      line += ", " + std::to_string(totals.operated) + (plan_.dryRun ? " would be " : " ") + done();
      line +=
          ", " + base::counted(totals.changed, "document") + (plan_.dryRun ? " would change" : " changed");
    }
    if (totals.earlier > 0) line += ", " + base::counted(totals.earlier, "document") + " done before";
    if (totals.failed > 0) line += ", " + std::to_string(totals.failed) + " failed";
    if (totals.leftOut > 0) line += ", " + std::to_string(totals.leftOut) + " left out";
    if (totals.links > 0) line += " (" + base::counted(totals.links, "link") + "; --follow takes them)";
    sayNote(line);
  }

 private:
  using Paint = std::string (Style::*)(std::string_view) const;
  static constexpr Paint kRemoved = &Style::match;
  static constexpr Paint kAdded = &Style::added;

  bool finds() const { return plan_.findsOnly(); }

  std::string done() const {
    if (plan_.requests.size() > 1) return "changed";
    switch (plan_.requests.front().operation) {
      case engine::kInsert:
        return "given the text";
      case engine::kReplace:
        return "replaced";
      case engine::kDelete:
        return "deleted";
      case engine::kHighlight:
        return "highlighted";
      default:
        return "found";
    }
  }

  /// The piece in its context, told apart by colour, or by signs where there are no colours.
  std::string marked(const runs::Excerpt& excerpt, std::string_view open, std::string_view close,
                     Paint paint) const {
    std::string piece = (style_.*paint)(base::shown(excerpt.piece));
    if (!style_.colored() && !excerpt.piece.empty()) {
      piece = std::string(open) + piece + std::string(close);
    }
    return base::shown(excerpt.lead) + piece + base::shown(excerpt.trail);
  }

  std::string preview(const runs::BlockReport& block) const {
    const runs::Excerpt& before = block.before;
    if (block.request->operation == engine::kHighlight) {
      const auto color = static_cast<word::WdColorIndex>(block.request->highlightColour);
      const std::string text = base::shown(before.piece);
      const std::string piece = style_.colored() ? style_.highlighted(text, color) : "[" + text + "]";
      return "  " + base::shown(before.lead) + piece + base::shown(before.trail) +
             "\n  highlight: " + runs::nameOf(color) + "\n";
    }
    return "  - " + marked(before, "[-", "-]", kRemoved) + "\n  + " +
           marked(*block.after, "{+", "+}", kAdded) + "\n";
  }

  const Plan& plan_;
  Style style_;
};

}  // namespace

std::unique_ptr<runs::Observer> textPrinter(const Plan& plan, const Style& style) {
  return std::make_unique<TextPrinter>(plan, style);
}

}  // namespace pluvo::cli
