#include "sandbox.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

namespace pluvo::cli {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

namespace fs = std::filesystem;

const std::string kInsert = "insert -b draft -t ! --after ";

class Slices : public ::testing::Test {
 protected:
  void SetUp() override { make(kDocuments); }

  /// So many that no slice is without, whatever the path of the sandbox.
  void make(int documents) {
    fs::remove_all(sandbox_.at("d"));
    list_.clear();
    for (int i = 0; i < documents; ++i) {
      const std::string name = "d/" + std::to_string(i % 3) + "/" + std::to_string(i) + ".txt";
      sandbox_.put(name, "draft " + std::to_string(i) + "\n");
      list_ += name + "\n";
    }
    sandbox_.put("list", list_);
    before_ = texts("d");
  }

  /// What each document below the folder holds.
  std::map<std::string, std::string> texts(const std::string& folder) const {
    std::map<std::string, std::string> texts;
    for (const auto& entry : fs::recursive_directory_iterator(sandbox_.at(folder)))
      // Without the originals what a killed program left stays.
      if (entry.is_regular_file() && (!mayLeave_ || !entry.path().filename().string().starts_with("~pluvo-")))
        texts[fs::relative(entry.path(), sandbox_.at(folder))] =
            sandbox_.get(fs::relative(entry.path(), sandbox_.at("")));
    return texts;
  }
  std::map<std::string, std::string> changedOnce() const {
    auto texts = before_;
    for (auto& [name, text] : texts) text.insert(5, "!");
    return texts;
  }
  Result slice(int number, int count, const std::string& more = "--run-name r") const {
    return sandbox_.run(kInsert + "-q --files-from list " + more + " --slice " + std::to_string(number) +
                        "/" + std::to_string(count));
  }

