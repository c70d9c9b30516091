#include "sandbox.h"

#include <unistd.h>

#include <filesystem>

namespace pluvo::cli {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::Not;
using ::testing::StartsWith;

const std::string kLease = "The Lessor shall pay.\nThe Lessee shall not. The Lessor may.\n";

struct Change {
  std::string arguments;  ///< for a document named d.txt
  std::string before;
  std::string after;  ///< equal: not saved
  int status = 0;
};

TEST(Program, ChangesWhatItIsAskedTo) {
  const std::vector<Change> changes = {
      {"replace -b draft -t final", "A DRAFT, a draft.\n", "A final, a final.\n"},
      {"replace -b draft -t final --match-case", "A DRAFT, a draft.\n", "A DRAFT, a final.\n"},
      {"replace -b art -t x --whole-words", "art party Art\n", "x party x\n"},
      {"replace -b a -t aa", "banana\n", "baanaanaa\n"},
      {"replace -b a -t _", "banana\n", "bnn\n"},
      {"replace -b none -t x", "banana\n", "banana\n", 1},
      {"delete -b [ -e ]", "a [b] c [d\ne] f\n", "a  c  f\n"},
      {"delete -b [ -e ] -i d", "a [b] c [d] f\n", "a [b] c  f\n"},
      {"delete -b [ -e ] -i d --on inside", "a [b] c [ddd] f\n", "a [b] c [dd] f\n"},
      {"delete -b [ -e ] --on begin", "a [b] c\n", "a b] c\n"},
      {"delete -b [ -e ] --on end", "a [b] c\n", "a [b c\n"},
      {"delete -b a -e b", "a\n1\n2\nb\n", "a\n1\n2\nb\n", 1},
      {"delete -b a -e b --apart 2", "a\n1\n2\nb\n", "\n"},
      {"delete -b a -e b --unit document", "a\n1\n2\nb\n", "\n"},
      {"insert -b Lessor -t said", "the Lessor.\n", "the saidLessor.\n"},
      {"insert -b Lessor -t said --extra-space", "the Lessor.\n", "the said Lessor.\n"},
      {"insert -b Lessor -t too --extra-space --after", "the Lessor.\n", "the Lessor too.\n"},
      {"delete -b x|y", "1x\r\ny2\r\n", "12\r\n"},
      {"replace -b || -t |", "1\n\n2\n3\n", "1\n2\n3\n"},
      {"delete -b 1|X -e |3 --whole-words", "1\nY|3\n1\nx 2\n3\n", "1\nY|3\n\n"},
      {"delete -b 1 -e 3 -i |2", "1 2 3\n1\n2 3\n", "1 2 3\n\n"},
      {"insert -b 1 -e 2 -t | --after", "1 2 3\r\n", "1 2\r\n 3\r\n"},
      {"insert -b 1 -e 3 -i 2 -t x --on inside", "1 2 3\n", "1 x2 3\n"},
      {"replace -b same -t same", "same\n", "same\n"},
      {"replace -b caf\xC3\xA9 -t th\xC3\xA9", "un caf\xE9\n", "un th\xE9\n"}};
  for (const Change& each : changes) {
    const Sandbox sandbox;
    sandbox.put("d.txt", each.before);
    const auto inode = sandbox.status("d.txt").st_ino;
    const Result result = sandbox.run(each.arguments + " d.txt");
    const std::string shown = each.arguments + " on " + each.before;
    EXPECT_EQ(result.status, each.status) << shown << result.err;
    EXPECT_EQ(sandbox.get("d.txt"), each.after) << shown;
    EXPECT_EQ(sandbox.status("d.txt").st_ino == inode, each.before == each.after) << shown;
    EXPECT_THAT(sandbox.names(), ElementsAre("d.txt")) << shown;
    EXPECT_EQ(result.err, each.status == 1 ? "pluvo: d.txt: 0 blocks\n" : "") << shown;
  }
}

TEST(Program, ListsBlocksOrThePlaceAskedFor) {
  const Sandbox sandbox;
  sandbox.put("a.txt", "x\n1 2 3\n1 2 4\n3 5\n");
  sandbox.put("b.txt", "nothing\n");
  const std::pair<std::string, std::string> cases[] = {{"", "a.txt:2: 1 2 3\na.txt:3: 1 2 4\u00B63\n"},
                                                       {"--on begin", "a.txt:2: 1\na.txt:3: 1\n"},
                                                       {"--on end", "a.txt:2: 3\na.txt:4: 3\n"},
                                                       {"--on inside -i 4", "a.txt:3: 4\n"}};
  for (const auto& [options, listed] : cases) {
    const Result result = sandbox.run("find -b 1 -e 3 a.txt b.txt " + options);
    EXPECT_EQ(result.out, listed) << options;
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err,
              "pluvo: 2 documents: " + std::string(listed.size() < 20 ? "1 block\n" : "2 blocks\n"));
  }
  EXPECT_THAT(sandbox.run("find -b 3 --json a.txt").out,
              HasSubstr(R"("found":2,"operated":0,"skipped":0,"saved":false,"error":null)"));
}

