#include "pages/completion.h"
#include "shell_words.h"

#include <algorithm>
#include <string_view>

namespace pluvo::pages {
namespace {

constexpr std::string_view kBegin = R"(# Completion of @NAME@ in bash, made from its table of options.
@FUNCTION@()
{
    local cur prev words cword split=false
    _init_completion -s || return

    # What stands before that is neither an option nor the value of one.
    local operands=() i
    for ((i = 1; i < cword; i++)); do
        case ${words[i]} in
)";

std::string proposed(const std::string& words) {
  return "COMPREPLY=($(compgen -W '" + words + "' -- \"$cur\"))";
}

std::string files(const std::vector<std::string>& extensions) {
  return extensions.empty() ? "_filedir" : "_filedir '@(" + joined(extensions, "|") + ")'";
}

std::string valueOf(const Option& option) {
  switch (option.completes) {
    case Completes::nothing:
      return "";
    case Completes::file:
      return "_filedir; ";
    case Completes::folder:
      return "_filedir -d; ";
    case Completes::choice:
      return proposed(joined(option.choices)) + "; ";
    case Completes::choices:
      break;
  }
  return "\n            local before=\n            [[ $cur == *,* ]] && before=${cur%,*},\n"
         "            COMPREPLY=($(compgen -P \"$before\" -W '" +
         joined(option.choices) + "' -- \"${cur##*,}\"))\n            compopt -o nospace\n            ";
}

std::string values(const Program& program) {
  std::string script = "    case $prev in\n";
  for (const Option& option : program.options) {
    if (option.value.empty() || !option.valueOnly) continue;
    script += "        " + joined(spellings(option), " | ") + ") " + valueOf(option) + "return ;;\n";
  }
  return script + "    esac\n    $split && return\n";
}

std::string optionWords(const Program& program, const std::string& command) {
  std::vector<std::string> words;
  for (const Option& option : program.options) {
    if (!command.empty() && std::ranges::find(option.commands, command) == option.commands.end()) continue;
    for (const std::string& spelling : spellings(option)) words.push_back(spelling);
  }
  return joined(words);
}

std::string optionProposals(const Program& program) {
  std::string script = "    if [[ $cur == -* ]]; then\n        case $command in\n";
  for (const Command& command : program.commands)
    script += "            " + command.name + ") " + proposed(optionWords(program, command.name)) + " ;;\n";
  return script + "            *) " + proposed(optionWords(program, "")) +
         " ;;\n        esac\n        return\n    fi\n";
}

std::string operandProposal(const Program& program, Operand operand) {
  switch (operand) {
    case Operand::document:
      break;
    case Operand::requests:
      return "_filedir toml";
    case Operand::command:
      return proposed(joined(commandsOnDocuments(program)));
    case Operand::run:
      return "COMPREPLY=($(compgen -W \"$(" + std::string(kRuns) + ")\" -- \"$cur\"))";
  }
  return files(program.extensions);
}

std::string operandProposals(const Program& program) {
  std::string script = "    case ${operands[0]-}:${#operands[@]} in\n";
  std::vector<std::string> names;
  for (const Command& command : program.commands) {
    names.push_back(command.name);
    for (std::size_t i = 0; i < command.operands.size(); ++i) {
      if (command.operands[i] == Operand::document) continue;
      script += "        " + command.name + ":" + std::to_string(i + 1) + ") " +
                operandProposal(program, command.operands[i]) + " ;;\n";
    }
    if (command.operands.back() != Operand::document) script += "        " + command.name + ":*) ;;\n";
  }
  if (!names.empty()) script += "        :0) " + proposed(joined(names)) + " ;;\n";
  return script + "        *) " + files(program.extensions) + " ;;\n    esac\n";
}

void put(std::string& text, std::string_view name, const std::string& value) {
  for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name))
    text.replace(at, name.size(), value);
}

}  // namespace

std::string bashCompletion(const Program& program) {
  const std::string function = functionName(program, "_");
  std::string script(kBegin);
  put(script, "@NAME@", program.name);
  put(script, "@FUNCTION@", function);
  const std::vector<std::string> taking = takingNextWord(program);
  if (!taking.empty()) script += "            " + joined(taking, " | ") + ") ((i++)) ;;\n";
  script += "            -?*) ;;\n            *) operands+=(\"${words[i]}\") ;;\n        esac\n    done\n";
  script += "    local command=${operands[0]-}\n";
  for (const Command& command : program.commands) {
    // The options are those of the command that stands among its operands.
    for (std::size_t i = 0; i < command.operands.size(); ++i)
      if (command.operands[i] == Operand::command)
        script += "    [[ $command != " + command.name + " ]] || command=${operands[" +
                  std::to_string(i + 1) + "]-}\n";
  }
  script += "\n" + values(program) + "\n" + optionProposals(program) + "\n" + operandProposals(program);
  return script + "} &&\n    complete -F " + function + " " + program.name + "\n";
}

}  // namespace pluvo::pages
