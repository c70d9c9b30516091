#include "runs/run.h"

#include "formats/docx/document_builder.h"
#include "formats/docx/encrypted.h"
#include "runs/kept.h"
#include "runs/past_runs.h"
#include "runs/written_request.h"
#include "storage/files/failing_file_system.h"
#include "storage/files/scratch.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <functional>

namespace pluvo::runs {
namespace {

using Reply = Answer::Reply;

/// Answers as it is told to, and keeps what it hears.
class ScriptedFace final : public Face {
 public:
  bool answers(Question) const override { return answering != nullptr; }
  Answer answer(const Asked& asked) override {
    asked_.push_back(asked.question);
    return answering(asked);
  }
  Cancelled cancelled() override { return cancelling ? cancelling() : Cancelled::no; }
  void document(const Outcome& outcome) override { outcomes.push_back(outcome); }
  std::string sentenceFor(Trouble trouble) const override {
    return trouble == Trouble::notOpened ? "Not opened." : "Trouble.";
  }

  std::function<Answer(const Asked&)> answering;
  std::function<Cancelled()> cancelling;
  std::vector<Question> asked_;
  std::vector<Outcome> outcomes;
};

class Runs : public ::testing::Test {
 protected:
  void SetUp() override { ::setenv("XDG_STATE_HOME", state_.path("").c_str(), 1); }

  Plan planFor(const std::vector<std::string>& names) const {
    WrittenRequest words;
    words.begin = "draft";
    words.text = "final";
    Plan plan;
    plan.requests = {requestFrom(engine::kReplace, words)};
    for (const std::string& name : names) plan.selection.paths.push_back(folder_.path(name));
    return plan;
  }
  Ended made(const Plan& plan) { return run(plan, face_, files::machineFileSystem()); }

