#include "choosers.h"
#include "main_window.h"
#include "options.h"
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

std::string helpText() {
  std::string text =
      "Usage: pluvo-desktop [OPTION…] [DOCUMENT…]\n"
      "\n"
      "Finds blocks of text in documents, and inserts, replaces, deletes or highlights on them.\n"
      "\n";
  constexpr std::size_t kTextColumn = 17;
  for (const desktop::Option& option : desktop::kOptions) {
    std::string line = "  -" + std::string(1, option.letter) + ", --" + std::string(option.name);
    line.resize(kTextColumn, ' ');
    text += line + std::string(option.help) + '\n';
  }
  return text +
         "      --         all later words are documents, also those that begin with -\n"
         "\n"
         "Options of the windowing system, such as -platform and -style, are taken as well.\n";
}

std::string versionText() {
  return "pluvo-desktop " PLUVO_VERSION "\n" PLUVO_BUILT_WITH "\nQt here: " + std::string(qVersion()) + "\n";
}

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
    } else if (isTyped(desktop::kOptions[0], word)) {
      line.help = true;
    } else if (isTyped(desktop::kOptions[1], word)) {
      line.version = true;
    } else {
      line.unknown = word;
    }
  }
  return line;
}

/// Whether help or the version is all that is asked for: that needs no screen.
bool answered(const CommandLine& line) {
  if (line.help) std::fputs(helpText().c_str(), stdout);
  if (!line.help && line.version) std::fputs(versionText().c_str(), stdout);
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