  static constexpr int kDocuments = 48;
  Sandbox sandbox_{Sandbox::Disk::memory};
  std::string list_;
  bool mayLeave_ = false;
  std::map<std::string, std::string> before_;
};

TEST_F(Slices, ADocumentIsInOneSliceHoweverItIsListed) {
  fs::create_directory_symlink("d", sandbox_.at("linked"));
  std::string backwards;
  for (std::size_t to = list_.size(); to > 1;) {
    const std::size_t from = list_.rfind('\n', to - 2) + 1;
    backwards += list_.substr(from, to - from);
    to = from;
  }
  std::string linked;
  std::string dotted;
  for (std::size_t at = 0; at < list_.size(); at = list_.find('\n', at) + 1) {
    const std::string name = list_.substr(at, list_.find('\n', at) + 1 - at);
    linked += "linked" + name.substr(1);
    dotted += "./d/../" + name;
  }
  sandbox_.put("backwards", backwards);
  sandbox_.put("linked.list", linked + list_);
  sandbox_.put("dotted", dotted);
  const auto found = [&](const std::string& documents, int number) {
    const std::string out =
        sandbox_.run("find -b draft " + documents + " --slice " + std::to_string(number) + "/4").out;
    std::set<std::string> numbers;
    for (std::size_t at = 0; (at = out.find(".txt:", at)) != std::string::npos; ++at)
      numbers.insert(out.substr(out.rfind('/', at), at - out.rfind('/', at)));
    return numbers;
  };
  std::size_t all = 0;
  for (int number = 1; number <= 4; ++number) {
    const auto listed = found("--files-from list", number);
    all += listed.size();
    for (const std::string other : {"backwards", "linked.list", "dotted"})
      EXPECT_EQ(found("--files-from " + other, number), listed) << other;
    EXPECT_EQ(found("-r d", number), listed);
  }
  EXPECT_EQ(all, static_cast<std::size_t>(kDocuments));

  fs::create_symlink("1.txt", sandbox_.at("d/1/link.txt"));
  const Result named = sandbox_.run("find -b draft d/1/link.txt --slice 1/1");
  EXPECT_EQ(named.status, 2);
  EXPECT_THAT(named.err, HasSubstr("It is a link"));
}

#ifdef PLUVO_SIGNAL_AT_CALL
struct Way {
  std::string options;
  std::string folder;  ///< of the changed documents
  bool undone;
};

TEST_F(Slices, OneThatIsKilledGoesOnAndDoesNothingTwice) {
  make(12);
  const std::string otherDisk =
      fs::temp_directory_path() / ("pluvo-test-journal-" + std::to_string(::getpid()));
  for (const Way& way : {Way{"", "d", true}, Way{"--journal-dir " + otherDisk, "d", true},
                         Way{"--no-journal", "d", false}, Way{"--output out", "out/d", false}}) {
    const std::string journal = way.options.starts_with("--journal") ? " " + way.options : "";
    mayLeave_ = !way.undone;
    int partly = 0;
    // Each step ends at other calls of a document's; the last one is over before its signal.
    for (int call = 1, status = 0; status != 0 || call == 1; call += 5) {
      const Words words = wordsOf(kInsert + "-q --files-from list --run-name r --jobs 2 " + way.options);
      status = sandbox_.runSignalled(words, SIGKILL, call).status;
      const bool began = way.folder == "d" || fs::exists(sandbox_.at("out"));
      if (status != 0 && began && texts("d") != before_) ++partly;
      const Result again = sandbox_.run(words);
      ASSERT_EQ(again.status, 0) << way.options << call << again.err;
      ASSERT_EQ(texts(way.folder), changedOnce()) << way.options << call;
      const Result report = sandbox_.run("report r --files-from list" + journal);
      ASSERT_EQ(report.status, 0) << way.options << call << report.out;
      ASSERT_THAT(report.out, HasSubstr("12 documents: 12 blocks, 12 operated on, 12 documents changed"));
      if (way.undone) {
        ASSERT_EQ(sandbox_.run("undo -q r" + journal).status, 0);
      } else {
        ASSERT_EQ(sandbox_.run("undo -q --forget r").status, 0);
        fs::remove_all(sandbox_.at("d"));
        for (const auto& [name, text] : before_) sandbox_.put("d/" + name, text);
        fs::remove_all(sandbox_.at("out"));
      }
      ASSERT_EQ(texts("d"), before_) << way.options << call;
    }
    EXPECT_TRUE(partly > 3 || way.folder != "d") << way.options;
  }
  fs::remove_all(otherDisk);
}
#endif

TEST_F(Slices, AreOneRunOfOneRequest) {
  ASSERT_EQ(slice(1, 2).status, 0);
  const auto half = texts("d");
  const std::string named = "--run-name r --files-from list ";
  const std::vector<std::pair<std::string, std::string>> refused = {
      {"insert -b draft -t ? --after --slice 2/2 " + named,
       "is of another request: it was begun as 'pluvo insert"},
      {kInsert + "--keep-going --slice 2/2 " + named, "is of another request"},
      {kInsert + "--dry-run --slice 2/2 " + named, "is of another request"},
      {kInsert + "--slice 2/3 " + named, "is in 2 slices, and this is one of 3. Give --slice K/2"},
      {kInsert + named, "is in 2 slices, and this is one of 1"},
      {kInsert + "--slice 3/2 " + named, "--slice is K/N"},
      {kInsert + "--slice 0/2 " + named, "--slice is K/N"},
      {kInsert + "--slice 2 " + named, "--slice is K/N"},
      {kInsert + "--run-name ../r --files-from list", "--run-name takes letters"},
      {kInsert + "--run-name 20261121-142233-0 --files-from list", "--run-name takes letters"},
      {"undo s", "There is no run \"s\""},
      {"undo --forget", "name it"},
      {"report s", "There is no run \"s\""},
      {"report list", "list does not name the request"},
      {"report", "Name the runs"},
      {"report r --rest list", "list is there already"}};
  for (const auto& [line, sentence] : refused) {
    const Result result = sandbox_.run(line);
    EXPECT_EQ(result.status, 2) << line;
    EXPECT_THAT(result.err, HasSubstr(sentence)) << line;
  }
  EXPECT_EQ(texts("d"), half);

  // The same names lead elsewhere from another folder.
  fs::create_directory(sandbox_.at("elsewhere"));
  sandbox_.put("elsewhere/list", list_);
  const auto name = [](const std::string& folder) {
    return "-q --run-name t --files-from list --slice " + folder;
  };
  ASSERT_EQ(sandbox_.run(kInsert + name("1/2")).status, 0);
  fs::rename(sandbox_.at("d"), sandbox_.at("elsewhere/d"));
  fs::create_directory_symlink("elsewhere/d", sandbox_.at("d"));
  EXPECT_THAT(sandbox_.run(kInsert + name("2/2")).err, HasSubstr("its names lead to other paths"));
}

/// A lock as another program holds it, until it goes.
class Held {
 public:
  Held(const std::string& path, short type) : file_(::open(path.c_str(), O_RDWR | O_CREAT, 0600)) {
    struct flock lock = {};
    lock.l_type = type;
    EXPECT_EQ(::fcntl(file_, F_OFD_SETLK, &lock), 0) << path;
    EXPECT_EQ(::write(file_, "elsewhere 7\n", 12), 12);
  }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  ~Held() { ::close(file_); }

