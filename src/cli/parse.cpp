#include "parse.h"

#include "base/suggest.h"
#include "usage_error.h"

#include <getopt.h>

#include <algorithm>
#include <cstddef>

namespace pluvo::cli {
namespace {

constexpr std::string_view kMore = " 'pluvo --help' lists what there is.";

// Long options are told apart by their place in the table, out of the way of every letter.
constexpr int kFirstCode = 1000;

std::vector<option> longOptions() {
  std::vector<option> longs;
  int code = kFirstCode;
  for (const Option& each : options()) {
    const int argument = each.takes == Takes::nothing ? no_argument
                         : each.takes == Takes::value ? required_argument
                                                      : optional_argument;
    longs.push_back({each.name, argument, nullptr, code++});
  }
  longs.push_back({nullptr, 0, nullptr, 0});
  return longs;
}

std::string letters() {
  std::string letters = ":";  // a missing value is told apart from an unknown option
  for (const Option& each : options()) {
    if (each.letter == 0) continue;
    letters += each.letter;
    if (each.takes == Takes::value) letters += ':';
  }
  return letters;
}

const Option* optionOf(int code) {
  const auto& table = options();
  if (code >= kFirstCode) return &table[static_cast<std::size_t>(code - kFirstCode)];
  const auto found =
      std::find_if(table.begin(), table.end(), [&](auto& each) { return each.letter == code; });
  return code == 0 || found == table.end() ? nullptr : &*found;
}

std::string longName(const Option& option) { return std::string("--") + option.name; }

std::string quoted(std::string_view typed) { return "'" + std::string(typed) + "'"; }

[[noreturn]] void refuseUnknown(std::string_view typed) {
  if (typed.substr(0, 2) != "--" || typed.size() < 3) {
    throw UsageError("There is no option " + quoted(typed) + "." + std::string(kMore));
  }
  const std::string_view name = typed.substr(0, typed.find('='));
  std::vector<std::string> names;
  for (const Option& each : options()) names.push_back(longName(each));
  const std::vector<std::string_view> candidates(names.begin(), names.end());
  const std::string hint = base::didYouMean(name, candidates);
  throw UsageError("There is no option " + quoted(name) + "." + (hint.empty() ? std::string(kMore) : hint));
}

Command commandOf(std::string_view typed) {
  std::vector<std::string_view> candidates;
  for (const CommandName& each : commandNames()) {
    if (each.name == typed) return each.command;
    candidates.push_back(each.name);
  }
  const std::string hint = base::didYouMean(typed, candidates);
  throw UsageError(
      "There is no command " + quoted(typed) + "." +
      (hint.empty()
           ? " The commands are find, insert, replace, delete, highlight, run, save, undo and report."
           : hint));
}

void refuseWrongCommand(const Option& option, Command command) {
  if ((option.commands & setOf(command)) != 0) return;
  std::vector<std::string_view> owners;
  for (const CommandName& each : commandNames()) {
    if ((option.commands & setOf(each.command)) != 0) owners.push_back(each.name);
  }
  throw UsageError(longName(option) + " has no meaning with " + std::string(nameOf(command)) +
                   "; it goes with " + base::joinedWithOr(owners) + ".");
}

/// pluvo save FILE COMMAND ...
void takeSavedCommand(TypedCommandLine& line) {
  line.saveTo = line.paths[0];
  line.command = commandOf(line.paths[1]);
  line.paths.erase(line.paths.begin(), line.paths.begin() + 2);
  if ((setOf(*line.command) & kBlockCommands) == 0)
    throw UsageError("Only find, insert, replace, delete and highlight can be saved.");
  if (!line.paths.empty())
    throw UsageError(
        "A saved request names no documents; they follow when it is run: pluvo run FILE DOCUMENT...");
}

/// A saved request holds the operation; all other options are given where it is run.
void refuseNotKept(const Option& option) {
  const bool isKept = isPartOfRequest(option) || namesTextFile(option);
  if (isKept || (option.commands & setOf(Command::save)) != 0) return;
  throw UsageError(longName(option) +
                   " is not kept with a request; give it when the file is run: pluvo run FILE DOCUMENT...");
}

/// Reads the arguments with getopt: options in the order they were typed, and the rest.
class Scanner {
 public:
  explicit Scanner(const std::vector<std::string>& arguments) : words_(arguments) {
    pointers_.push_back(program_.data());
    for (std::string& word : words_) pointers_.push_back(word.data());
    pointers_.push_back(nullptr);
    optind = 0;  // starts glibc's getopt anew
    opterr = 0;
  }

  /// The next option, or nullptr when only other words are left.
  const Option* next() {
    const int code = getopt_long(count(), pointers_.data(), letters_.c_str(), longs_.data(), nullptr);
    if (code == -1) return nullptr;
    if (code == ':') throw UsageError(longName(*optionOf(optopt)) + " needs a value after it.");
    if (code == '?') refuse();
    return optionOf(code);
  }

  static std::string value() { return optarg == nullptr ? "" : optarg; }

  std::vector<std::string> rest() const { return {pointers_.begin() + optind, pointers_.end() - 1}; }

 private:
  int count() const { return static_cast<int>(pointers_.size()) - 1; }

  [[noreturn]] void refuse() const {
    if (optopt >= kFirstCode) throw UsageError(longName(*optionOf(optopt)) + " takes no value.");
    if (optopt != 0) refuseUnknown({'-', static_cast<char>(optopt)});
    refuseUnknown(pointers_[static_cast<std::size_t>(optind) - 1]);
  }
  [[noreturn]] static void refuseUnknown(const std::string& typed) { cli::refuseUnknown(typed); }

  std::string program_ = "pluvo";
  std::vector<std::string> words_;
  std::vector<char*> pointers_;
  std::string letters_ = letters();
  std::vector<option> longs_ = longOptions();
};

/// Whether its value is several, with commas between.
bool isList(const Option& option) { return option.valueName.ends_with(",..."); }

}  // namespace

TypedCommandLine parse(const std::vector<std::string>& arguments) {
  Scanner scanner(arguments);
  TypedCommandLine line;
  std::vector<const Option*> seen;
  while (const Option* option = scanner.next()) {
    if (option->takes != Takes::nothing && std::count(seen.begin(), seen.end(), option) > 0) {
      throw UsageError(longName(*option) + " is given twice; " +
                       (isList(*option) ? "give one list, with commas between." : "leave one out."));
    }
    seen.push_back(option);
    option->store(line.options, Scanner::value());
  }
  line.paths = scanner.rest();
  line.words = arguments;
  if (line.paths.empty()) return line;

  std::string first = line.paths.front();
  line.paths.erase(line.paths.begin());
  if (first == "help") {
    line.options.help = true;
    if (line.paths.empty()) return line;
    first = line.paths.front();
  }
  line.command = commandOf(first);
  if (line.command == Command::save && line.paths.size() >= 2) takeSavedCommand(line);
  for (const Option* option : seen) {
    refuseWrongCommand(*option, *line.command);
    if (line.saveTo) refuseNotKept(*option);
  }
  return line;
}

}  // namespace pluvo::cli
