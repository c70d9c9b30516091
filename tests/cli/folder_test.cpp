#include "base/utf.h"
#include "containers/zip/zip_builder.h"
#include "formats/docx/document_builder.h"
#include "formats/docx/encrypted.h"
#include "sandbox.h"
#include "storage/files/as_text.h"

#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <map>

namespace pluvo::cli {
namespace {

using ::testing::AllOf;
using ::testing::AnyOf;
using ::testing::HasSubstr;
using ::testing::Not;

namespace fs = std::filesystem;

const std::string kReplace = "replace -b draft -t final --match-case ";

/// Every file below the folder: bytes, permissions, time of last change.
using State = std::map<std::string, std::tuple<std::string, mode_t, std::int64_t, std::int64_t>>;
State stateOf(const Sandbox& sandbox) {
  State state;
  for (const auto& entry : fs::recursive_directory_iterator(sandbox.path(""))) {
    const std::string name = fs::relative(entry.path(), sandbox.path(""));
    if (!entry.is_regular_file() || name.rfind("~pluvo-", 0) == 0) continue;
    const struct stat status = sandbox.status(name);
    state[name] = {status.st_size > 1'000'000 ? "" : sandbox.get(name), status.st_mode, status.st_mtim.tv_sec,
                   status.st_mtim.tv_nsec};
  }
  return state;
}

Words lines(const std::string& text) {
  Words all;
  for (std::size_t from = 0, to = 0; (to = text.find('\n', from)) != std::string::npos; from = to + 1)
    all.push_back(text.substr(from, to - from));
  return all;
}

TEST(Folder, TakesTheDocumentsAskedFor) {
  const Sandbox sandbox;
  for (const char* const name : {"t/a.txt", "t/B.TXT", "t/old.txt", "t/x.log", "t/sub/c.txt",
                                 "t/sub/deep/d.txt", "t/.hidden/e.txt", "t/archive/f.txt"})
    sandbox.put(name, "draft\n");
  fs::last_write_time(sandbox.path("t/old.txt"), fs::file_time_type::clock::now() - std::chrono::hours(48));
  fs::create_symlink("a.txt", sandbox.path("t/z.txt"));
  fs::create_directory_symlink("..", sandbox.path("t/sub/circle"));
  sandbox.put("u/g.txt", "draft\n");
  fs::create_directory_symlink("../../u", sandbox.path("t/sub/out"));
  fs::create_symlink("../../u/g.txt", sandbox.path("t/sub/g.txt"));
  fs::create_directory_symlink("t/sub/deep", sandbox.path("named"));
  sandbox.put("lines", "t/a.txt\r\n\nt/sub/c.txt\nt/a.txt\n");
  sandbox.put("nulls", std::string("t/sub/c.txt\0t/B.TXT", 19));
  const std::pair<std::string, std::string> cases[] = {
      {"-r t", "t/B.TXT t/a.txt t/old.txt t/archive/f.txt t/sub/c.txt t/sub/deep/d.txt"},
      {"-r named t/sub/g.txt", "named/d.txt t/sub/g.txt"},
      {"-r t/sub --follow",
       "t/sub/c.txt t/sub/g.txt t/sub/circle/B.TXT t/sub/circle/a.txt "
       "t/sub/circle/old.txt t/sub/circle/archive/f.txt t/sub/deep/d.txt"},
      {"-r t/ --levels 0", "t/B.TXT t/a.txt t/old.txt"},
      {"-r t --levels 1 --exclude ARCHIVE,old*", "t/B.TXT t/a.txt t/sub/c.txt"},
      {"-r t --types *.LOG", "t/x.log"},
      {"-r t --mask ?.txt --newer-than 1d --levels 0", "t/B.TXT t/a.txt"},
      {"-r t --mask ?.txt --newer-than 24h --levels 0", "t/B.TXT t/a.txt"},
      {"-r t/sub/deep t/a.txt t --exclude old*,archive", "t/sub/deep/d.txt t/a.txt t/B.TXT t/sub/c.txt"},
      {"--files-from lines", "t/a.txt t/sub/c.txt"},
      {"--files-from nulls -0 t/a.txt", "t/a.txt t/sub/c.txt t/B.TXT"}};
  for (const auto& [arguments, expected] : cases) {
    Words found;
    for (const std::string& line : lines(sandbox.run("find -b draft " + arguments).out))
      found.push_back(line.substr(0, line.find(':')));
    EXPECT_EQ(found, wordsOf(expected)) << arguments;
  }
}

TEST(Folder, MasksAreAboutNamesPathsOrFolders) {
  const Sandbox sandbox;
  for (const char* const name : {"t/a.txt", "t/n.md", "t/README", "t/x.xyz", "t/archive/f.txt",
                                 "t/archive/old/g.txt", "t/sub/archive/h.txt", "t/sub/c.txt"})
    sandbox.put(name, "draft\n");
  const struct {
    const char* option;
    const char* list;
    const char* found;
  } cases[] = {
      {"--exclude", "archive/*", "a.txt sub/c.txt sub/archive/h.txt"},
      {"--exclude", "archive/", "a.txt sub/c.txt"},
      {"--exclude", "./archive", "a.txt sub/c.txt sub/archive/h.txt"},
      {"--exclude", "archive/old", "a.txt archive/f.txt sub/c.txt sub/archive/h.txt"},
      {"--exclude", "./archive//OLD/", "a.txt archive/f.txt sub/c.txt sub/archive/h.txt"},
      {"--exclude", "archive/*.txt", "a.txt archive/old/g.txt sub/c.txt sub/archive/h.txt"},
      {"--exclude", "archive/**", "a.txt sub/c.txt sub/archive/h.txt"},
      {"--exclude", "**/archive/*.txt", "a.txt archive/old/g.txt sub/c.txt"},
      {"--exclude", "*/c.txt,./f.txt,a.txt/", "a.txt archive/f.txt archive/old/g.txt sub/archive/h.txt"},
      {"--exclude", " archive/ ,\ta.txt ", "sub/c.txt"},
      {"--mask", "archive/", "archive/f.txt archive/old/g.txt sub/archive/h.txt"},
      {"--mask", "archive/*, sub/**/h.txt", "archive/f.txt sub/archive/h.txt"},
      {"--mask", "**/*.txt/", ""},
      {"--types", "md, *.xyz", "n.md"},
      {"--types", "*", "README a.txt n.md archive/f.txt archive/old/g.txt sub/c.txt sub/archive/h.txt"},
      {"--types", "xyz,*.*",
       "README a.txt n.md archive/f.txt archive/old/g.txt sub/c.txt sub/archive/h.txt"}};
  for (const auto& [option, list, expected] : cases) {
    Words found;
    for (const std::string& line :
         lines(sandbox.run(Words{"find", "-b", "draft", "-r", "t", option, list}).out))
      found.push_back(line.substr(2, line.find(':') - 2));
    EXPECT_EQ(found, wordsOf(expected)) << option << ' ' << list;
  }
}

TEST(Folder, SaysHowManyItLeftOut) {
  const Sandbox sandbox;
  for (const char* const name : {"t/a.txt", "t/x.jpg", "t/.git/b.txt", "t/sub/c.txt", "t/sub/deep/d.txt"})
    sandbox.put(name, "draft\n");
  sandbox.put("t/._a.txt", std::string("\0\x05\x16\x07\0\2", 6));
  sandbox.put("t/._b.txt", "draft\n");
  fs::create_symlink("a.txt", sandbox.path("t/z.txt"));
  fs::create_directory_symlink(".", sandbox.path("t/z"));
  const std::pair<std::string, std::string> cases[] = {
      {"-r t", "4 documents: 4 blocks, 5 left out (2 links; --follow takes them)"},
      {"-r t --levels 1", "3 documents: 3 blocks, 6 left out (2 links"},
      {"-r t --levels 0 --exclude z*", "2 documents: 2 blocks, 6 left out"},
      {"t/a.txt t/._a.txt t/a.txt", "1 document: 1 block, 2 left out"},
      {"t/._a.txt", "0 documents: 0 blocks, 1 left out"}};
  for (const auto& [arguments, sentence] : cases)
    EXPECT_THAT(sandbox.run("find -b draft " + arguments).err, HasSubstr("pluvo: " + sentence)) << arguments;
  EXPECT_THAT(sandbox.run("find -b draft --json -r t").out, HasSubstr(R"("failed":0,"left_out":5}})"));
}

#ifdef PLUVO_FAILING_FOLDERS
TEST(Folder, TellsOfFoldersThatADiskDoesNotRead) {
  const Sandbox sandbox;
  for (const char* const name : {"t/a.txt", "t/unopened/b.txt", "t/unfinished/c.txt", "t/unfinished/d.txt"})
    sandbox.put(name, "draft\n");
  ASSERT_EQ(::setenv("LD_PRELOAD", PLUVO_FAILING_FOLDERS, 1), 0);
  const Result walk = sandbox.run("find -b draft -r t");
  const Result root = sandbox.run("find -b draft -r t/unopened");
  const Result spared = sandbox.run("find -b draft -r t --exclude un*");
  ::unsetenv("LD_PRELOAD");
  EXPECT_EQ(walk.status, 2);
  EXPECT_THAT(walk.out, AllOf(HasSubstr("t/a.txt:1"), HasSubstr("t/unfinished/")));
  EXPECT_THAT(walk.err,
              AllOf(HasSubstr("t/unopened/: io: The folder cannot be read (Input/output error)"),
                    HasSubstr("t/unfinished/: io: The folder cannot be read to its end (Input/output error)"),
                    HasSubstr(", 2 failed")));
  EXPECT_THAT(root.err, HasSubstr("t/unopened/: io: The folder cannot be read"));
  EXPECT_EQ(root.status, 2);
  EXPECT_EQ(spared.status, 0);
}

TEST(Folder, FollowsNoLinkThatTookADocumentsPlace) {
  const Sandbox sandbox;
  sandbox.put("secret", "draft\n");
  ASSERT_EQ(::setenv("LD_PRELOAD", PLUVO_FAILING_FOLDERS, 1), 0);
  for (const std::string follow : {"", " --follow"}) {
    sandbox.put("t/exchanged/file.txt", "draft\n");
    const Result result = sandbox.run("replace -b draft -t final -r t" + follow);
    EXPECT_EQ(result.status, follow.empty() ? 2 : 0) << result.err;
    EXPECT_EQ(sandbox.get("secret"), follow.empty() ? "draft\n" : "final\n");
    std::filesystem::remove(sandbox.path("t/exchanged/file.txt"));
  }
  ::unsetenv("LD_PRELOAD");
}

TEST(Report, WithoutItsNameKeepsNothingElseFromBeingTold) {
  const Sandbox sandbox;
  sandbox.put("d.txt", "draft\n");
  sandbox.put("unnamed.csv", "");
  ASSERT_EQ(::setenv("LD_PRELOAD", PLUVO_FAILING_FOLDERS, 1), 0);
  const Result result = sandbox.run("replace -b draft -t final d.txt missing.txt --report unnamed.csv");
  ::unsetenv("LD_PRELOAD");
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.out + result.err, AllOf(HasSubstr("1 failed"), HasSubstr("The report ")));
  EXPECT_THAT(sandbox.names(), testing::SizeIs(2));
}
#endif

TEST(Folder, TakesTextsFromFilesAndColorsByName) {
  const Sandbox sandbox;
  sandbox.put("d.docx", docx::fileOf("a draft"));
  sandbox.put("begin",
              "\xEF\xBB\xBF"
              "draft");
  EXPECT_EQ(sandbox.run("highlight --begin-file begin --color green d.docx").status, 0);
  EXPECT_THAT(docx::part(files::bytesOf(sandbox.get("d.docx")), "word/document.xml"),
              HasSubstr("\"darkGreen\""));
}

TEST(Folder, KeepsItsTreeInAnotherFolder) {
  const Sandbox sandbox;
  sandbox.put("t/a.txt", "draft\n");
  sandbox.put("t/b.txt", "else\n");
  sandbox.put("t/sub/a.txt", "draft too\n");
  sandbox.put("list", "t/./sub/a.txt\n/../t/a.txt\n");
  const auto before = stateOf(sandbox);
  for (int i = 0; i < 2; ++i) {  // the second time nothing new is made of what the first has made
    const Result result = sandbox.run(kReplace + "-r . --output out");
    EXPECT_EQ(result.status, i == 0 ? 0 : 2) << result.err;
    EXPECT_EQ(sandbox.get("out/t/a.txt"), "final\n");
    EXPECT_EQ(sandbox.get("out/t/sub/a.txt"), "final too\n");
    EXPECT_FALSE(fs::exists(sandbox.at("out/t/b.txt"))) << "no change, no copy";
    EXPECT_FALSE(fs::exists(sandbox.at("out/out")));
  }
  sandbox.run(kReplace + "--files-from list --output listed");
  EXPECT_EQ(sandbox.get("listed/sub/a.txt"), "final too\n");
  EXPECT_THAT(sandbox.run(kReplace + "--output one t/a.txt t/sub/a.txt").err,
              HasSubstr("pluvo: t/sub/a.txt: io: "))
      << "its name is taken";
  EXPECT_EQ(sandbox.get("one/a.txt"), "final\n");
  for (const char* made : {"out", "listed", "one"}) fs::remove_all(sandbox.at(made));
  EXPECT_EQ(stateOf(sandbox), before);
}

TEST(Folder, PrintsInTheSameOrderWhateverTheJobs) {
  const Sandbox sandbox;
  std::string many;
  for (int i = 0; i < 5000; ++i) many += "a draft of " + std::to_string(i) + "\n";
  for (int i = 0; i < 60; ++i)
    sandbox.put("d" + std::to_string(100 + i) + ".txt", i % 20 == 3 ? many : "draft\n");
  const Result one = sandbox.run("find -b draft -r . -j 1");
  EXPECT_EQ(lines(one.out).size(), 3 * 5000U + 57U);
  EXPECT_EQ(sandbox.run("find -b draft -r . --jobs=7").out, one.out);
}

/// A folder with something of everything.
void fillWithEverything(const Sandbox& sandbox) {
  sandbox.put("good.docx", docx::fileOf("a draft"));
  sandbox.put("sub/good.txt", "a draft\r\n");
  sandbox.put("truncated.docx", docx::fileOf("draft").substr(0, 300));
  sandbox.put("encrypted.docx", zip::build({{{"word/document.xml", "draft", true, false, false, 1}}}).bytes);
  sandbox.put("protected.docx",
              docx::fileOf("draft", docx::settingsOf(
                                        "<w:documentProtection w:edit=\"readOnly\" w:enforcement=\"1\"/>")));
  sandbox.put("signed.docx", docx::fileOf("draft", docx::kSigned));
  sandbox.put("locked.docx", docx::fileOf("draft"));
  sandbox.put("~$locked.docx", "somebody");
  sandbox.put("readonly.txt", "draft\n");
  fs::permissions(sandbox.path("readonly.txt"), fs::perms::owner_read);
  sandbox.put("empty.txt", "");
  sandbox.put("empty.docx", "");
  sandbox.put("foreign.docx", "%PDF-1.7 draft");
  sandbox.put("huge.txt", "draft");
  fs::resize_file(sandbox.path("huge.txt"), std::uintmax_t{3} << 30U);
  for (const char* const name : {" with  spaces .txt", "-n.txt", "line\nfeed.txt", "Приказ.txt", "契約書.txt",
                                 "عقد.txt", "סכם.txt", "not\xFFutf8.txt", "'\"`$(x).txt", "é.txt"})
    sandbox.put(name, "draft\n");
  sandbox.put("picture.jpg", "draft");
}

TEST(Folder, TellsOfEveryKindOfFileAndTakesItAllBack) {
  const Sandbox sandbox;
  fillWithEverything(sandbox);
  const State before = stateOf(sandbox);
  const Result run = sandbox.run(kReplace + "-r . --json --report " + sandbox.beside("r.json"));
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(sandbox.run("find -b x --files-from /dev/null").status, 1);

  const std::map<std::string, std::string> codes = {
      {"./truncated.docx", "damaged"}, {"./encrypted.docx", "password"}, {"./protected.docx", "protected"},
      {"./signed.docx", "signed"},     {"./locked.docx", "locked"},      {"./~$locked.docx", "temporary"},
      {"./readonly.txt", "read-only"}, {"./empty.docx", "damaged"},      {"./foreign.docx", "damaged"},
      {"./huge.txt", "too-large"}};
  int good = 0;
  for (const std::string& line : lines(run.out)) {
    if (line.find("\"summary\"") != std::string::npos) continue;
    const std::string name = line.substr(9, line.find("\",\"found\"") - 9);
    const auto code = codes.find(name);
    if (code != codes.end()) {
      EXPECT_THAT(line, HasSubstr("\"error\":{\"code\":\"" + code->second + "\"")) << name;
    } else if (name != "./empty.txt") {
      EXPECT_THAT(line, HasSubstr("\"saved\":true,\"error\":null"));
      ++good;
    }
  }
  EXPECT_EQ(good, 12);
  EXPECT_THAT(lines(run.out).back(), HasSubstr("\"files\":23,\"found\":14,\"operated\":12"));
  EXPECT_EQ(sandbox.get("line\nfeed.txt"), "final\n");
  EXPECT_EQ(sandbox.get("sub/good.txt"), "a final\r\n");

  const std::string page = sandbox.get(sandbox.beside("r.json"));
  EXPECT_THAT(page, HasSubstr(R"({"file":"./picture.jpg","reason":"kind not asked for"})"));
  EXPECT_THAT(
      page,
      HasSubstr(R"("before":{"lead":"a ","text":"draft","trail":""},"after":{"lead":"a ","text":"final")"));

  EXPECT_THAT(sandbox.run("undo --list").out, HasSubstr("12 documents"));
  EXPECT_EQ(sandbox.run("undo").status, 0);
  EXPECT_TRUE(stateOf(sandbox) == before);
  EXPECT_EQ(sandbox.run("undo").status, 2);
}

TEST(Passwords, LiftProtectionsThatStay) {
  const Sandbox sandbox;
  const auto settings = [](const std::string& attributes) {
    return docx::settingsOf("<w:documentProtection w:edit=\"readOnly\" " + attributes + "/>");
  };
  const std::string kept =
      "w:cryptAlgorithmSid=\"4\" w:cryptSpinCount=\"100000\" w:hash=\"MUHbcmpC9AnlLsd9v3lW0j30y6E=\" "
      "w:salt=\"2Z+i7o/0EZyUNakVeWzU/w==\"";
  sandbox.put("free.docx", docx::fileOf("draft", settings("w:enforcement=\"1\"")));
  sandbox.put("locked.docx", docx::fileOf("draft", settings(kept)));
  sandbox.put("plain.docx", docx::fileOf("draft"));
  sandbox.put("encrypted.docx", zip::build({{{"word/document.xml", "draft", true, false, false, 1}}}).bytes);
  const std::string run = kReplace + "-r . ";

  EXPECT_THAT(sandbox.run(run + "-n").err,
              AllOf(HasSubstr("free.docx: protected: "), HasSubstr("locked.docx: protected: "),
                    HasSubstr("--password-file")));
  sandbox.put("passwords", "guess\r\nexample\n");
  EXPECT_THAT(sandbox.run(run + "-n --password-file passwords").err,
              AllOf(HasSubstr("locked.docx: password: No password"), Not(HasSubstr("free.docx"))));
  sandbox.put("passwords", "guess\r\nExample\r\n");
  const Result done = sandbox.run(run + "--password-file passwords");
  EXPECT_EQ(done.status, 2);
  EXPECT_THAT(done.err,
              AllOf(HasSubstr("encrypted.docx: password: "), HasSubstr("3 documents changed, 1 failed")));
  EXPECT_THAT(sandbox.run("find -b final --password-file /dev/null free.docx").out, HasSubstr("final"));
  EXPECT_THAT(sandbox.run("delete -b final locked.docx").err, HasSubstr("protected: ")) << "still";
  EXPECT_EQ(sandbox.run("find -b final locked.docx").out, "locked.docx:1: final\n")
      << "reading needs no lifting";
  EXPECT_THAT(sandbox.run("find -b draft encrypted.docx").err, HasSubstr("encrypted.docx: password: "));
  EXPECT_EQ(sandbox.run("undo -q").status, 0);
  EXPECT_EQ(sandbox.run(run + "--password-file nowhere").status, 2);

  std::string slow = kept;
  slow.replace(slow.find("100000"), 6, "10000000");
  sandbox.put("locked.docx", docx::fileOf("draft", settings(slow)));
  EXPECT_THAT(sandbox.run("replace -n -b draft -t x --password-file passwords locked.docx").err,
              AllOf(HasSubstr("locked.docx: unsupported: "), HasSubstr("more than 1,000,000 times")));
  const std::string note = "Note: other users can read the passwords in passwords";
  for (const auto& [mode, isNoted] : {std::pair{0600, false}, {0640, true}, {0604, true}}) {
    ::chmod(sandbox.path("passwords").c_str(), static_cast<mode_t>(mode));
    const std::string err = sandbox.run("find -b draft --password-file passwords plain.docx").err;
    EXPECT_EQ(err.find(note) != std::string::npos, isNoted) << err;
  }
}

TEST(Passwords, OpenDocumentsThatStayEncrypted) {
  const Sandbox sandbox;
  const std::string kept =
      "<w:documentProtection w:edit=\"readOnly\" w:cryptAlgorithmSid=\"4\" w:cryptSpinCount=\"100000\" "
      "w:hash=\"MUHbcmpC9AnlLsd9v3lW0j30y6E=\" w:salt=\"2Z+i7o/0EZyUNakVeWzU/w==\"/>";
  const std::string file = docx::encrypted(docx::fileOf("draft", docx::settingsOf(kept)));
  sandbox.put("a.docx", file);
  sandbox.put("passwords", "guess\n" + base::utf8(encryption::kVectorPassword) + "\nExample\n");
  EXPECT_THAT(sandbox.run("find -b draft a.docx").err,
              HasSubstr("a.docx: password: The document is encrypted"));
  EXPECT_THAT(sandbox.run("find -b draft --password-file /dev/null a.docx").err,
              HasSubstr("a.docx: password: No password in the file of --password-file opens it"));
  const Result done = sandbox.run(kReplace + "a.docx --backup --password-file passwords --report " +
                                  sandbox.beside("r.json"));
  EXPECT_EQ(done.status, 0) << done.err;
  const std::string changed = sandbox.get("a.docx");
  EXPECT_THAT(docx::part(docx::bytesIn(docx::decrypted(changed)), "word/document.xml"), HasSubstr("final"));
  EXPECT_EQ(docx::streamOf(changed, "WordDocument"), docx::streamOf(file, "WordDocument"));
  EXPECT_EQ(sandbox.get("a.docx.bak"), file);
  std::vector<fs::directory_entry> written;
  for (const std::string& folder : {sandbox.path(""), sandbox.path(sandbox.beside(""))})
    for (const auto& entry : fs::recursive_directory_iterator(folder)) written.push_back(entry);
  EXPECT_GT(written.size(), 5U) << "the document, its two copies, the report, the journal";
  for (const auto& entry : written) {
    if (!entry.is_regular_file() || entry.path().filename() == "passwords") continue;
    const std::string bytes = sandbox.get(fs::relative(entry.path(), sandbox.path("")));
    EXPECT_EQ(bytes.find("PK\3\4"), std::string::npos) << entry.path() << ": a package in plain";
    EXPECT_EQ(bytes.find("Example"), std::string::npos) << entry.path();
  }
  EXPECT_EQ(sandbox.run("undo -q").status, 0);
  EXPECT_EQ(sandbox.get("a.docx"), file);
}

TEST(Undo, LeavesWhatWasChangedSince) {
  const Sandbox sandbox;
  sandbox.put("a.txt", "draft\n");
  sandbox.put("b.txt", "draft\n");
  sandbox.run(kReplace + "a.txt b.txt");
  sandbox.put("a.txt", "mine\n");
  const Result undo = sandbox.run("undo");
  EXPECT_EQ(undo.status, 2);
  EXPECT_THAT(undo.err, HasSubstr("/a.txt: changed: "));
  EXPECT_EQ(sandbox.get("a.txt"), "mine\n");
  EXPECT_EQ(sandbox.get("b.txt"), "draft\n");
  sandbox.run(kReplace + "b.txt");
  fs::create_hard_link(sandbox.at("b.txt"), sandbox.at("c.txt"));
  EXPECT_THAT(sandbox.run("undo").err,
              AllOf(HasSubstr("Mend that, or ask"), Not(HasSubstr("another folder"))));
  fs::remove(sandbox.at("c.txt"));
  EXPECT_EQ(sandbox.run("undo").status, 0);
  sandbox.run(kReplace + "b.txt --no-journal");
  EXPECT_THAT(lines(sandbox.run("undo --list").out).size(), 2U);

  sandbox.put("a.txt", "draft\n");
  sandbox.run(kReplace + "a.txt");
  sandbox.run("replace -b final -t last a.txt");
  const Words runs = lines(sandbox.run("undo --list").out);
  const auto nameIn = [&](std::size_t line) { return runs.at(line).substr(0, runs.at(line).find(' ')); };
  EXPECT_THAT(sandbox.run("undo " + nameIn(2)).err, HasSubstr(nameIn(4) + " changed the document after"));
  EXPECT_EQ(sandbox.run("undo").status + sandbox.run("undo " + nameIn(2)).status, 0);
  EXPECT_EQ(sandbox.get("a.txt"), "draft\n");

  sandbox.run(kReplace + "a.txt");
  const std::string before = lines(sandbox.run("undo --list").out).at(2);
  sandbox.put("b.txt", "draft\n" + std::string(2042, 'x'));
  sandbox.run(kReplace + "b.txt");
  EXPECT_THAT(sandbox.run("undo --list").out, HasSubstr("  1 document, 2.0 KiB\n"));
  sandbox.put("b.txt", "mine\n");
  EXPECT_THAT(sandbox.run("undo").err,
              HasSubstr("'pluvo undo " + before.substr(0, before.find(' ')) + "': "));
}

/// Sixteen documents to be cut off in.
class Unfinished : public ::testing::Test {
 protected:
  void SetUp() override {
    for (int i = 0; i < 16; ++i) {
      const std::string name = "d" + std::to_string(10 + i);
      if (i % 2 == 0) {
        sandbox_.put(name + ".txt", std::string(20000, 'x') + " draft\n");
      } else {
        sandbox_.put(name + ".docx", docx::fileOf("a draft"));
      }
    }
    before_ = stateOf(sandbox_);
    ASSERT_EQ(sandbox_.run(run_).status, 0);
    after_ = stateOf(sandbox_);
    ASSERT_EQ(sandbox_.run("undo -q").status, 0);
    ASSERT_TRUE(stateOf(sandbox_) == before_);
  }

