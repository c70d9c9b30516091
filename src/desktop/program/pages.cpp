// Writes the manual page and the completions of the desktop program, from the table of options that --help is
// made from.
#include "base/document_types.h"
#include "options.h"
#include "pages/files.h"
#include "pages/manual.h"

#include <cstdio>
#include <exception>

namespace {

using namespace pluvo;

pages::Program desktopProgram() {
  pages::Program program = {
      "pluvo-desktop", {}, {}, {base::kDocumentTypes.begin(), base::kDocumentTypes.end()}};
  for (const desktop::Option& each : desktop::kOptions) {
    pages::Option option;
    option.letter = each.letter;
    option.name = each.name;
    option.help = each.help;
    program.options.push_back(std::move(option));
  }
  return program;
}

void writePages(const std::filesystem::path& templates, const std::filesystem::path& folder,
                const std::string& day) {
  const pages::Program program = desktopProgram();
  pages::write(
      folder / "man/pluvo-desktop.1",
      pages::filled(pages::read(templates / "pluvo-desktop.1"),
                    {{"DAY", day}, {"VERSION", PLUVO_VERSION}, {"OPTIONS", pages::optionList(program)}}));
  pages::writeCompletions(folder, program);
}

}  // namespace

int main(int count, char** words) {
  if (count != 4) {
    std::fputs("Usage: pluvo-desktop-pages TEMPLATES FOLDER DAY\n", stderr);
    return 2;
  }
  try {
    writePages(words[1], words[2], words[3]);
    return 0;
  } catch (const std::exception& failed) {
    std::fprintf(stderr, "pluvo-desktop-pages: %s\n", failed.what());
    return 2;
  }
}
