// Writes the manual pages and the completions of the command line, from the table of options that --help is
// made from.
#include "base/document_types.h"
#include "help.h"
#include "options.h"
#include "pages/files.h"
#include "pages/manual.h"

#include <cstdio>
#include <exception>

namespace {

using namespace pluvo;

std::vector<std::string> commandsOf(cli::CommandSet set) {
  std::vector<std::string> names;
  for (const cli::CommandName& each : cli::commandNames())
    if ((set & cli::setOf(each.command)) != 0) names.emplace_back(each.name);
  return names;
}

pages::Completes completes(const cli::Option& option) {
  if (option.valueName == "FILE") return pages::Completes::file;
  if (option.valueName == "DIR") return pages::Completes::folder;
  if (option.choices.empty()) return pages::Completes::nothing;
  return option.valueName.ends_with(",...") ? pages::Completes::choices : pages::Completes::choice;
}

std::vector<pages::Operand> operandsOf(cli::Command command) {
  using pages::Operand;
  if (command == cli::Command::run) return {Operand::requests, Operand::document};
  if (command == cli::Command::save) return {Operand::requests, Operand::command};
  if (command == cli::Command::undo || command == cli::Command::report) return {Operand::run};
  return {Operand::document};
}

pages::Option pageOf(const cli::Option& option) {
  return {option.letter,
          option.name,
          std::string(option.valueName),
          option.takes != cli::Takes::maybeValue,
          std::string(option.group),
          commandsOf(option.commands),
          std::string(option.help),
          completes(option),
          {option.choices.begin(), option.choices.end()}};
}

pages::Program commandLine() {
  pages::Program program = {"pluvo", {}, {}, {base::kDocumentTypes.begin(), base::kDocumentTypes.end()}};
  for (const cli::CommandName& each : cli::commandNames()) {
    const cli::Story& story = cli::storyOf(each.command);
    program.commands.push_back({std::string(each.name), std::string(each.summary),
                                std::string(cli::usageOf(each.command)), std::string(story.what),
                                std::string(story.examples), operandsOf(each.command)});
  }
  for (const cli::Option& option : cli::options()) program.options.push_back(pageOf(option));
  return program;
}

/// The options that are keys in a file of saved requests.
pages::Program savedRequests(pages::Program program) {
  program.options.clear();
  for (const cli::Option& option : cli::options())
    if (cli::isPartOfRequest(option)) program.options.push_back(pageOf(option));
  std::erase_if(program.commands,
                [](auto& command) { return command.operands != std::vector{pages::Operand::document}; });
  return program;
}

/// Commands with the same statuses stand together.
std::string exitStatus(const pages::Program& program) {
  constexpr std::string_view kBetween = "   ";
  std::string text;
  std::string_view before;
  for (const cli::CommandName& each : cli::commandNames()) {
    const std::string_view statuses = cli::exitStatusOf(each.command);
    const std::string name = program.name + " " + std::string(each.name);
    if (statuses == before) {
      const std::size_t end = text.rfind("\\fR");
      text.insert(end, ", " + std::string(each.name));
    } else {
      std::string line(statuses.substr(2));
      for (std::size_t at = 0; (at = line.find(kBetween)) != std::string::npos;)
        line.replace(at, kBetween.size(), "; ");
      text += ".TP\n\\fB" + name + "\\fR\n" + pages::roff(line);
    }
    before = statuses;
  }
  return text;
}

void writePages(const std::filesystem::path& templates, const std::filesystem::path& folder,
                const std::string& day) {
  const pages::Program program = commandLine();
  const std::string version = PLUVO_VERSION;
  pages::write(folder / "man/pluvo.1", pages::filled(pages::read(templates / "pluvo.1"),
                                                     {{"DAY", day},
                                                      {"VERSION", version},
                                                      {"COMMANDS", pages::commandList(program)},
                                                      {"OPTIONS", pages::optionList(program)},
                                                      {"EXIT STATUS", exitStatus(program)},
                                                      {"EXAMPLES", pages::exampleList(program)}}));
  pages::write(folder / "man/pluvo-requests.5",
               pages::filled(pages::read(templates / "pluvo-requests.5"),
                             {{"DAY", day},
                              {"VERSION", version},
                              {"KEYS", pages::keyList(savedRequests(program))},
                              {"HOUSE STYLE",
                               pages::roff(pages::read(templates / "../../samples/house-style.toml"))}}));
  pages::writeCompletions(folder, program);
}

}  // namespace

int main(int count, char** words) {
  if (count != 4) {
    std::fputs("Usage: pluvo-pages TEMPLATES FOLDER DAY\n", stderr);
    return 2;
  }
  try {
    writePages(words[1], words[2], words[3]);
    return 0;
  } catch (const std::exception& failed) {
    std::fprintf(stderr, "pluvo-pages: %s\n", failed.what());
    return 2;
  }
}