  bool isWhole(const State& state) const {
    for (const auto& [name, file] : state) {
      const std::string& bytes = std::get<0>(file);
      if (bytes != std::get<0>(before_.at(name)) && bytes != std::get<0>(after_.at(name))) return false;
    }
    return state.size() == before_.size();
  }

  Sandbox sandbox_{Sandbox::Disk::memory};
  Words run_ = wordsOf(kReplace + "-r . -q --jobs 2");
  State before_;
  State after_;
};

#ifdef PLUVO_SIGNAL_AT_CALL
TEST_F(Unfinished, RunsAndUndosThatAreKilledAreTakenBack) {
  int partly = 0;
  // Each step ends at other calls of a document's; the last run is over before its signal.
  for (int call = 1, status = 0; status != 0 || call == 1; call += 3) {
    status = sandbox_.runSignalled(run_, SIGKILL, call).status;
    const State killed = stateOf(sandbox_);
    ASSERT_TRUE(isWhole(killed)) << call;
    if (killed != before_ && status != 0) ++partly;
    if (call % 2 == 0) sandbox_.runSignalled(wordsOf("undo -q"), SIGKILL, call / 2);
    ASSERT_TRUE(isWhole(stateOf(sandbox_))) << call;
    const Result undo = sandbox_.run("undo -q");
    ASSERT_TRUE(stateOf(sandbox_) == before_) << call << undo.err;
  }
  EXPECT_GT(partly, 10);
}

TEST_F(Unfinished, AnInterruptLeavesAListToGoOnWith) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    // A few documents are begun by then, and by no means all.
    const Result result = sandbox_.runSignalled(wordsOf(kReplace + "-r . -j1"), signal, 12);
    ASSERT_TRUE(isWhole(stateOf(sandbox_)));
    EXPECT_EQ(result.status, 2) << signal;
    const std::size_t at = result.err.find("--files-from ");
    ASSERT_NE(at, std::string::npos) << signal << result.err;
    const std::string list = result.err.substr(at + 13, result.err.find('\n', at) - at - 13);
    EXPECT_EQ(sandbox_.run(kReplace + "-0 --files-from " + list).status, 0);
    for (const auto& [name, file] : stateOf(sandbox_))
      EXPECT_EQ(std::get<0>(file), std::get<0>(after_.at(name)));
    sandbox_.run("undo -q");
    sandbox_.run("undo -q");
    ASSERT_TRUE(stateOf(sandbox_) == before_) << signal;
  }
}
#endif