 private:
  int file_;
};

TEST_F(Slices, ThatAreGoingOnAreLeftAlone) {
  ASSERT_EQ(slice(1, 2).status, 0);
  const auto half = texts("d");
  const std::string run = sandbox_.path(sandbox_.beside("state/pluvo/named/r"));
  {
    const Held shared(run + "/lock", F_RDLCK);
    const Held going(run + "/1-of-2/lock", F_WRLCK);
    const std::string who = " is still going on (process 7 on elsewhere); wait for its end";
    EXPECT_THAT(slice(1, 2).err, HasSubstr("Slice 1 of 2 of the run \"r\"" + who));
    EXPECT_THAT(sandbox_.run("undo r").err, HasSubstr("Slice 1 of 2" + who));
    EXPECT_THAT(sandbox_.run("undo --list").out, HasSubstr("2 slices, still going on"));
    EXPECT_THAT(sandbox_.run("report r").out, HasSubstr("slice 1 of 2 going on ("));
    EXPECT_THAT(sandbox_.run("report r --rest rest").err, HasSubstr("Slice 1 of 2 is still going on, so"));
    EXPECT_FALSE(fs::exists(sandbox_.at("rest")));
  }
  EXPECT_EQ(texts("d"), half);
  {
    const Held undo(run + "/lock", F_WRLCK);
    EXPECT_THAT(slice(2, 2).err, HasSubstr("is being taken back; wait for the end of that."));
    EXPECT_THAT(sandbox_.run("undo r").err, HasSubstr("another program takes it back at this moment"));
  }
  EXPECT_EQ(texts("d"), half);
  EXPECT_EQ(slice(2, 2).status, 0);
  EXPECT_EQ(texts("d"), changedOnce());
}

TEST_F(Slices, AreTakenBackTogetherAndOnce) {
  for (const int number : {1, 2, 3}) ASSERT_EQ(slice(number, 3).status, 0);
  EXPECT_EQ(texts("d"), changedOnce());
  EXPECT_THAT(sandbox_.run("undo --list").out,
              HasSubstr("r  48 documents, 422 bytes, 3 slices\n    pluvo insert"));
  sandbox_.put("d/0/0.txt", "changed since\n");
  const Result undo = sandbox_.run("undo");
  EXPECT_EQ(undo.status, 2);
  EXPECT_THAT(undo.err, AllOf(HasSubstr("taking back the run r"),
                              HasSubstr("47 documents put back, 1 left as they are")));
  // What was taken back is worked on again, what was not is left out.
  for (const int number : {1, 2, 3}) EXPECT_EQ(slice(number, 3).status, 0);
  auto expected = changedOnce();
  expected["0/0.txt"] = "changed since\n";
  EXPECT_EQ(texts("d"), expected);
  EXPECT_EQ(sandbox_.run("undo r -q").status, 2);
  EXPECT_EQ(sandbox_.run("undo --forget r -q").status, 0);
  EXPECT_THAT(sandbox_.run("undo r").err, HasSubstr("There is no run \"r\""));
  expected = before_;
  expected["0/0.txt"] = "changed since\n";
  EXPECT_EQ(texts("d"), expected);
}

TEST_F(Slices, MakeOneReport) {
  const std::string first = sandbox_.run("find -b draft --files-from list --slice 1/3").out;
  const std::string bad = first.substr(0, first.find(':'));
  const std::string good = sandbox_.get(bad);
  sandbox_.put(bad, std::string("draft\0\x01\x80", 8));
  sandbox_.put("one", sandbox_.run(kInsert + "--json --run-name r --files-from list --slice 1/3").out);
  sandbox_.put("two", sandbox_.run(kInsert + "--json --run-name r --files-from list --slice 2/3").out);
  // The end of a run that is killed is not there.
  sandbox_.put("torn",
               sandbox_.get("two").substr(0, sandbox_.get("two").rfind("{\"summary")) + "{\"file\":\"d/");
  sandbox_.put("other", sandbox_.run("find -b other --json -r d --slice 1/1").out);

  for (const std::string sources : {"r", "one two", "one torn two", "two one r"}) {
    const Result report = sandbox_.run("report " + sources + " --files-from list --json");
    EXPECT_EQ(report.status, 2) << sources;
    for (const char* const part :
         {"\"number\":3,\"of\":3,\"stage\":\"never begun\"", "\"code\":\"encoding\"", "{\"missing\":\"d/"})
      EXPECT_THAT(report.out, HasSubstr(part)) << sources;
    const std::size_t documents =
        static_cast<std::size_t>(std::count(report.out.begin(), report.out.end(), '\n')) - 4;
    EXPECT_EQ(documents, static_cast<std::size_t>(kDocuments)) << sources << report.out;
  }
  EXPECT_THAT(sandbox_.run("report torn").out, HasSubstr("slice 2 of 3 broken off"));
  EXPECT_THAT(sandbox_.run("report one other").err, HasSubstr("are of different requests"));

  // The rest is worked on under another name, and one report tells of both.
  EXPECT_EQ(sandbox_.run("report r --files-from list --rest rest -q").status, 2);
  sandbox_.put(bad, good);
  EXPECT_EQ(sandbox_.run(kInsert + "-q --files-from rest --run-name s").status, 0);
  EXPECT_EQ(texts("d"), changedOnce());
  const Result both = sandbox_.run("report r s --files-from list");
  EXPECT_THAT(
      both.out,
      HasSubstr("48 documents: 48 blocks, 48 operated on, 48 documents changed, 0 failed, 0 not worked on"));

  for (const char* const kind : {"html", "csv", "json"})
    sandbox_.run("report r s --report all." + std::string(kind));
  EXPECT_THAT(sandbox_.get("all.html"), AllOf(HasSubstr("<h2>Slices</h2>"), HasSubstr(">never begun</td>"),
                                              Not(HasSubstr("Blocks</h2>"))));
  EXPECT_THAT(sandbox_.get("all.csv"), HasSubstr("\"slice\",\"r 3/3\",\"never begun\""));
  EXPECT_THAT(sandbox_.get("all.json"),
              HasSubstr("\"slices\":[\n {\"run\":\"r\",\"number\":1,\"of\":3,\"stage\":\"ended\""));
}

}  // namespace
}  // namespace pluvo::cli
