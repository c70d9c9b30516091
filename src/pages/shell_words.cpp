#include "shell_words.h"

#include <algorithm>

namespace pluvo::pages {

std::string joined(const std::vector<std::string>& words, std::string_view between) {
  std::string text;
  for (const std::string& word : words) {
    if (!text.empty()) text += between;
    text += word;
  }
  return text;
}

std::vector<std::string> spellings(const Option& option) {
  std::vector<std::string> names;
  if (option.letter != 0) names.push_back({'-', option.letter});
  names.push_back("--" + option.name);
  return names;
}

std::vector<std::string> takingNextWord(const Program& program) {
  std::vector<std::string> words;
  for (const Option& option : program.options) {
    if (option.value.empty() || !option.valueOnly) continue;
    for (std::string& spelling : spellings(option)) words.push_back(std::move(spelling));
  }
  return words;
}

std::vector<std::string> commandsOnDocuments(const Program& program) {
  std::vector<std::string> names;
  for (const Command& command : program.commands)
    if (command.operands == std::vector{Operand::document}) names.push_back(command.name);
  return names;
}

std::string shortHelp(const Option& option) {
  std::string help = option.help.substr(0, std::min(option.help.find(';'), option.help.find(" (")));
  std::ranges::replace(help, '\n', ' ');
  help.resize(std::min({help.size(), help.find(" (default"), help.find(": ")}));
  return help;
}

std::string functionName(const Program& program, std::string_view prefix) {
  std::string name = std::string(prefix) + program.name;
  std::ranges::replace(name, '-', '_');
  return name;
}

}  // namespace pluvo::pages