TEST_F(Unfinished, TwoRunsAtOnceHarmNothing) {
  for (int round = 0; round < 5; ++round) {
    const pid_t one = sandbox_.start(run_, "1");
    const pid_t two = sandbox_.start(run_, "2");
    const Result first = sandbox_.wait(one, "1");
    const Result second = sandbox_.wait(two, "2");
    for (const Result& result : {first, second}) {
      for (const std::string& line : lines(result.err))
        EXPECT_THAT(line, AnyOf(HasSubstr(": changed: "), HasSubstr(": locked: "), HasSubstr(": io: ")));
    }
    for (const auto& [name, file] : stateOf(sandbox_))
      EXPECT_EQ(std::get<0>(file), std::get<0>(after_.at(name))) << name << first.err << second.err;
    sandbox_.run("undo -q");
    sandbox_.run("undo -q");
    ASSERT_TRUE(stateOf(sandbox_) == before_) << round << first.err << second.err;
  }
}

TEST(SavedRequests, AreRunInOrderInOneSaving) {
  const Sandbox sandbox;
  sandbox.put("d.txt", "one two\n");
  sandbox.run(Words{"save", "s.toml", "replace", "-b", "one", "-t", "three \"\\\n", "--match-case"});
  sandbox.put("s.toml", "# mine\n" + sandbox.get("s.toml") + "# the end");
  EXPECT_EQ(sandbox.run("save s.toml delete -b three -e two --apart 4").status, 0);
  EXPECT_THAT(sandbox.get("s.toml"), AllOf(HasSubstr("# mine\n"), HasSubstr("# the end\n\n[[request]]\n")));
  const Result run = sandbox.run("run s.toml d.txt --backup");
  EXPECT_EQ(run.out, "d.txt: 2 blocks, 2 changed; original kept as d.txt.bak\n") << run.err;
  EXPECT_EQ(sandbox.get("d.txt"), "\n");
  EXPECT_EQ(sandbox.get("d.txt.bak"), "one two\n");
  sandbox.put("e.txt", "a b\n");
  sandbox.run("save e.toml insert -b a -t 1 --extra-space");
  sandbox.run("save e.toml insert -b b -t 2");
  sandbox.run("run e.toml e.txt");
  EXPECT_EQ(sandbox.get("e.txt"), "1 a 2b\n") << "the extra space is the first request's alone";
}