  files::Scratch folder_;
  files::Scratch state_;
  ScriptedFace face_;
};

TEST_F(Runs, AskAboutADocumentWhatOnlyAPersonKnows) {
  const std::string locked = docx::fileOf(
      "draft", docx::settingsOf("<w:documentProtection w:edit=\"readOnly\" w:enforcement=\"1\"/>"));
  const std::string other = folder_.path("other.txt");
  const struct {
    const char* name;
    Question question;
    std::optional<errors::Problem> refused;  ///< where the answer is no
    std::string changed;                     ///< the file that a yes writes
  } cases[] = {{"~a.txt", Question::temporary, errors::Problem::temporary, "~a.txt"},
               {"kept.txt", Question::readOnly, errors::Problem::readOnly, "other.txt"},
               {"locked.docx", Question::password, errors::Problem::protection, "locked.docx"}};
  for (const auto& [name, question, refused, changed] : cases) {
    folder_.put(name, question == Question::password ? locked : "draft\n");
    if (question == Question::readOnly) ::chmod(folder_.path(name).c_str(), 0444);
    for (const Reply reply : {Reply::no, Reply::yes}) {
      face_ = {};
      face_.answering = [&, q = question](const Asked& asked) {
        EXPECT_TRUE(asked.question == q || asked.question == Question::saveAs);
        Answer answer{reply};
        answer.path = other;
        return answer;
      };
      const Ended ended = made(planFor({name}));
      ASSERT_EQ(face_.outcomes.size(), 1U);
      const Outcome& outcome = face_.outcomes.front();
      EXPECT_EQ(face_.asked_.front(), question) << name;
      if (reply == Reply::no) {
        ASSERT_TRUE(outcome.failure) << name;
        EXPECT_EQ(outcome.failure->problem, refused) << name;
      } else {
        EXPECT_FALSE(outcome.failure) << name << outcome.failure->message;
        EXPECT_TRUE(outcome.saved) << name;
        EXPECT_NE(folder_.get(changed).find(question == Question::password ? "PK" : "final"),
                  std::string::npos);
      }
    }
  }
}

TEST_F(Runs, OpenADocumentByPasswordsThatTheyHaveOrAskFor) {
  const std::string locked = docx::encrypted(
      docx::fileOf("draft", docx::settingsOf("<w:documentProtection w:edit=\"readOnly\" w:enforcement=\"1\" "
                                             "w:hashValue=\"c2VjcmV0\"/>")));
  const std::string file = docx::encrypted(docx::fileOf("draft"));
  const std::u16string right(encryption::kVectorPassword);
  const struct {
    const std::string& file;
    std::vector<std::u16string> given, answered;
    std::vector<Question> asked;
    std::string refused;
  } cases[] = {
      {file, {u"a", right}, {}, {}, ""},
      {file, {u"a"}, {u"b", right}, {2, Question::openPassword}, ""},
      {file, {}, {right}, {Question::openPassword}, ""},
      {file, {}, {}, {Question::openPassword}, "The document is encrypted with a password."},
      {file, {u"a"}, {}, {Question::openPassword}, "Not opened."},
      {file, {}, {u"b"}, {2, Question::openPassword}, "Not opened."},
      {locked, {right}, {u"b"}, {2, Question::password}, "Trouble."},
  };
  for (const auto& [bytes, given, answered, questions, refused] : cases) {
    folder_.put("a.docx", bytes);
    face_ = {};
    face_.answering = [&, answers = &answered](const Asked& asked) {
      if (asked.tries == answers->size()) return Answer{};
      return Answer{Reply::yes, base::SecretText(std::u16string((*answers)[asked.tries]))};
    };
    Plan plan = planFor({"a.docx"});
    plan.report = state_.path("report.json");
    plan.overwriteReport = true;
    plan.reportsEncrypted = !answered.empty();
    for (const std::u16string& each : given) plan.passwords.emplace_back(std::u16string(each));
    made(plan);
    EXPECT_EQ(face_.asked_, questions);
    const auto& failure = face_.outcomes.at(0).failure;
    EXPECT_THAT(failure ? failure->message : "", ::testing::StartsWith(refused));
    EXPECT_EQ(failure.has_value(), !refused.empty());
    EXPECT_EQ(folder_.get("a.docx") == bytes, failure.has_value());
    EXPECT_EQ(state_.get("report.json").find("\"before\"") != std::string::npos,
              !failure && plan.reportsEncrypted);
    if (failure) continue;
    const base::Bytes package = docx::bytesIn(docx::decrypted(folder_.get("a.docx")));
    EXPECT_THAT(docx::part(package, "word/document.xml"), ::testing::HasSubstr("final"));
  }
}

TEST_F(Runs, AskBeforeADocumentIsReplacedThatReservesThat) {
  using Q = Question;
  const std::string reserved = docx::reserved("draft"), recommending = docx::recommendingReading("draft");
  using errors::Problem;
  const struct {
    const std::string& file;
    bool isAsked;
    std::vector<const char16_t*> given, typed;  ///< a password that is typed
    std::vector<Q> yes;                         ///< to these
    std::vector<Q> asked;
    std::optional<Problem> refused;
    bool isElsewhere;  ///< the new version
  } cases[] = {
      {reserved, false, {}, {}, {}, {}, Problem::protection, false},
      {reserved, false, {u"wrong"}, {}, {}, {}, Problem::password, false},
      {reserved, false, {u"wrong", u"right"}, {}, {}, {}, {}, false},
      {reserved, true, {}, {u"wrong", u"right"}, {}, {2, Q::changePassword}, {}, false},
      {reserved,
       true,
       {},
       {u"wrong"},
       {},
       {Q::changePassword, Q::changePassword, Q::readOnly},
       Problem::password,
       false},
      {reserved, true, {}, {}, {}, {Q::changePassword, Q::readOnly}, Problem::protection, false},
      {reserved,
       true,
       {},
       {},
       {Q::readOnly},
       {Q::changePassword, Q::readOnly, Q::saveAs},
       Problem::protection,
       false},
      {reserved,
       true,
       {},
       {},
       {Q::readOnly, Q::saveAs},
       {Q::changePassword, Q::readOnly, Q::saveAs},
       {},
       true},
      {recommending, false, {}, {}, {}, {}, {}, false},
      {recommending, true, {}, {}, {}, {Q::readIt}, {}, false},
      {recommending, true, {}, {}, {Q::readIt}, {Q::readIt, Q::readOnly}, Problem::readOnly, false},
      {recommending,
       true,
       {},
       {},
       {Q::readIt, Q::readOnly, Q::saveAs},
       {Q::readIt, Q::readOnly, Q::saveAs},
       {},
       true},
  };
  const std::string other = folder_.path("other.docx");
  for (const auto& it : cases) {
    SCOPED_TRACE(&it - cases);
    folder_.put("a.docx", it.file);
    std::filesystem::remove(other);
    face_ = {};
    const auto answering = [&](const Asked& asked) {
      if (asked.question == Q::changePassword && asked.tries < it.typed.size())
        return Answer{Reply::yes, base::SecretText(it.typed[asked.tries])};
      return Answer{std::ranges::count(it.yes, asked.question) != 0 ? Reply::yes : Reply::no, {}, other};
    };
    if (it.isAsked) face_.answering = answering;
    Plan plan = planFor({"a.docx"});
    for (const char16_t* each : it.given) plan.passwords.emplace_back(std::u16string(each));
    made(plan);
    EXPECT_EQ(face_.asked_, it.asked);
    const Outcome& outcome = face_.outcomes.at(0);
    EXPECT_EQ(outcome.failure ? std::optional(outcome.failure->problem) : std::nullopt, it.refused);
    EXPECT_EQ(outcome.saved, !it.refused);
    EXPECT_EQ(outcome.recommendsReading, &it.file == &recommending);
    EXPECT_EQ(folder_.get("a.docx") == it.file, it.refused || it.isElsewhere);
    EXPECT_EQ(std::filesystem::exists(other), it.isElsewhere);
  }
}

TEST_F(Runs, EndAfterTheDocumentAtHandOrLeaveItAsItWas) {
  for (const Cancelled how : {Cancelled::afterDocuments, Cancelled::atOnce}) {
    for (const char* const name : {"a.txt", "b.txt", "c.txt"}) folder_.put(name, "draft, draft\n");
    face_ = {};
    Cancelled now = Cancelled::no;
    face_.cancelling = [&] { return now; };
    face_.answering = [&](const Asked& asked) {
      if (asked.number == 2) now = how;  // at the first of its two blocks
      return Answer{Reply::yes};
    };
    Plan plan = planFor({"a.txt", "b.txt", "./c.txt"});
    plan.requests.front().confirmEach = true;
    const Ended ended = made(plan);
    const bool isFinished = how == Cancelled::afterDocuments;
    EXPECT_TRUE(ended.isCancelled);
    EXPECT_EQ(folder_.get("a.txt"), "final, final\n");
    EXPECT_EQ(folder_.get("b.txt"), isFinished ? "final, final\n" : "draft, draft\n");
    EXPECT_EQ(folder_.get("c.txt"), "draft, draft\n");
    ASSERT_TRUE(ended.unfinished);
    EXPECT_EQ(ended.unfinished->documents, isFinished ? 1U : 2U);
    const auto list = lastUnfinished(files::machineFileSystem());
    ASSERT_TRUE(list);
    EXPECT_EQ(list->documents.back(), folder_.path("c.txt"));

    PastRuns past(files::machineFileSystem());
    ASSERT_NE(past.last(), nullptr);
    EXPECT_EQ(past.last()->name, ended.undoName);
    past.takeBack(ended.undoName, [](const TakenBack& taken) { EXPECT_FALSE(taken.failure); });
    EXPECT_EQ(folder_.get("a.txt"), "draft, draft\n");
  }
}

/// The machine's file system, of which the third flush of the journal fails, or that of a folder.
class LosingFileSystem final : public files::FailingFileSystem {
 public:
  explicit LosingFileSystem(std::optional<std::uint64_t> folder) : folder_(folder) {}

