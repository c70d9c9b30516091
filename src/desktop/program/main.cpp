#include "choosers.h"
#include "main_window.h"
#include "places.h"
#include "theme.h"

#include <QApplication>
#include <QIcon>
#include <QTimer>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace pluvo;

constexpr const char* kHelp =
    "Usage: pluvo-desktop [OPTION…] [DOCUMENT…]\n"
    "\n"
    "Finds blocks of text in documents, and inserts, replaces, deletes or highlights on them.\n"
    "\n"
    "  -h, --help     show this\n"
    "  -v, --version  show the version\n"
    "      --         what follows is documents, whatever it begins with\n"
    "\n"
    "Options of the windowing system, such as -platform and -style, are taken as well.\n";

struct CommandLine {
  std::vector<std::string> documents;
  bool help = false;
  bool version = false;
  std::string unknown;
};

/// The bytes of names are kept, so the arguments are looked at before anything makes texts of them.
CommandLine parse(int count, char** words) {
  CommandLine line;
  bool onlyDocuments = false;
  for (int i = 1; i < count; ++i) {
    const std::string_view word = words[i];
    if (onlyDocuments || !word.starts_with('-') || word == "-") {
      line.documents.emplace_back(word);
    } else if (word == "--") {
      onlyDocuments = true;
    } else if (word == "-h" || word == "--help") {
      line.help = true;
    } else if (word == "-v" || word == "--version") {
      line.version = true;
    } else {
      line.unknown = word;
    }
  }
  return line;
}

/// Whether help or the version is all that is asked for: that needs no screen.
bool answered(const CommandLine& line) {
  if (line.help) std::fputs(kHelp, stdout);
  if (!line.help && line.version) std::puts("pluvo-desktop " PLUVO_VERSION);
  return line.help || line.version;
}

}  // namespace

int main(int count, char** words) {
  if (answered(parse(count, words))) return 0;
  QApplication::setApplicationName(QStringLiteral("PLUVO"));
  QApplication::setOrganizationName(QStringLiteral("PLUVO"));
  QApplication::setApplicationVersion(QStringLiteral(PLUVO_VERSION));
  QApplication::setDesktopFileName(QStringLiteral("pluvo-desktop"));
  QApplication program(count, words);  // takes the options of the windowing system out
  const CommandLine line = parse(count, words);
  if (!line.unknown.empty()) {
    std::fprintf(stderr,
                 "pluvo-desktop: there is no option %s; 'pluvo-desktop --help' tells which there are.\n",
                 line.unknown.c_str());
    return 2;
  }
  QApplication::setWindowIcon(
      QIcon::fromTheme(QStringLiteral("pluvo"), QIcon(QStringLiteral(":/pluvo.svg"))));
  desktop::applyChosenTheme();
  desktop::MainWindow window(desktop::machinePlaces(), desktop::fileDialogs());
  window.show();
  QTimer::singleShot(0, &window, [&] { window.openDialog(); });
  QTimer::singleShot(0, &window, [&] {
    window.open(line.documents);
    window.goToPanel();
  });
  return QApplication::exec();
}