TEST(SavedRequests, SayWhereTheyAreWrong) {
  const Sandbox sandbox;
  sandbox.put("d.txt", "one\n");
  const std::string find = "[[request]]\ncommand = \"find\"\n";
  const std::pair<std::string, std::string> wrong[] = {
      {find + "begn = \"x\"\n", "line 3: there is no key 'begn' in a request. Did you mean begin?"},
      {"\n[[request]]\ncommand = \"fnd\"\n", "line 3: a request has a command, which is find, insert"},
      {"[[request]]\nbegin = \"x\"\n", "line 1: a request has a command"},
      {find + "begin = \"x\nend\"\n", "line 3: "},
      {find + "begin = \"x\"\ntext = \"y\"\n", "line 4: text has no meaning with find"},
      {find + "begin = \"x\"\nmatch-case = 1\n", "line 4: match-case is true or false"},
      {find + "begin = \"x\"\napart = 2\n", "line 4: --apart needs --end"},
      {find + "begin = \"x\"\n\n[[request]]\ncommand = \"highlight\"\ncolor = \"yelow\"\nbegin = \"x\"\n",
       "line 7: There is no highlight colour 'yelow'. Did you mean yellow?"},
      {find + "begin = \"x\"\n" + find, "line 4: Say what a block begins with"},
      {find + "begin-file = \"d.txt\"\n",
       "line 3: saved requests read no other files, so there is no key 'beg"},
      {find + "begin = \"x\"\npassword-file = \"d.txt\"\n", "line 4: there is no key 'password-file'"},
      {"recursive = true\n", "line 1: 'recursive' stands outside"},
      {"# nothing\n", "has no request"}};
  for (const auto& [file, sentence] : wrong) {
    sandbox.put("s.toml", file);
    const Result result = sandbox.run("run s.toml d.txt");
    EXPECT_EQ(result.status, 2) << file;
    EXPECT_THAT(result.err, HasSubstr(sentence)) << file;
  }
  ASSERT_EQ(::mkfifo(sandbox.path("pipe").c_str(), 0600), 0);
  for (const char* const line : {"run pipe d.txt", "find -b x --files-from pipe",
                                 "find --begin-file pipe d.txt", "find -b x --password-file pipe d.txt"})
    EXPECT_THAT(sandbox.run(line).err, HasSubstr("pipe is a named pipe, not a file")) << line;
  EXPECT_THAT(sandbox.run("find -b x --files-from /dev/zero").err, HasSubstr("is a device, not a file"));
}

TEST(Progress, IsForTerminalsOnly) {
  const Sandbox sandbox;
  for (int i = 0; i < 3; ++i) sandbox.put(std::to_string(i) + ".txt", "draft\n");
  const std::string find = "find -b draft -r . ";
  EXPECT_EQ(sandbox.run(find).err, "pluvo: 3 documents: 3 blocks\n");
  EXPECT_THAT(sandbox.run(find + "--progress always").err, HasSubstr("\r0 of 3 documents, 1 block"));
  EXPECT_THAT(sandbox.run("replace -b draft -t draft -r . --progress always").err,
              HasSubstr("\r1 of 3 documents, 1 block"));
  if (!Sandbox::hasTerminals()) GTEST_SKIP() << "no terminals here";
  EXPECT_THAT(sandbox.runAtTerminal(wordsOf(find), "").err, HasSubstr("  documents               3\r\n"));
  EXPECT_THAT(sandbox.runAtTerminal(wordsOf(find + "--progress=never"), "").err,
              Not(HasSubstr("documents  ")));
}

}  // namespace
}  // namespace pluvo::cli
