#include "reports/not_reached_section.h"

#include "base/shown.h"
#include "elsewhere/words.h"
#include "reports/html_text.h"

namespace pluvo::runs {
namespace {

constexpr std::string_view kNotReached =
    "<h2>Not reached</h2>\n"
    "<p class=\"soft\">These documents hold blocks in places that the requests did not work in, which --in "
    "names, or the beginning of a block in places that no request reaches; see to those in a word "
    "processor.</p>\n"
    "<table><thead><tr><th>Document</th><th>Blocks elsewhere</th><th>The beginning occurs in</th>"
    "<th>Could not be read</th></tr></thead><tbody>\n";
constexpr std::string_view kNotLookedInto =
    "<h2>Not looked into</h2>\n"
    "<table><thead><tr><th>Document</th><th>What it holds</th></tr></thead><tbody>\n";

std::string cell(std::string_view name, const std::string& text) {
  if (text.empty()) return "<td></td>";
  return "<td data-name=\"" + std::string(name) + "\">" + escaped(base::shown(text)) + "</td>";
}

std::string table(std::string_view beginning, const std::string& rows) {
  return rows.empty() ? rows : std::string(beginning) + rows + "</tbody></table>\n";
}

}  // namespace

void NotReachedSection::add(const Outcome& outcome) {
  const elsewhere::Elsewhere& found = outcome.elsewhere;
  const std::string name = "<tr><td>" + escaped(base::shown(outcome.path)) + "</td>";
  if (needsCare(found)) {
    notReached_ += name + cell("Blocks elsewhere", blocksInWords(found)) +
                   cell("The beginning occurs in", occurrencesInWords(found)) +
                   cell("Could not be read", damageInWords(found)) + "</tr>\n";
  }
  if (const std::string what = notLookedIntoInWords(found); !what.empty())
    notLookedInto_ += name + cell("What it holds", what) + "</tr>\n";
}

std::string NotReachedSection::html() const {
  return table(kNotReached, notReached_) + table(kNotLookedInto, notLookedInto_);
}

}  // namespace pluvo::runs
