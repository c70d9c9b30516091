#include "interviewer.h"

#include "base/shown.h"
#include "base/utf.h"
#include "printer.h"
#include "runs/colors.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <optional>

namespace pluvo::cli {
namespace {

constexpr const char* kHelp =
    "y: yes, n: no, leave it, a: yes to this and all the rest, s: no to the rest of this document, q: stop "
    "here\n";

constexpr std::size_t kShownText = 40;

/// The text that goes in, shortened to one line.
std::string quoted(const std::u16string& text) {
  const bool whole = text.size() <= kShownText && text.find(u'\r') == std::u16string::npos;
  const std::u16string front = whole ? text : text.substr(0, std::min(kShownText, text.find(u'\r'))) + u" …";
  return "'" + base::shown(base::utf8(front)) + "'";
}

std::string questionFor(const engine::Request& request) {
  switch (request.operation) {
    case engine::kInsert:
      return "Insert " + quoted(request.text) + (request.place == engine::kAfter ? " after" : " before") +
             " it";
    case engine::kReplace:
      return "Replace it with " + quoted(request.text);
    case engine::kDelete:
      return "Delete it";
    case engine::kHighlight:
      return request.highlightColour == word::wdNoHighlight
                 ? "Remove its highlight"
                 : "Highlight it " + runs::nameOf(static_cast<word::WdColorIndex>(request.highlightColour));
    default:
      return "Go on";
  }
}

/// A line of standard input; none at its end. A stream of the C++ library would make every start longer.
std::optional<std::string> readLine() {
  std::string line;
  for (int c = std::getc(stdin); c != '\n'; c = std::getc(stdin)) {
    if (c == EOF && line.empty()) return std::nullopt;
    if (c == EOF) break;
    line += static_cast<char>(c);
  }
  return line;
}

void show(const std::string& text) { (void)std::fwrite(text.data(), 1, text.size(), stderr); }

}  // namespace

Interviewer::Interviewer(std::size_t documents)
    : style_(Style::forStream(STDERR_FILENO)), documents_(documents) {}

bool Interviewer::canAsk() { return isTerminal(STDIN_FILENO) && isTerminal(STDERR_FILENO); }

Reply Interviewer::ask(const runs::Asked& asked) {
  if (all_) return Reply::yes;
  (void)std::fflush(stdout);
  const runs::BlockReport& block = *asked.block;
  const runs::Excerpt& excerpt = block.before;
  const std::string text = base::shown(excerpt.piece);
  const std::string piece = style_.colored() ? style_.match(text) : "[" + text + "]";
  const std::string which =
      documents_ > 1 ? " (" + std::to_string(asked.number) + " of " + std::to_string(documents_) + " files)"
                     : "";
  const std::string question = questionFor(*block.request) + " [y,n,a,s,q]? ";
  const std::string place = block.place.empty() ? "" : block.place + ":";
  show(style_.file(base::shown(asked.path)) + ":" + place + style_.number(std::to_string(block.paragraph)) +
       ":" + which + "\n  " + base::shown(excerpt.lead) + piece + base::shown(excerpt.trail) + "\n");
  while (true) {
    show(style_.heading(question));
    const std::optional<std::string> line = readLine();
    // The end of the input is a "stop": no answers can follow.
    if (!line) show("\n");  // the question's line is still open
    const char key = !line || line->empty() ? '?' : static_cast<char>(line->front() | 0x20);
    if (!line || key == 'q') return Reply::stop;
    if (key == 'a') all_ = true;
    if (key == 'y' || key == 'a') return Reply::yes;
    if (key == 'n') return Reply::no;
    if (key == 's') return Reply::restUnchanged;
    show(kHelp);
  }
}

}  // namespace pluvo::cli
