#include "help.h"

#include <array>
#include <string_view>

namespace pluvo::cli {
namespace {

constexpr std::size_t kTextColumn = 27;

constexpr std::string_view kIntroduction =
    "Finds blocks of text in documents and inserts, replaces, deletes or highlights on them.\n"
    "A block begins with one text. It may end with another, no farther away than you allow,\n"
    "and may have to contain a third. A document is saved completely or not at all.\n";

// Examples work as they stand in samples/, where a test goes through all of them.
constexpr std::string_view kOverallExamples =
    "  pluvo find --begin 'The Lessor' --end 'the Lessee' lease.txt\n"
    "  pluvo replace -b 'DRAFT' -t 'FINAL' --match-case *.txt\n"
    "  pluvo delete -b '[Note to file:' -e ']' -n lease.txt\n"
    "  pluvo highlight -b 'the Lessor' --color pink --confirm lease.docx\n"
    "  pluvo replace -b 'Harbour Estates' -t 'Harbour Holdings' -r . --report changes.html\n";

constexpr std::string_view kExitStatus =
    "  0 blocks were found   1 none   2 something failed, even if the rest succeeded; with\n"
    "  --strict also if something was not reached\n";
constexpr std::string_view kUndoExitStatus =
    "  0 taken back, or runs to show   1 nothing to do   2 something failed, even if the rest succeeded\n";
constexpr std::string_view kReportExitStatus =
    "  0 blocks were found   1 none   2 a document failed or was not worked on\n";
constexpr std::string_view kSaveExitStatus = "  0 saved   2 not saved\n";

// In the order of Command.
constexpr std::array<Story, 9> kStories = {{
    {"Lists the blocks: document, number of the paragraph, text. Changes nothing.\n",
     "  pluvo find -b 'The Lessor' -e 'the Lessee' lease.txt\n"
     "      from 'The Lessor' to the next 'the Lessee' in the same or the next paragraph\n"
     "  pluvo find -b 'Insurance' -e 'Notices' -i 'fire' --unit document *.txt\n"
     "      passages on insurance that mention fire, however long\n"
     "  pluvo find -b 'assign' -e 'consent' --apart 20 --unit word --on end lease.txt\n"
     "      lists each 'consent' at most 20 words after an 'assign'\n"},
    {"Inserts a text before or after each block, or its beginning, ending or inside text.\n",
     "  pluvo insert -b 'the premises' -t 'all of' --extra-space --on begin lease.txt\n"
     "      'the premises' becomes 'all of the premises'\n"
     "  pluvo insert -b 'Rent.' -e 'a year' -t ' (net)' --after --on end *.txt\n"},
    {"Puts a text in the place of each block, or of its beginning, ending or inside text.\n",
     "  pluvo replace -b 'Harbour Estates' -t 'Harbour Holdings' --match-case *.txt\n"
     "  pluvo replace -b '[begin confidential]' -e '[end confidential]' --unit document -t '[withheld]' "
     "minutes.txt\n"
     "  pluvo replace -b 'DRAFT' -t 'FINAL' --dry-run lease.txt\n"
     "      shows each block before and after and saves nothing\n"},
    {"Deletes each block, or its beginning, ending or inside text.\n",
     "  pluvo delete -b '[Note to file:' -e ']' --unit document --backup lease.txt\n"
     "      keeps the original as lease.txt.bak\n"
     "  pluvo delete -b 'Apologies:' -e 'Lindqvist' --confirm *.txt\n"},
    {"Highlights each block, or its beginning, ending or inside text; --color none removes it.\n"
     "Plain text has no place for highlighting.\n",
     "  pluvo highlight -b 'shall' -e '.' --color yellow lease.docx\n"
     "  pluvo highlight -b 'the Lessor' --color none --output clean/ *.docx\n"},
    {"Works through the requests saved in a file: each document gets them in their order, in one\n"
     "opening and one saving. 'pluvo save' writes such files.\n",
     "  pluvo run house-style.toml --dry-run lease.docx\n"
     "  pluvo run house-style.toml -r . --report changes.html\n"},
    {"Saves a request in a file, after those that are there. The options are those of COMMAND;\n"
     "documents are named when the file is run. The file is TOML and may be edited and commented.\n",
     "  pluvo save house-style.toml replace -b 'Smith & Sons' -t 'Smith & Daughters Ltd'\n"
     "  pluvo save house-style.toml highlight -b 'to be confirmed' --color pink\n"},
    {"Takes back the changes of a run, or of the last one if you name none: bytes, permissions and\n"
     "time of every document. It leaves a document that was changed since as it is, and names it.\n"
     "The originals are kept for you alone in $XDG_STATE_HOME/pluvo/runs (else ~/.local/state),\n"
     "no more than 4 GiB; beyond that the oldest runs are forgotten. A run with a name of its own\n"
     "(--run-name) is taken back with all its slices. It is kept until then, or until --forget.\n",
     "  pluvo undo --list\n"
     "  pluvo undo\n"
     "  pluvo undo 20261121-142233-0\n"
     "      a run by the name that the list gives it\n"},
    {"Tells what became of the slices of a run: which documents failed or were not worked on, and\n"
     "which slices were broken off or never begun. The results are in the journal under the run's\n"
     "name, or in FILEs that runs printed with --json; those of one request make one report.\n"
     "With --files-from it also tells of documents in that list that no slice knows.\n",
     "  pluvo insert -b Lessor -t ' (net)' --after lease.txt deed.docx --run-name net --slice 1/1\n"
     "      all documents as one slice; for two slices 1/2 and 2/2, perhaps on two machines\n"
     "  pluvo report net --report net.html\n"
     "  pluvo report net --rest again.list\n"},
}};

std::string optionNames(const Option& option) {
  std::string names = option.letter == 0 ? "      --" : "  -" + std::string(1, option.letter) + ", --";
  names += option.name;
  if (option.takes == Takes::value) names += " " + std::string(option.valueName);
  if (option.takes == Takes::maybeValue) names += "[=" + std::string(option.valueName) + "]";
  return names;
}

std::string optionHelp(const Option& option) {
  std::string text = optionNames(option);
  if (text.size() >= kTextColumn) {
    text += '\n' + std::string(kTextColumn, ' ');
  } else {
    text.resize(kTextColumn, ' ');
  }
  for (const char c : option.help) {
    text += c;
    if (c == '\n') text += std::string(kTextColumn, ' ');
  }
  return text + '\n';
}

std::string optionList(CommandSet commands, const Style& style) {
  std::string list;
  std::string_view group;
  for (const Option& option : options()) {
    if ((option.commands & commands) == 0) continue;
    if (option.group != group) list += '\n' + style.heading(option.group) + '\n';
    group = option.group;
    list += optionHelp(option);
  }
  return list;
}

std::string commandList() {
  std::string list;
  for (const CommandName& each : commandNames()) {
    std::string line = "  " + std::string(each.name);
    line.resize(14, ' ');
    list += line + std::string(each.summary) + '\n';
  }
  return list;
}

std::string section(std::string_view heading, std::string_view text, const Style& style) {
  return '\n' + style.heading(heading) + '\n' + std::string(text);
}

}  // namespace

const Story& storyOf(Command command) { return kStories[static_cast<std::size_t>(command)]; }

std::string_view usageOf(std::optional<Command> command) {
  if (command == Command::run) return " FILE [OPTIONS] DOCUMENT...";
  if (command == Command::save) return " FILE COMMAND [OPTIONS]";
  if (command == Command::undo) return " [RUN] [OPTIONS]";
  if (command == Command::report) return " RUN|FILE... [OPTIONS]";
  return " [OPTIONS] DOCUMENT...";
}

std::string_view exitStatusOf(std::optional<Command> command) {
  if (command == Command::undo) return kUndoExitStatus;
  if (command == Command::report) return kReportExitStatus;
  return command == Command::save ? kSaveExitStatus : kExitStatus;
}

std::string helpText(std::optional<Command> command, const Style& style) {
  const std::string name = command ? std::string(nameOf(*command)) : "COMMAND";
  std::string text = style.heading("pluvo " + name) + std::string(usageOf(command)) + "\n\n";
  if (command) {
    const Story& story = storyOf(*command);
    text += std::string(story.what) + optionList(setOf(*command), style);
    text += section("Examples", story.examples, style);
  } else {
    text += std::string(kIntroduction) + section("Commands", commandList(), style);
    text += "  'pluvo COMMAND --help' describes one command, with examples.\n";
    text += optionList(kEveryCommand, style) + section("Examples", kOverallExamples, style);
  }
  return text + section("Exit status", exitStatusOf(command), style);
}

std::string versionText() { return "pluvo " PLUVO_VERSION "\n" PLUVO_BUILT_WITH "\n"; }

}  // namespace pluvo::cli
