#pragma once

#include "runs/written_request.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::cli {

/// The first five work on blocks, and have the values of their operations.
enum class Command : std::uint8_t { find, insert, replace, remove, highlight, run, save, undo, report };

struct CommandName {
  Command command;
  std::string_view name;
  std::string_view summary;
};

const std::vector<CommandName>& commandNames();
std::string_view nameOf(Command command);
/// Of a command that works on blocks.
constexpr engine::OperationCode operationOf(Command command) {
  return static_cast<engine::OperationCode>(command);
}

/// The command line as it was typed: texts are bytes, numbers are texts, nothing has been checked. What it
/// means is request.h's business.
struct TypedOptions : runs::WrittenRequest {
  std::optional<std::string> beginFile, endFile, insideFile, textFile;
  std::optional<std::string> backup, output;
  std::optional<std::string> levels, types, mask, exclude, filesFrom, newerThan, passwordFile, encoding;
  std::optional<std::string> jobs, progress, report;
  std::optional<std::string> slice, runName, journalDir, rest;
  bool confirm = false;
  bool dryRun = false;
  bool keepGoing = false;
  bool recursive = false;
  bool follow = false;
  bool null = false;
  bool noJournal = false;
  bool overwriteReport = false;
  bool strict = false;
  bool list = false;
  bool forget = false;
  bool json = false;
  bool quiet = false;
  bool help = false;
  bool version = false;
};

enum class Takes : std::uint8_t { nothing, value, maybeValue };

/// Which commands an option belongs to.
using CommandSet = unsigned;
constexpr CommandSet setOf(Command command) { return 1U << static_cast<unsigned>(command); }
inline constexpr CommandSet kEveryCommand = 0x1FF;
/// Those that define a block.
inline constexpr CommandSet kBlockCommands = 0x1F;
/// Those that go over documents.
inline constexpr CommandSet kRunCommands = kBlockCommands | setOf(Command::run);
inline constexpr CommandSet kChangingCommands = kRunCommands & ~setOf(Command::find);
/// Those that read the journal of runs.
inline constexpr CommandSet kJournalCommands = setOf(Command::undo) | setOf(Command::report);

/// One option: all that the parser and the help know of it.
struct Option {
  char letter;  ///< 0 for none
  const char* name;
  Takes takes;
  std::string_view valueName;
  std::string_view group;  ///< the heading it stands under in the help
  CommandSet commands;
  std::string_view help;  ///< lines; a line feed separates them
  void (*store)(TypedOptions& typed, const std::string& value);
  std::vector<std::string_view> choices = {};  ///< the values there are, for shells to propose
};

/// The headings whose options make a request.
inline constexpr std::string_view kBlockGroup = "The block";
inline constexpr std::string_view kChangeGroup = "The change";
inline constexpr std::string_view kMatchingGroup = "Matching";

/// Whether an option gives the text of a request in a file.
inline bool namesTextFile(const Option& option) {
  return option.valueName == "FILE" && (option.group == kBlockGroup || option.group == kChangeGroup);
}

/// Whether an option is kept with a request: the search and the operation are, the documents are not.
/// A text is kept itself, whatever file it came from.
inline bool isPartOfRequest(const Option& option) {
  const bool isAbout =
      option.group == kBlockGroup || option.group == kChangeGroup || option.group == kMatchingGroup;
  return isAbout && !namesTextFile(option);
}

const std::vector<Option>& options();

}  // namespace pluvo::cli
