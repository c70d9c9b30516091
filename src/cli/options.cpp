#include "options.h"

#include "base/document_types.h"
#include "runs/colors.h"
#include "runs/selection.h"

#include <span>

namespace pluvo::cli {
namespace {

constexpr std::string_view kDocuments = "The documents";
constexpr std::string_view kSafety = "Before and after";
constexpr std::string_view kOutput = "Output";

constexpr CommandSet kTextCommands = setOf(Command::insert) | setOf(Command::replace);
constexpr CommandSet kInsert = setOf(Command::insert);
constexpr CommandSet kHighlight = setOf(Command::highlight);

// Flags are stored through one shape, values through another; the table stays one line of meaning per option.
template <auto Flag>
void raise(TypedOptions& typed, const std::string& /*value*/) {
  typed.*Flag = true;
}
template <auto Value>
void keep(TypedOptions& typed, const std::string& value) {
  typed.*Value = value;
}

std::string joined(const std::vector<std::string>& words) {
  std::string list;
  for (const std::string& word : words) list += (list.empty() ? "" : ",") + word;
  return list;
}

}  // namespace

const std::vector<CommandName>& commandNames() {
  static const std::vector<CommandName> names = {
      {Command::find, "find", "list the blocks"},
      {Command::insert, "insert", "insert a text before or after the blocks"},
      {Command::replace, "replace", "put a text in the place of the blocks"},
      {Command::remove, "delete", "delete the blocks"},
      {Command::highlight, "highlight", "highlight the blocks in a colour"},
      {Command::run, "run", "work through the requests saved in a file"},
      {Command::save, "save", "save a request in a file for run"},
      {Command::undo, "undo", "take back the changes of a run"},
      {Command::report, "report", "tell what became of a run in slices"},
  };
  return names;
}

std::string_view nameOf(Command command) { return commandNames()[static_cast<std::size_t>(command)].name; }

const std::vector<Option>& options() {
  using T = TypedOptions;
  static const std::string typesHelp =
      "kinds of files to take from folders; * stands for all\nthat can be worked on (default:\n" +
      joined(runs::documentTypes()) + ")";
  static const std::vector<Option> table = {
      {'b', "begin", Takes::value, "TEXT", kBlockGroup, kBlockCommands,
       "the text a block begins with\n(a line end in TEXT is a paragraph mark)", keep<&T::begin>},
      {'e', "end", Takes::value, "TEXT", kBlockGroup, kBlockCommands,
       "the text it ends with; without it the block\nis its beginning alone", keep<&T::end>},
      {'i', "inside", Takes::value, "TEXT", kBlockGroup, kBlockCommands,
       "a text that must stand between the two", keep<&T::inside>},
      {0, "begin-file", Takes::value, "FILE", kBlockGroup, kBlockCommands,
       "read TEXT from FILE (UTF-8; - is standard input);\nthe line end at its very end is not part of it",
       keep<&T::beginFile>},
      {0, "end-file", Takes::value, "FILE", kBlockGroup, kBlockCommands, "the same for the ending",
       keep<&T::endFile>},
      {0, "inside-file", Takes::value, "FILE", kBlockGroup, kBlockCommands,
       "the same for the text between the two", keep<&T::insideFile>},
      {0, "apart", Takes::value, "N|same", kBlockGroup, kBlockCommands,
       "beginning and ending are no more than N units\napart, 0 to 32767; same is 0 (default: same)",
       keep<&T::apart>},
      {0,
       "unit",
       Takes::value,
       "UNIT",
       kBlockGroup,
       kBlockCommands,
       "word, sentence, paragraph or document; document\nsets no limit (default: paragraph)",
       keep<&T::unit>,
       {"word", "sentence", "paragraph", "document"}},
      {0,
       "in",
       Takes::value,
       "PLACE,...",
       kBlockGroup,
       kBlockCommands,
       "where the block stands: main (the main text),\nheaders, footers, footnotes, endnotes, notes (both),\n"
       "comments, boxes (text boxes) or all (default: main)",
       keep<&T::in>,
       {"main", "headers", "footers", "footnotes", "endnotes", "notes", "comments", "boxes", "all"}},

      {0,
       "on",
       Takes::value,
       "PLACE",
       kChangeGroup,
       kBlockCommands,
       "the part of each block to list or change: block,\nbegin, end or inside (default: block)",
       keep<&T::on>,
       {"block", "begin", "end", "inside"}},
      {'t', "text", Takes::value, "TEXT", kChangeGroup, kTextCommands,
       "the text to insert or to replace with", keep<&T::text>},
      {0, "text-file", Takes::value, "FILE", kChangeGroup, kTextCommands,
       "read TEXT from FILE, as --begin-file does", keep<&T::textFile>},
      {0, "before", Takes::nothing, "", kChangeGroup, kInsert, "insert before (default)", raise<&T::before>},
      {0, "after", Takes::nothing, "", kChangeGroup, kInsert, "insert after", raise<&T::after>},
      {0, "extra-space", Takes::nothing, "", kChangeGroup, kInsert,
       "one space between the inserted text and the block", raise<&T::extraSpace>},
      {0, "color", Takes::value, "COLOR", kChangeGroup, kHighlight,
       "yellow, pink, green, blue, red or none, or one of\n"
       "black, turquoise, bright-green, white, dark-blue,\n"
       "teal, violet, dark-red, dark-yellow, gray-50, gray-25\n(default: yellow)",
       keep<&T::color>, runs::colorNames()},

      {0, "match-case", Takes::nothing, "", kMatchingGroup, kBlockCommands, "capital letters must agree",
       raise<&T::matchCase>},
      {0, "whole-words", Takes::nothing, "", kMatchingGroup, kBlockCommands, "match whole words only",
       raise<&T::wholeWords>},
      {0, "field-codes", Takes::nothing, "", kMatchingGroup, kBlockCommands,
       "look at the codes of fields, not at their results", raise<&T::fieldCodes>},

      {'r', "recursive", Takes::nothing, "", kDocuments, kRunCommands,
       "take the documents in the folders named and below", raise<&T::recursive>},
      {0, "follow", Takes::nothing, "", kDocuments, kRunCommands,
       "follow links met in folders, which are left out\notherwise; a link that is named is always followed",
       raise<&T::follow>},
      {0, "levels", Takes::value, "N", kDocuments, kRunCommands,
       "go down no more than N levels of folders; 0 stays\nin the folders named (default: all)",
       keep<&T::levels>},
      {0,
       "types",
       Takes::value,
       "TYPE,...",
       kDocuments,
       kRunCommands,
       typesHelp,
       keep<&T::types>,
       {base::kDocumentTypes.begin(), base::kDocumentTypes.end()}},
      {0, "mask", Takes::value, "MASK,...", kDocuments, kRunCommands,
       "take only files with such names from folders: *\nstands for any characters, ? for one. A mask with "
       "a\n"
       "slash is about the path below the folder named\n(2024/*.txt, ./lease*), where * and ? stand for no\n"
       "slash and a step ** for any folders (a/**/b.txt).\nA mask that ends in a slash is about the folders\n"
       "that files lie in (signed/)",
       keep<&T::mask>},
      {0, "exclude", Takes::value, "MASK,...", kDocuments, kRunCommands,
       "leave out files with such names, and folders with all\nthat is in them; masks are as for --mask",
       keep<&T::exclude>},
      {0, "newer-than", Takes::value, "TIME", kDocuments, kRunCommands,
       "take only documents changed since: a day as\n2026-11-30, with a time as 2026-11-30T14:30, or an\n"
       "age as 90m, 12h or 7d",
       keep<&T::newerThan>},
      {0, "files-from", Takes::value, "FILE", kDocuments, kRunCommands | setOf(Command::report),
       "take the documents named in FILE, one a line (- is\nstandard input)", keep<&T::filesFrom>},
      {'0', "null", Takes::nothing, "", kDocuments, kRunCommands | setOf(Command::report),
       "names in FILE end with a zero byte, not with a line", raise<&T::null>},
      {0, "slice", Takes::value, "K/N", kDocuments, kRunCommands,
       "take the K-th of N parts of the documents, 1/4 to 4/4\nfor instance; the path of a document alone "
       "decides\n"
       "its part",
       keep<&T::slice>},
      {0, "password-file", Takes::value, "FILE", kDocuments, kRunCommands,
       "work on encrypted and protected documents too, with\npasswords from FILE, one a line; they "
       "stay\nencrypted and protected",
       keep<&T::passwordFile>},
      {0, "encoding", Takes::value, "NAME", kDocuments, kRunCommands,
       "read plain texts that are not UTF-8 and have no byte\norder mark as NAME, such as Windows-1252 or "
       "Shift_JIS\n(default: told from the text)",
       keep<&T::encoding>},

      {'n', "dry-run", Takes::nothing, "", kSafety, kRunCommands,
       "save nothing; show each block before and after", raise<&T::dryRun>},
      {0, "confirm", Takes::nothing, "", kSafety, kChangingCommands,
       "show each block and ask: y yes, n no,\na yes to all the rest, s no to the rest of this\ndocument, q "
       "stop",
       raise<&T::confirm>},
      {0, "backup", Takes::maybeValue, "SUFFIX", kSafety, kChangingCommands,
       "keep each original beside the changed document,\nwith SUFFIX after its name (default: .bak)",
       keep<&T::backup>},
      {0, "output", Takes::value, "DIR", kSafety, kChangingCommands,
       "save changed documents into DIR, those found in\nfolders in folders of the same names; the "
       "originals\nare not touched",
       keep<&T::output>},
      {0, "keep-going", Takes::nothing, "", kSafety, kChangingCommands,
       "save a document even where a change to one of its\nblocks was refused", raise<&T::keepGoing>},

      {'j', "jobs", Takes::value, "N", kSafety, kRunCommands,
       "documents worked on at the same time (default: one\nfor each processor)", keep<&T::jobs>},
      {0, "run-name", Takes::value, "NAME", kSafety, kRunCommands,
       "slices of one name are one run, for 'pluvo undo NAME'\nand 'pluvo report NAME'; a slice that is run "
       "again\nleaves out the documents it has done",
       keep<&T::runName>},
      {0, "journal-dir", Takes::value, "DIR", kSafety, kRunCommands | kJournalCommands,
       "keep the originals and the results of slices in DIR,\nwhich all machines must see (default:\n"
       "$XDG_STATE_HOME, else ~/.local/state)",
       keep<&T::journalDir>},
      {0, "no-journal", Takes::nothing, "", kSafety, kChangingCommands,
       "do not keep the originals for 'pluvo undo'", raise<&T::noJournal>},

      {0, "strict", Takes::nothing, "", kOutput, kRunCommands,
       "fail where a block stands in a place not searched (see\n--in), where its beginning stands in text "
       "that "
       "no\nrequest reaches, or where a part cannot be read;\ndocuments are saved all the same",
       raise<&T::strict>},
      {0, "report", Takes::value, "FILE", kOutput, kRunCommands | setOf(Command::report),
       "write a report of documents and blocks into FILE,\nby its name a page (.html), a table (.csv) "
       "or\n.json; an existing FILE is replaced only if it is\nempty or an earlier report",
       keep<&T::report>},
      {0, "overwrite-report", Takes::nothing, "", kOutput, kRunCommands | setOf(Command::report),
       "replace FILE even where it holds something other\nthan an earlier report",
       raise<&T::overwriteReport>},
      {0, "rest", Takes::value, "FILE", kOutput, setOf(Command::report),
       "write the names of the documents that failed or were\nnot worked on into FILE, which must be new; "
       "with --null\nthey end with a zero byte",
       keep<&T::rest>},
      {0,
       "progress",
       Takes::value,
       "WHEN",
       kOutput,
       kRunCommands,
       "a line that tells how far the run has come: auto\n(at a terminal), always or never",
       keep<&T::progress>,
       {"auto", "always", "never"}},
      {0, "list", Takes::nothing, "", kOutput, setOf(Command::undo), "show the runs that can be taken back",
       raise<&T::list>},
      {0, "forget", Takes::nothing, "", kOutput, setOf(Command::undo),
       "take nothing back, but remove the originals of a run\nthat has a name (--run-name)",
       raise<&T::forget>},
      {0, "json", Takes::nothing, "", kOutput, kRunCommands | setOf(Command::report),
       "one JSON object a line: each document, then a summary", raise<&T::json>},
      {'q', "quiet", Takes::nothing, "", kOutput, kRunCommands | kJournalCommands,
       "print nothing but errors (and JSON)", raise<&T::quiet>},
      {'h', "help", Takes::nothing, "", kOutput, kEveryCommand, "show this help", raise<&T::help>},
      {'V', "version", Takes::nothing, "", kOutput, kEveryCommand, "show the version", raise<&T::version>},
  };
  return table;
}

}  // namespace pluvo::cli