TEST(Program, ShortensAHugeBlock) {
  const Sandbox sandbox;
  sandbox.put("a.txt", "BEGIN " + std::string(3'000'000, 'x') + " END\n");
  const Result result = sandbox.run("find -b BEGIN -e END a.txt");
  EXPECT_THAT(result.out, StartsWith("a.txt:1: BEGIN xxx"));
  EXPECT_THAT(result.out, HasSubstr("x \u2026 x"));
  EXPECT_LT(result.out.size(), 250U);
}

TEST(Program, ShowsADryRunThatWritesNothingAndSaysWhatItDid) {
  const Sandbox sandbox;
  sandbox.put("a.txt", kLease);
  const auto before = sandbox.status("a.txt");
  const Result result =
      sandbox.run(Words{"replace", "-b", "The Lessor", "-t", "The Owner", "--dry-run", "a.txt"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out,
            "a.txt:1:\n"
            "  - [-The Lessor-] shall pay.\n"
            "  + {+The Owner+} shall pay.\n"
            "a.txt:2:\n"
            "  - The Lessee shall not. [-The Lessor-] may.\n"
            "  + The Lessee shall not. {+The Owner+} may.\n"
            "a.txt: 2 blocks, 2 would be replaced\n");
  EXPECT_EQ(sandbox.get("a.txt"), kLease);
  const auto after = sandbox.status("a.txt");
  EXPECT_EQ(after.st_ino, before.st_ino);
  EXPECT_EQ(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
  EXPECT_THAT(sandbox.names(), ElementsAre("a.txt"));

  EXPECT_EQ(sandbox.run("delete -b may --backup a.txt").out,
            "a.txt: 1 block, 1 deleted; original kept as a.txt.bak\n");
  EXPECT_EQ(sandbox.get("a.txt.bak"), kLease);
  EXPECT_EQ(sandbox.run("delete -b shall -q a.txt").out, "");
}

TEST(Program, PrintsJsonOneObjectALine) {
  const Sandbox sandbox;
  sandbox.put("a.txt", kLease);
  sandbox.put("n\xFF\"\n.txt", "nothing\n");
  const Result result = sandbox.run("replace -b Lessor -t Owner --json a.txt n\xFF\"|.txt gone.txt");
  EXPECT_EQ(result.status, 2);
  const std::size_t third = result.out.find("{\"file\":\"gone.txt\"");
  ASSERT_NE(third, std::string::npos) << result.out;
  EXPECT_EQ(
      result.out.substr(0, third),
      R"({"file":"a.txt","found":2,"operated":2,"skipped":0,"saved":true,"error":null,"encoding":"UTF-8"})"
      "\n"
      R"({"file":"n\udcff\"\u000a.txt","found":0,"operated":0,"skipped":0,"saved":false,"error":null,"encoding":"UTF-8"})"
      "\n");
  EXPECT_THAT(result.out.substr(third), HasSubstr(R"("error":{"code":"io","message":")"));
  EXPECT_THAT(
      result.out,
      HasSubstr(
          "\n"
          R"({"summary":{"files":3,"found":2,"operated":2,"skipped":0,"changed":1,"failed":1,"left_out":0}})"
          "\n"));
}

TEST(Program, ShowsNothingThatATerminalActsOn) {
  const Sandbox sandbox;
  const std::string odd = "\x1B[2J\a\x7F\xC2\x9B\xFF\u202E\u2066\u200F.txt";
  sandbox.put(odd, "a \u202E \x1B]0;b\xC2\x9D c\n");
  sandbox.put(odd + ".toml", "\"" + odd + "\" = 1\n");
  const Words cases[] = {
      {"find", "-b", "a", "-e", "c", odd}, {"replace", "-b", "a", "-e", "c", "-t", odd, "-n", odd},
      {"highlight", "-b", "a", odd},       {"find", "-b", "a", "gone" + odd, "--begin-fle" + odd},
      {"find", "-b", "a", "gone" + odd},   {"find", "-b", "a", "-r", "--exclude", "../" + odd, "."},
      {"run", odd + ".toml", odd},         {odd}};
  for (const Words& words : cases) {
    const Result result = sandbox.run(words);
    for (const char* const control :
         {"\x1B", "\a", "\x7F", "\xC2\x9B", "\xC2\x9D", "\xFF", "\u202E", "\u2066"})
      EXPECT_THAT(result.out + result.err, Not(HasSubstr(control))) << words.front();
  }
  EXPECT_THAT(sandbox.run(Words{"find", "-b", "a", "--json", odd}).out,
              StartsWith(R"({"file":"\u001b[2J\u0007\u007f\u009b\udcff\u202e\u2066\u200f.txt",)"));
}

TEST(Program, GoesOnAfterABadDocument) {
  const Sandbox sandbox;
  sandbox.put("good.txt", "draft\n");
  sandbox.put("linked.txt", "draft\n");
  sandbox.put("locked.txt", "draft\n");
  std::filesystem::create_hard_link(sandbox.path("linked.txt"), sandbox.path("second.txt"));
  ASSERT_EQ(::chmod(sandbox.path("locked.txt").c_str(), 0444), 0);
  ASSERT_EQ(::mkfifo(sandbox.path("pipe").c_str(), 0600), 0);
  std::filesystem::create_directory(sandbox.path("folder"));
  const Result result =
      sandbox.run("replace -b draft -t final gone.txt folder pipe linked.txt locked.txt good.txt");
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(sandbox.get("good.txt"), "final\n");
  EXPECT_EQ(sandbox.get("linked.txt"), "draft\n");
  EXPECT_EQ(sandbox.get("locked.txt"), "draft\n");
  for (const char* said : {"pluvo: gone.txt: io: ", "pluvo: folder: io: ", "pluvo: pipe: io: ",
                           "pluvo: linked.txt: read-only: ", "pluvo: locked.txt: read-only: "}) {
    EXPECT_THAT(result.err, HasSubstr(said));
  }
  EXPECT_EQ(result.out, "good.txt: 1 block, 1 replaced\n");
}

TEST(Program, CountsAsChangedWhatWasSaved) {
  const Sandbox sandbox;
  sandbox.put("a.txt", "y y\n");
  sandbox.put("same.txt", "x x x\n");
  sandbox.put("b.txt", "y\n");
  sandbox.put("out/b.txt", "in the way\n");
  EXPECT_THAT(sandbox.run("replace -b x -t x same.txt").out,
              StartsWith("same.txt: 3 blocks, 0 replaced; no diff"));
  const std::string taken = "replace -b y -t z a.txt b.txt --output out";
  EXPECT_THAT(sandbox.run(taken).err,
              HasSubstr("2 documents: 3 blocks, 2 replaced, 1 document changed, 1 failed"));
  const Result result = sandbox.run("replace -b x -t x --json same.txt a.txt");
  EXPECT_THAT(result.out, HasSubstr(R"("found":3,"operated":3,"skipped":0,"saved":false)"));
  EXPECT_THAT(result.out, HasSubstr(R"("found":3,"operated":0,"skipped":0,"changed":0)"));
  EXPECT_THAT(sandbox.run("replace -b y -t z -n a.txt same.txt").err,
              HasSubstr("2 blocks, 2 would be replaced"));
}

TEST(Program, SaysWhatIsWrongWithAName) {
  const Sandbox sandbox;
  sandbox.put("a.txt", "y\n");
  sandbox.put("b.pdf", "%PDF-1.4");
  const std::string longName(300, 'n');
  const std::pair<Words, const char*> cases[] = {
      {{""}, "pluvo: '': io: The name is empty"},
      {{longName}, ": io: Its path is longer than"},
      {{"a.txt", "--output", "b.pdf/c"}, "cannot make the folder b.pdf/c: a part of its path is a file"},
      {{"b.pdf"}, "b.pdf: unsupported: The file is a PDF and cannot be worked on"},
      {{"a.txt", "--types", "txt"}, "--types is about files found in folders; add --recursive."},
      {{"a.txt", "--follow"}, "--follow is about links found in folders; add --recursive."},
      {{"a.txt", "--run-name", "r", "--slice", "1/1000001"}, "--slice is K/N, the K-th of N parts"},
      {{"a.txt", "--backup=" + std::string(252, 'n')}, "io: A name that would be made for it is longer"}};
  for (const auto& [words, sentence] : cases) {
    const Result result = sandbox.run(Words{"delete", "-b", "y"} + words);
    EXPECT_THAT(result.err, HasSubstr(sentence));
    EXPECT_EQ(result.status, 2) << sentence;
  }
  EXPECT_THAT(sandbox.run("run --help").out, HasSubstr("pluvo run FILE [OPTIONS] DOCUMENT..."));
}

TEST(Program, LeavesADocumentAloneWhereAChangeIsRefused) {
  const Sandbox sandbox;
  sandbox.put("latin.txt", "un caf\xE9, un caf\xE9\n");
  const Result result = sandbox.run("replace -b caf\xC3\xA9 -t \xE2\x98\x95 latin.txt");
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.err, StartsWith("pluvo: latin.txt: encoding: "));
  EXPECT_EQ(sandbox.get("latin.txt"), "un caf\xE9, un caf\xE9\n");

  const Result highlight = sandbox.run("highlight -b un --json latin.txt");
  EXPECT_EQ(highlight.status, 2);
  EXPECT_THAT(highlight.out, HasSubstr(R"("found":1,"operated":0,)"));
  EXPECT_THAT(highlight.out, HasSubstr(R"("code":"unsupported")"));
}

TEST(Program, WorksInTheEncodingOfAText) {
  const Sandbox sandbox;
  const std::string koi8 = "\xE4\xEF\xE7\xEF\xF7\xEF\xF2\n";  // Договор
  const std::string japanese = "\x95\x5C\x83\x5C\x95\x5C\x83\x5C\n";
  const struct {
    std::string options, file, out, saved;
  } cases[] = {{"-b \xD0\x94\xD0\xBE -t \xD0\x96 --encoding koi8-r", koi8,
                R"("error":null,"encoding":"KOI8-R"})", "\xF6\xE7\xEF\xF7\xEF\xF2\n"},
               {"-b \xE3\x82\xBD\xE8\xA1\xA8 -t x --encoding sjis", japanese, R"("encoding":"Shift_JIS")",
                "\x95\x5Cx\x83\x5C\n"},
               {"-b x -t y", "x \xE4\xEF\n", R"("code":"encoding","message":"The encoding of this text)", ""},
               {"-b x -t y --encoding EUC-JP", "x\nx \xE4\n",
                R"("message":"The text is not EUC-JP: line 2 holds)", ""},
               {"-b x -t y", "x", R"("encoding":"UTF-8")", "y"}};
  for (const auto& [options, file, out, saved] : cases) {
    sandbox.put("a.txt", file);
    EXPECT_THAT(sandbox.run("replace --json --report r.csv " + options + " a.txt").out, HasSubstr(out));
    EXPECT_EQ(sandbox.get("a.txt"), saved.empty() ? file : saved) << options;
  }
  EXPECT_THAT(sandbox.get("r.csv"), testing::ContainsRegex("\"document\",\"a.txt\",.*,\"UTF-8\""));
  for (const char* name : {"nonsense", "ISO-2022-JP", "UTF-8//IGNORE", "UTF-16"})
    EXPECT_THAT(sandbox.run(std::string("find -b x a.txt --encoding ") + name).err,
                StartsWith("pluvo: --encoding: "));
}

TEST(Program, AsksBeforeEachChange) {
  if (!Sandbox::hasTerminals()) GTEST_SKIP() << "no terminals here";
  ::unsetenv("TERM");
  const struct {
    std::string keys;
    std::string a, b;    ///< the documents, of which each y is to become z
    std::string counts;  ///< found, operated, skipped in the summary
  } cases[] = {{"y\nn\ny\ny\n", "z y z\n", "z\n", "4 3 1"}, {"y\ns\ny\n", "z y y\n", "z\n", "4 2 2"},
               {"n\na\n", "y z z\n", "z\n", "4 3 1"},       {"Y\nmaybe\n\nq\n", "z y y\n", "y\n", "2 1 0"},
               {"n\nn\nn\nn\n", "y y y\n", "y\n", "4 0 4"}, {"\x04", "y y y\n", "y\n", "1 0 0"}};
  for (const auto& [keys, a, b, counts] : cases) {
    SCOPED_TRACE(keys);
    const Sandbox sandbox;
    sandbox.put("a.txt", "y y y\n");
    sandbox.put("b.txt", "y\n");
    const Result result = sandbox.runAtTerminal(
        wordsOf("replace -b y -t z --confirm --json --report r.html a.txt b.txt"), keys);
    EXPECT_EQ(sandbox.get("a.txt"), a);
    EXPECT_EQ(sandbox.get("b.txt"), b);
    EXPECT_THAT(result.out, HasSubstr(std::string("\"found\":") + counts[0] + ",\"operated\":" + counts[2] +
                                      ",\"skipped\":" + counts[4]));
    EXPECT_EQ(result.status, 0);
    const bool isCutShort = keys.find('q') != std::string::npos || keys == "\x04";
    EXPECT_EQ(result.err.find("Stopped; 2 documents of the run are left") != std::string::npos, isCutShort);
    EXPECT_EQ(result.out.find("\"unfinished\":2}") != std::string::npos, isCutShort);
    EXPECT_EQ(sandbox.get("r.html").find("<dt>Unfinished</dt><dd>2</dd>") != std::string::npos, isCutShort);
    EXPECT_THAT(result.err,
                HasSubstr("a.txt:1: (1 of 2 files)\r\n  [y] y y\r\nReplace it with 'z' [y,n,a,s,q]? "));
  }
}

TEST(Program, ColorsOnlyWhereTheyAreWelcome) {
  if (!Sandbox::hasTerminals()) GTEST_SKIP() << "no terminals here";
  const Sandbox sandbox;
  sandbox.put("a.txt", "x y z\n");
  const Words ask = wordsOf("delete -b y --confirm a.txt");
  ASSERT_EQ(::setenv("TERM", "xterm", 1), 0);
  EXPECT_THAT(sandbox.runAtTerminal(ask, "n\n").err, HasSubstr("x \033[1;31my\033[0m z"));
  EXPECT_THAT(sandbox.run("find -b y a.txt").out, Not(HasSubstr("\033")));
  ASSERT_EQ(::setenv("NO_COLOR", "1", 1), 0);
  EXPECT_THAT(sandbox.runAtTerminal(ask, "n\n").err, HasSubstr("x [y] z"));
  ::unsetenv("NO_COLOR");
  ::unsetenv("TERM");
}

TEST(Program, SuggestsTheWholeDocumentWhereOnlyTheDistanceFailed) {
  if (!Sandbox::hasTerminals()) GTEST_SKIP() << "no terminals here";
  const Sandbox sandbox;
  sandbox.put("a.txt", "a 1\n2\n3\nb\n");
  const std::pair<const char*, bool> cases[] = {{"find -b a -e b a.txt", true},
                                                {"find -b a -e c a.txt", false},
                                                {"find -b 1 -e 2 a.txt", false},
                                                {"find -b a -e b -q a.txt", false},
                                                {"delete -b a -e b -n a.txt", false}};
  for (const auto& [arguments, suggests] : cases) {
    const std::string err = sandbox.runAtTerminal(wordsOf(arguments), "").err;
    EXPECT_EQ(err.find("use --unit document") != std::string::npos, suggests) << arguments << '\n' << err;
    EXPECT_THAT(sandbox.run(arguments).err, Not(HasSubstr("--unit"))) << arguments;
  }
}

TEST(Program, DoesNotAskWhereNothingCouldBeSaved) {
  if (!Sandbox::hasTerminals()) GTEST_SKIP() << "no terminals here";
  const Sandbox sandbox;
  sandbox.put("a.txt", "y\n");
  const Words ask = wordsOf("replace -b y -t z --confirm a.txt");
  EXPECT_THAT(sandbox.run(ask).err, HasSubstr("--confirm needs a terminal"));
  ASSERT_EQ(::chmod(sandbox.path("a.txt").c_str(), 0444), 0);
  const Result result = sandbox.runAtTerminal(ask, "");
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.err, HasSubstr("a.txt: read-only: "));
}

