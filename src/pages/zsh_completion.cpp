#include "pages/completion.h"
#include "shell_words.h"

#include <algorithm>

namespace pluvo::pages {
namespace {

/// Within a specification of _arguments, which stands between apostrophes.
std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c == '[' || c == ']' || c == ':' || c == '\\') result += '\\';
    result += c == '\'' ? std::string("'\\''") : std::string(1, c);
  }
  return result;
}

std::string files(const std::vector<std::string>& extensions) {
  return extensions.empty() ? "_files" : "_files -g \"(#i)*.(" + joined(extensions, "|") + ")(-.)\"";
}

std::string action(const Option& option) {
  switch (option.completes) {
    case Completes::nothing:
      return " ";
    case Completes::file:
      return "_files";
    case Completes::folder:
      return "_files -/";
    case Completes::choice:
      return "(" + joined(option.choices) + ")";
    case Completes::choices:
      break;
  }
  return "_sequence compadd - " + joined(option.choices);
}

std::string specification(const Option& option) {
  const bool isLast = option.name == "help" || option.name == "version";
  const std::string help = "[" + escaped(shortHelp(option)) + "]";
  std::string value;
  if (!option.value.empty())
    value = (option.valueOnly ? ":" : "::") + escaped(option.value) + ":" + action(option);
  const std::string suffix = option.value.empty() ? "" : option.valueOnly ? "=" : "=-";
  const std::string tail = "'" + help + value + "'";
  if (option.letter == 0) return "'--" + option.name + suffix + "'" + tail;
  const std::string letter = std::string("-") + option.letter;
  const std::string excluded = isLast ? "- *" : letter + " --" + option.name;
  return "'(" + excluded + ")'{" + letter + (suffix.empty() ? "" : "+") + ",--" + option.name + suffix + "}" +
         tail;
}

std::string operandSpecification(const Program& program, std::size_t place, Operand operand) {
  const std::string at = "'" + std::to_string(place) + ":";
  switch (operand) {
    case Operand::document:
      break;
    case Operand::requests:
      return at + "saved requests:_files -g \"*.toml(-.)\"'";
    case Operand::command:
      return at + "command:(" + joined(commandsOnDocuments(program)) + ")'";
    case Operand::run:
      return at + "run:(${(f)\"$(" + escaped(std::string(kRuns)) + ")\"})'";
  }
  return "'*:document:" + files(program.extensions) + "'";
}

std::string operandSpecifications(const Program& program, const Command& command) {
  std::string text = "'1: : '";
  for (std::size_t i = 0; i < command.operands.size(); ++i)
    text += " " + operandSpecification(program, i + 2, command.operands[i]);
  return text;
}

std::string commandNames(const Program& program) {
  std::string text = "'1:command:((";
  for (const Command& command : program.commands)
    text += command.name + "\\:\"" + escaped(escaped(command.summary)) + "\" ";
  return text + "))'";
}

/// The words for _arguments about the options that go with the command, or about all.
std::string options(const Program& program, const std::string& command) {
  std::string text;
  for (const Option& option : program.options) {
    if (!command.empty() && std::ranges::find(option.commands, command) == option.commands.end()) continue;
    text += "      " + specification(option) + "\n";
  }
  return text;
}

std::string commandScript(const Program& program) {
  std::string script =
      "local -a operands arguments\nlocal command i\n"
      "# What stands before that is neither an option nor the value of one.\n"
      "for ((i = 2; i < CURRENT; i++)); do\n  case ${words[i]} in\n    (" +
      joined(takingNextWord(program), "|") +
      ") ((i++)) ;;\n    (-?*) ;;\n    (*) operands+=(\"${words[i]}\") ;;\n  esac\ndone\n"
      "command=${operands[1]-}\n";
  std::string operands = "case ${operands[1]-} in\n";
  for (const Command& command : program.commands) {
    operands += "  (" + command.name + ") arguments+=(" + operandSpecifications(program, command) + ") ;;\n";
    for (std::size_t i = 0; i < command.operands.size(); ++i)
      if (command.operands[i] == Operand::command)
        script +=
            "[[ $command != " + command.name + " ]] || command=${operands[" + std::to_string(i + 2) + "]-}\n";
  }
  operands += "  (*) arguments+=(" + commandNames(program) + ") ;;\nesac\n";
  script += "\ncase $command in\n";
  for (const Command& command : program.commands)
    script += "  (" + command.name + ")\n    arguments=(\n" + options(program, command.name) + "    ) ;;\n";
  script += "  (*)\n    arguments=(\n" + options(program, "") + "    ) ;;\nesac\n";
  return script + operands + "_arguments -s -S : $arguments\n";
}

}  // namespace

std::string zshCompletion(const Program& program) {
  const std::string head = "#compdef " + program.name + "\n# Completion of " + program.name +
                           " in zsh, made from its table of options.\n";
  if (!program.commands.empty()) return head + commandScript(program);
  return head + "local -a arguments\narguments=(\n" + options(program, "") + "      " +
         operandSpecification(program, 1, Operand::document) + "\n)\n_arguments -s -S : $arguments\n";
}

}  // namespace pluvo::pages
