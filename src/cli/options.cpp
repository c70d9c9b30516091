#include "options.h"

namespace pluvo::cli {
namespace {

constexpr std::string_view kBlock = "The block";
constexpr std::string_view kChange = "The change";
constexpr std::string_view kMatching = "Matching";
constexpr std::string_view kSafety = "Before and after";
constexpr std::string_view kOutput = "Output";

constexpr CommandSet kTextCommands = setOf(Command::insert) | setOf(Command::replace);
constexpr CommandSet kInsert = setOf(Command::insert);
constexpr CommandSet kHighlight = setOf(Command::highlight);

// Flags are stored through one shape, values through another; the table stays one line of meaning per option.
template <bool TypedOptions::*Flag>
void raise(TypedOptions& typed, const std::string& /*value*/) {
  typed.*Flag = true;
}
template <std::optional<std::string> TypedOptions::*Value>
void keep(TypedOptions& typed, const std::string& value) {
  typed.*Value = value;
}

}  // namespace

const std::vector<CommandName>& commandNames() {
  static const std::vector<CommandName> names = {
      {Command::find, "find", "list the blocks"},
      {Command::insert, "insert", "insert a text before or after the blocks"},
      {Command::replace, "replace", "put a text in the place of the blocks"},
      {Command::remove, "delete", "delete the blocks"},
      {Command::highlight, "highlight", "highlight the blocks in a colour"},
  };
  return names;
}

std::string_view nameOf(Command command) { return commandNames()[static_cast<std::size_t>(command)].name; }

const std::vector<Option>& options() {
  using T = TypedOptions;
  static const std::vector<Option> table = {
      {'b', "begin", Takes::value, "TEXT", kBlock, kEveryCommand,
       "the text a block begins with\n(a line end in TEXT is a paragraph mark)", keep<&T::begin>},
      {'e', "end", Takes::value, "TEXT", kBlock, kEveryCommand,
       "the text it ends with; without it the block\nis its beginning alone", keep<&T::end>},
      {'i', "inside", Takes::value, "TEXT", kBlock, kEveryCommand, "a text that must stand between the two",
       keep<&T::inside>},
      {0, "begin-file", Takes::value, "FILE", kBlock, kEveryCommand,
       "read TEXT from FILE (UTF-8; - is standard input);\nthe line end at its very end is not part of it",
       keep<&T::beginFile>},
      {0, "end-file", Takes::value, "FILE", kBlock, kEveryCommand, "likewise", keep<&T::endFile>},
      {0, "inside-file", Takes::value, "FILE", kBlock, kEveryCommand, "likewise", keep<&T::insideFile>},
      {0, "apart", Takes::value, "N|same", kBlock, kEveryCommand,
       "beginning and ending are no more than N units\napart, 0 to 32767; same is 0 (default: same)",
       keep<&T::apart>},
      {0, "unit", Takes::value, "UNIT", kBlock, kEveryCommand,
       "word, sentence, paragraph or document; document\nsets no limit (default: paragraph)", keep<&T::unit>},

      {0, "on", Takes::value, "PLACE", kChange, kEveryCommand,
       "what is listed or changed of each block: block,\nbegin, end or inside (default: block)",
       keep<&T::on>},
      {'t', "text", Takes::value, "TEXT", kChange, kTextCommands, "what to insert or to replace with",
       keep<&T::text>},
      {0, "text-file", Takes::value, "FILE", kChange, kTextCommands, "read TEXT from FILE, as above",
       keep<&T::textFile>},
      {0, "before", Takes::nothing, "", kChange, kInsert, "insert before (default)", raise<&T::before>},
      {0, "after", Takes::nothing, "", kChange, kInsert, "insert after", raise<&T::after>},
      {0, "extra-space", Takes::nothing, "", kChange, kInsert,
       "one space between the inserted text and the block", raise<&T::extraSpace>},
      {0, "color", Takes::value, "COLOR", kChange, kHighlight,
       "yellow, pink, green, blue, red or none, or one of\n"
       "black, turquoise, bright-green, white, dark-blue,\n"
       "teal, violet, dark-red, dark-yellow, gray-50, gray-25\n(default: yellow)",
       keep<&T::color>},

      {0, "match-case", Takes::nothing, "", kMatching, kEveryCommand, "capital letters must agree",
       raise<&T::matchCase>},
      {0, "whole-words", Takes::nothing, "", kMatching, kEveryCommand, "match whole words only",
       raise<&T::wholeWords>},
      {0, "field-codes", Takes::nothing, "", kMatching, kEveryCommand,
       "look at the codes of fields, not at their results", raise<&T::fieldCodes>},

      {'n', "dry-run", Takes::nothing, "", kSafety, kEveryCommand,
       "save nothing; show each block before and after", raise<&T::dryRun>},
      {0, "confirm", Takes::nothing, "", kSafety, kChangingCommands,
       "show each block and ask: y yes, n no,\na yes to all the rest, q stop", raise<&T::confirm>},
      {0, "backup", Takes::maybeValue, "SUFFIX", kSafety, kChangingCommands,
       "keep each original beside the changed document,\nwith SUFFIX behind its name (default: .bak)",
       keep<&T::backup>},
      {0, "output", Takes::value, "DIR", kSafety, kChangingCommands,
       "save changed documents into DIR; the originals\nare not touched", keep<&T::output>},
      {0, "keep-going", Takes::nothing, "", kSafety, kChangingCommands,
       "save a document even where a change to one of its\nblocks was refused", raise<&T::keepGoing>},

      {0, "json", Takes::nothing, "", kOutput, kEveryCommand,
       "one JSON object a line: each document, then a summary", raise<&T::json>},
      {'q', "quiet", Takes::nothing, "", kOutput, kEveryCommand, "print nothing but errors (and JSON)",
       raise<&T::quiet>},
      {'h', "help", Takes::nothing, "", kOutput, kEveryCommand, "show this help", raise<&T::help>},
      {'V', "version", Takes::nothing, "", kOutput, kEveryCommand, "show the version", raise<&T::version>},
  };
  return table;
}

}  // namespace pluvo::cli