  files::Handle openToAppend(const files::Place& place) override {
    return journal_ = FailingFileSystem::openToAppend(place);
  }
  void flush(files::Handle file) override {
    const bool isVictim = folder_ ? status(file).stamp.inode == *folder_ : file == journal_;
    if (isVictim && ++flushes_ == 3) throw std::system_error(EIO, std::generic_category(), "test");
  }
  int flushes() const { return flushes_; }

 private:
  const std::optional<std::uint64_t> folder_;  ///< its inode
  std::atomic<files::Handle> journal_ = -1;
  std::atomic<int> flushes_ = 0;
};

TEST_F(Runs, TellEachDocumentThatTheDiskMayHaveLost) {
  constexpr int kDocuments = 60;
  for (const bool losesJournal : {true, false}) {
    SCOPED_TRACE(losesJournal);
    face_ = {};
    std::vector<std::string> names;
    for (int i = 0; i < kDocuments; ++i)
      folder_.put(names.emplace_back(std::to_string(i) + ".txt"), "a draft\n");
    Plan plan = planFor(names);
    plan.jobs = 2;
    const std::uint64_t documents = files::machineFileSystem().statusAt(folder_.path("")).stamp.inode;
    LosingFileSystem disk(losesJournal ? std::nullopt : std::optional(documents));
    run(plan, face_, disk);
    ASSERT_EQ(face_.outcomes.size(), static_cast<std::size_t>(kDocuments));
    int saved = 0;
    for (const Outcome& outcome : face_.outcomes) {
      saved += outcome.saved ? 1 : 0;
      EXPECT_NE(outcome.saved, outcome.failure.has_value());
      const bool isReplaced = outcome.saved || !losesJournal;
      const std::string name = outcome.path.substr(outcome.path.rfind('/') + 1);
      EXPECT_EQ(folder_.get(name), isReplaced ? "a final\n" : "a draft\n");
    }
    EXPECT_LT(saved, kDocuments);
    EXPECT_GT(saved, 0);
    // A later flush that succeeded would not tell what became of the records before it.
    if (losesJournal) {
      EXPECT_EQ(disk.flushes(), 3);
    }
  }
}

}  // namespace
}  // namespace pluvo::runs
