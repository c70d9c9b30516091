#pragma once

#include <string>
#include <vector>

namespace pluvo::pages {

/// A shell's proposals for the value of an option.
enum class Completes { nothing, file, folder, choice, choices };

/// Choices are separated by commas where an option takes several.
struct Option {
  char letter = 0;  ///< 0 for none
  std::string name;
  std::string value;                  ///< the value's name; empty: the option takes none
  bool valueOnly = true;              ///< false: the value may be missing, and is given after "=" alone
  std::string group;                  ///< the heading it stands under; empty in a program without headings
  std::vector<std::string> commands;  ///< those it goes with; empty in a program without commands
  std::string help;
  Completes completes = Completes::nothing;
  std::vector<std::string> choices;
};

/// The words after a command, one by one; the last repeats where it is a document.
enum class Operand { document, requests, command, run };

struct Command {
  std::string name;
  std::string summary;
  std::string usage;     ///< the arguments in a line of usage
  std::string about;     ///< sentences
  std::string examples;  ///< lines; a line indented by two is a command, by more a remark on it
  std::vector<Operand> operands;
};

/// The source of a program's --help.
struct Program {
  std::string name;
  std::vector<Command> commands;  ///< none: its operands are documents
  std::vector<Option> options;
  std::vector<std::string> extensions;  ///< of documents
};

}  // namespace pluvo::pages
