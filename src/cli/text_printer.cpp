#include "colors.h"
#include "printer.h"

namespace pluvo::cli {
namespace {

std::string counted(std::int64_t count, std::string_view noun) {
  return std::to_string(count) + " " + std::string(noun) + (count == 1 ? "" : "s");
}

/// The original is kept beside the document.
std::string_view fileName(std::string_view path) { return path.substr(path.rfind('/') + 1); }

class TextPrinter : public Printer {
 public:
  TextPrinter(const Request& request, const Style& style)
      : command_(request.command),
        dryRun_(request.dryRun),
        confirm_(request.confirm),
        severalFiles_(request.paths.size() > 1),
        color_(request.color),
        style_(style) {}

  bool wantsBlocks() const override { return command_ == Command::find || dryRun_; }

  void block(const std::string& path, const BlockReport& block) override {
    const std::string where =
        style_.file(shownPath(path)) + ":" + style_.number(std::to_string(block.paragraph)) + ":";
    if (command_ == Command::find) {
      writeOut(where + " " + style_.match(block.before.piece) + "\n");
    } else if (block.refused || !block.after) {
      writeOut(where + " refused\n  " + marked(block.before, "[-", "-]", kRemoved) + "\n");
    } else {
      writeOut(where + "\n" + preview(block.before, *block.after));
    }
  }

  void document(const Outcome& outcome) override {
    if (command_ == Command::find || outcome.failure || outcome.found == 0) return;
    std::string line = style_.file(shownPath(outcome.path)) + ": " + counted(outcome.found, "block") + ", ";
    line += std::to_string(outcome.operated) + (dryRun_ ? " would be " : " ") + done();
    if (outcome.skipped > 0 || confirm_) line += ", " + std::to_string(outcome.skipped) + " skipped";
    if (!outcome.savedAs.empty()) line += "; saved as " + shownPath(outcome.savedAs);
    if (!outcome.backup.empty()) line += "; original kept as " + shownPath(fileName(outcome.backup));
    if (!outcome.changed) line += "; no difference, not saved";
    writeOut(line + "\n");
  }

  void end(const Totals& totals) override {
    if (!severalFiles_) return;
    std::string line = counted(totals.files, "document") + ": " + counted(totals.found, "block");
    if (command_ != Command::find) {
      line += ", " + std::to_string(totals.operated) + (dryRun_ ? " would be " : " ") + done();
      line += ", " + counted(totals.changed, "document") + (dryRun_ ? " would change" : " changed");
    }
    if (totals.failed > 0) line += ", " + std::to_string(totals.failed) + " failed";
    sayNote(line);
  }

 private:
  using Paint = std::string (Style::*)(std::string_view) const;
  static constexpr Paint kRemoved = &Style::match;
  static constexpr Paint kAdded = &Style::added;

  std::string done() const {
    switch (command_) {
      case Command::insert:
        return "given the text";
      case Command::replace:
        return "replaced";
      case Command::remove:
        return "deleted";
      case Command::highlight:
        return "highlighted";
      case Command::find:
        break;
    }
    return "found";
  }

  /// The piece in its context, told apart by colour, or by signs where there are no colours.
  std::string marked(const Excerpt& excerpt, std::string_view open, std::string_view close,
                     Paint paint) const {
    std::string piece = (style_.*paint)(excerpt.piece);
    if (!style_.colored() && !excerpt.piece.empty()) {
      piece = std::string(open) + piece + std::string(close);
    }
    return excerpt.lead + piece + excerpt.trail;
  }

  std::string preview(const Excerpt& before, const Excerpt& after) const {
    if (command_ == Command::highlight) {
      const std::string piece =
          style_.colored() ? style_.highlighted(before.piece, color_) : "[" + before.piece + "]";
      return "  " + before.lead + piece + before.trail + "\n  highlight: " + nameOf(color_) + "\n";
    }
    return "  - " + marked(before, "[-", "-]", kRemoved) + "\n  + " + marked(after, "{+", "+}", kAdded) +
           "\n";
  }

  Command command_;
  bool dryRun_;
  bool confirm_;
  bool severalFiles_;
  word::WdColorIndex color_;
  Style style_;
};

}  // namespace

std::unique_ptr<Printer> textPrinter(const Request& request, const Style& style) {
  return std::make_unique<TextPrinter>(request, style);
}

}  // namespace pluvo::cli