TEST(Program, HelpsAndRefuses) {
  const Sandbox sandbox;
  EXPECT_THAT(
      sandbox.run("--version").out,
      MatchesRegex("pluvo " PLUVO_VERSION
                   "\nBuilt for Linux .* with libdeflate [0-9.]+, nettle [0-9.]+, uchardet [0-9.]+, .*\n"));
  const std::string help = sandbox.run("--help").out;
  for (const char* word : {"find", "insert", "replace", "delete", "highlight", "Examples", "Exit status"})
    EXPECT_THAT(help, HasSubstr(word));
  const Result insert = sandbox.run("insert --help");
  EXPECT_EQ(insert.status, 0);
  EXPECT_EQ(insert.out, sandbox.run("help insert").out);
  EXPECT_THAT(insert.out, HasSubstr("--extra-space"));
  EXPECT_THAT(insert.out, Not(HasSubstr("--color")));
  EXPECT_THAT(sandbox.run("undo --help").out, HasSubstr("undo [RUN] "));
  const Result nothing = sandbox.run("");
  EXPECT_EQ(nothing.status, 2);
  EXPECT_THAT(nothing.err, HasSubstr("pluvo find --begin TEXT"));
  const Result wrong = sandbox.run("find --bgein x f");
  EXPECT_EQ(wrong.status, 2);
  EXPECT_EQ(wrong.err, "pluvo: There is no option '--bgein'. Did you mean --begin?\n");
}

}  // namespace
}  // namespace pluvo::cli
