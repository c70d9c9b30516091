#include "plan.h"
#include "sandbox.h"
#include "usage_error.h"
#include "word/enums.h"

namespace pluvo::cli {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

Plan planned(const Words& words) { return planFrom(parse(words)); }
engine::Request made(const std::string& line) { return planned(wordsOf(line)).requests.front(); }

std::string refusalOf(const std::string& line) {
  try {
    (void)planned(wordsOf(line));
  } catch (const UsageError& refused) {
    return refused.what();
  }
  return "";
}

TEST(Request, TakesOptionsAndPathsInAnyOrder) {
  const Plan plan = planned({"-n", "replace", "a.txt", "-b", "x", "b.txt", "--text=", "--", "-c.txt"});
  const engine::Request& request = plan.requests.front();
  EXPECT_EQ(request.operation, engine::kReplace);
  EXPECT_THAT(plan.selection.paths, ElementsAre("a.txt", "b.txt", "-c.txt"));
  EXPECT_TRUE(plan.dryRun);
  EXPECT_EQ(request.text, u"");
}

TEST(Request, KeepsTextsToTheCharacter) {
  const engine::Request request =
      planned({"insert", "-b", "-x \"[a]\"", "-e", "caf\xC3\xA9\r\nb\nc", "-t", " \xF0\x9F\x93\x9C", "f"})
          .requests.front();
  EXPECT_EQ(request.begin, u"-x \"[a]\"");
  EXPECT_EQ(request.end, u"caf\u00E9\rb\rc");
  EXPECT_EQ(request.text, u" \U0001F4DC");
}

TEST(Request, SendsABlockWithoutEndingAsItsBeginning) {
  EXPECT_EQ(made("delete -b x f").location, engine::kBeginning);
  EXPECT_EQ(made("delete -b x --on block f").location, engine::kBeginning);
  EXPECT_EQ(made("delete -b x -e y f").location, engine::kSelection);
}

TEST(Request, KnowsEveryColor) {
  const std::pair<const char*, word::WdColorIndex> colors[] = {{"none", word::wdNoHighlight},
                                                               {"green", word::wdGreen},
                                                               {"bright-green", word::wdBrightGreen},
                                                               {"Pink", word::wdPink},
                                                               {"DarkYellow", word::wdDarkYellow},
                                                               {"grey 25", word::wdGray25},
                                                               {"gray-50", word::wdGray50},
                                                               {"turquoise", word::wdTurquoise},
                                                               {"violet", word::wdViolet}};
  for (const auto& [name, color] : colors) {
    EXPECT_EQ(planned({"highlight", "-b", "x", "--color", name, "f"}).requests.front().highlightColour, color)
        << name;
  }
}

TEST(Request, RefusesWithASentenceThatSaysWhatToDo) {
  const std::string longSuffix = "delete -b x f --backup=" + std::string(255, 'y');
  const std::pair<const char*, const char*> refusals[] = {
      {"fnd -b x f", "no command 'fnd'. Did you mean find?"},
      {"frobnicate f", "The commands are find, insert"},
      {"find f", "--begin TEXT (or --begin-file FILE)"},
      {"find -b x", "Name the documents"},
      {"find -b", "--begin needs a value"},
      {"find --bgein x f", "'--bgein'. Did you mean --begin?"},
      {"find --mtach-case f", "Did you mean --match-case?"},
      {"find --no-such-thing f", "'pluvo --help' lists"},
      {"find -b x --in headres f",
       "--in takes main, headers, footers, footnotes, endnotes, comments, boxes, notes or all, several with "
       "commas between, not 'headres'. Did you mean headers?"},
      {"find -b x --in main, f", "--in takes main, headers"},
      {"run --in main f.toml d", "--in has no meaning with run"},
      {"find -x f", "no option '-x'"},
      {"find --json=yes f", "--json takes no value"},
      {"find -b x -b y f", "--begin is given twice"},
      {"find -b x -r --exclude ../y f", "--exclude: the mask '../y' can match nothing: "},
      {"find -b x -r --mask a,/home/y f", "--mask: the mask '/home/y' can match nothing: "},
      {"find -b x -r --exclude y/../ f", "the mask 'y/../' can match nothing: "},
      {"find -b x -r --exclude ./ f", "the mask './' can match nothing: it means the folder"},
      {"find -b x -r --exclude a,,b f", "--exclude has nothing between two commas"},
      {"find -b x -r --mask _ f", "--mask is empty"},
      {"find -b x -r --types doc* f", "--types takes endings of names such as docx"},
      {"find -b x --follow f", "--follow is about links found in folders"},
      {"find -b x --overwrite-report f", "--overwrite-report goes with --report"},
      {"find -b x --mask a* --mask b* f", "one list, with commas"},
      {"find -b x --begin-file y f", "--begin and --begin-file both"},
      {"find -b _ f", "--begin is empty"},
      {"find -b x -e _ f", "--end is empty"},
      {"find -b a\xFFz f", "--begin: byte 2 of the text is not UTF-8"},
      {"find -b \xC0\xAF f", "byte 1 of the text is not UTF-8"},
      {"find -b x\xED\xA0\x80 f", "byte 2 of the text is not UTF-8"},
      {"find --begin-file /nonexistent/x f", "--begin-file: cannot open /nonexistent/x: No such"},
      {"find --begin-file / f", "--begin-file: cannot read /: Is a directory"},
      {"find -b x -i y f", "--inside needs --end"},
      {"find -b x --apart 1 f", "--apart needs --end"},
      {"find -b x --unit word f", "--unit needs --end"},
      {"find -b x -e y --apart 32768 f", "0 to 32767 or same, not '32768'"},
      {"find -b x -e y --apart -1 f", "not '-1'"},
      {"find -b x -e y --apart 1.5 f", "not '1.5'"},
      {"find -b x -e y --apart _ f", "not ''"},
      {"find -b x -e y --apart 3 --unit document f", "--unit document sets no"},
      {"find -b x -e y --unit line f", "--unit is word, sentence, paragraph or document"},
      {"delete -b x --on end f", "--on end needs --end"},
      {"delete -b x -e y --on inside f", "--on inside needs --inside"},
      {"delete -b x --on paragraph f", "--on is block, begin, end or inside"},
      {"insert -b x f", "Say what to insert: --text"},
      {"replace -b x f", "to take it out, use delete"},
      {"delete -b x -t y f", "--text has no meaning with delete; it goes with insert or replace"},
      {"find -b x --confirm f", "--confirm has no meaning with find"},
      {"replace -b x -t y --after f", "--after has no meaning with replace"},
      {"insert -b x -t y --before --after f", "--before and --after exclude"},
      {"highlight -b x --color yelow f", "no highlight colour 'yelow'. Did you mean yellow?"},
      {"delete -b x --backup --output d f", "--backup has nothing to keep"},
      {"delete -b x --backup=/y f", "cannot hold a /"},
      {longSuffix.c_str(), "--backup: no name can be as long"},
      {"delete -b x --output _ f", "--output needs the name of a folder"}};
  for (const auto& [line, says] : refusals) {
    EXPECT_THAT(refusalOf(line), HasSubstr(says)) << line;
  }
}

TEST(Request, TakesEveryValueThatShellsPropose) {
  for (const Option& option : options()) {
    if (option.choices.empty()) continue;
    const std::string command = option.commands == setOf(Command::highlight) ? "highlight" : "find";
    const std::string line = command + " -r -b x -e y -i z d --" + option.name + " ";
    for (const std::string_view choice : option.choices)
      EXPECT_EQ(refusalOf(line + std::string(choice)), "") << option.name << ' ' << choice;
  }
}

}  // namespace
}  // namespace pluvo::cli
