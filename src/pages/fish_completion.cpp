#include "pages/completion.h"
#include "shell_words.h"

#include <algorithm>

namespace pluvo::pages {
namespace {

std::string quoted(const std::string& text) {
  std::string result = "'";
  for (const char c : text) result += c == '\'' || c == '\\' ? std::string("\\") + c : std::string(1, c);
  return result + "'";
}

std::string value(const Option& option) {
  if (option.value.empty() || !option.valueOnly) return {};
  switch (option.completes) {
    case Completes::nothing:
      break;
    case Completes::file:
      return " -r -F";
    case Completes::folder:
      return " -x -a '(__fish_complete_directories)'";
    case Completes::choice:
      return " -x -a '" + joined(option.choices) + "'";
    case Completes::choices:
      return " -x -a '(__fish_append , " + joined(option.choices) + ")'";
  }
  return " -x";
}

std::string line(const Program& program, const std::string& condition, const std::string& rest) {
  return "complete -c " + program.name + (condition.empty() ? "" : " -n '" + condition + "'") + rest + "\n";
}

std::string optionLines(const Program& program, const std::string& uses) {
  std::string script;
  for (const Option& option : program.options) {
    const bool goesWithAll = option.commands.size() == program.commands.size();
    const std::string letter = option.letter == 0 ? "" : std::string(" -s ") + option.letter;
    script += line(program, goesWithAll ? "" : uses + " " + joined(option.commands),
                   letter + " -l " + option.name + value(option) + " -d " + quoted(shortHelp(option)));
  }
  return script;
}

std::string operandProposal(const Program& program, Operand operand) {
  switch (operand) {
    case Operand::document:
    case Operand::requests:
      return " -F";
    case Operand::command:
      return " -a '" + joined(commandsOnDocuments(program)) + "'";
    case Operand::run:
      break;
  }
  return " -a " + quoted("(" + std::string(kRuns) + ")");
}

std::string functions(const Program& program, const std::string& prefix) {
  std::string script =
      "# What stands before that is neither an option nor the value of one.\n"
      "function " +
      prefix +
      "operands\n    set -l words (commandline -opc)\n    set -l isValue no\n"
      "    for word in $words[2..-1]\n        if test $isValue = yes\n            set isValue no\n"
      "            continue\n        end\n        switch $word\n            case " +
      joined(takingNextWord(program)) +
      "\n                set isValue yes\n            case '-?*'\n            case '*'\n"
      "                printf '%s\\n' $word\n        end\n    end\nend\n\n"
      "# Whether an option that goes with these commands goes with what is typed so far.\n"
      "function " +
      prefix + "uses\n    set -l operands (" + prefix + "operands)\n    set -l command $operands[1]\n";
  for (const Command& command : program.commands) {
    for (std::size_t i = 0; i < command.operands.size(); ++i)
      if (command.operands[i] == Operand::command)
        script += "    if test \"$command\" = " + command.name + "\n        set command $operands[" +
                  std::to_string(i + 2) + "]\n    end\n";
  }
  return script +
         "    test -z \"$command\"; or contains -- $command $argv\nend\n\n"
         "# Whether the word that is typed is the operand of that number of the command.\n"
         "function " +
         prefix + "is_at\n    set -l operands (" + prefix +
         "operands)\n"
         "    test \"$operands[1]\" = \"$argv[1]\"; and test (count $operands) $argv[2..3]\nend\n\n";
}

}  // namespace

std::string fishCompletion(const Program& program) {
  const std::string head = "# Completion of " + program.name + " in fish, made from its table of options.\n";
  if (program.commands.empty()) return head + optionLines(program, "");
  const std::string prefix = functionName(program, "__") + "_";
  std::string script = head + functions(program, prefix) + line(program, "", " -f");
  for (const Command& command : program.commands) {
    script +=
        line(program, prefix + "is_at \"\" -eq 0", " -a " + command.name + " -d " + quoted(command.summary));
    for (std::size_t i = 0; i < command.operands.size(); ++i) {
      const bool goesOn = command.operands[i] == Operand::document;
      script += line(program,
                     prefix + "is_at " + command.name + (goesOn ? " -ge " : " -eq ") + std::to_string(i + 1),
                     operandProposal(program, command.operands[i]));
    }
  }
  return script + optionLines(program, prefix + "uses");
}

}  // namespace pluvo::pages
