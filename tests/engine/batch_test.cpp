#include "engine/frmProcessing.h"
#include "engine/workplace.h"

#include <gtest/gtest.h>

namespace pluvo::engine {
namespace {

/// Writes down what begins and ends: [ and ] a step to undo, ( and ) edits that nobody sees, < and > edits
/// that the user sees.
class BatchingApplication : public memory::MemoryApplication {
 public:
  std::unique_ptr<word::Batch> beginUndoStep() override { return begun('[', ']'); }
  std::unique_ptr<word::Batch> beginEdits(bool seen) override {
    return seen ? begun('<', '>') : begun('(', ')');
  }
  std::string told;

 private:
  std::unique_ptr<word::Batch> begun(char begin, char end) {
    struct Open : word::Batch {
      Open(std::string& out, char at) : told(out), end(at) {}
      ~Open() override { told += end; }
      std::string& told;
      char end;
    };
    told += begin;
    return std::make_unique<Open>(told, end);
  }
};

struct Failing : PassObserver {
  Answer found(const Block&) override { throw errors::Fault(4198, u"Command failed"); }
};

struct BatchedPass : testing::Test {
  BatchedPass() {
    application->add(sample.document);
    work.boxes.beforeAnswer = [this] { application->told += '?'; };
    work.engine.QuiteModeSetting(true);
  }
  const notation::Sample sample{"A1 A2 A3¶"};
  std::shared_ptr<BatchingApplication> application = std::make_shared<BatchingApplication>();
  Workplace work{application};
};

TEST_F(BatchedPass, IsOneStepAndEndsOnEveryPath) {
  work.pass({.begin = u"none"});
  EXPECT_EQ(std::exchange(application->told, ""), "[()]");

  Failing failing;
  work.engine.observer(&failing);
  work.pass({.begin = u"A"});
  EXPECT_EQ(work.reports, (std::vector<std::string>{"4198 cpf:35"}));
  EXPECT_EQ(std::exchange(application->told, ""), "[()]");
  work.engine.observer(nullptr);

  work.pass({.begin = u"A", .operation = kHighlight});
  EXPECT_EQ(std::exchange(application->told, ""), "[()]") << "seen as a whole";

  work.boxes.answers = {forms::Answer::yes, forms::Answer::no, forms::Answer::cancel};
  work.pass({.begin = u"A", .operation = kHighlight, .confirm = true});
  EXPECT_EQ(application->told, "[?<>??]");
}

TEST_F(BatchedPass, BlockByBlockIsOneStepToo) {
  struct Case {
    const char* what;
    std::vector<const char16_t*> pressed;
    bool closes;
    std::string told;
  };
  const Case cases[] = {
      {"finished", {u"cmdPerform", u"cmdSkip", u"cmdPerform"}, false, "[<><>]"},
      {"nothing done", {u"cmdSkip", u"cmdSkip", u"cmdSkip"}, false, ""},
      {"the window is closed", {u"cmdPerform", u"cmdPerform"}, true, "[<><>]"},
  };
  frmProcessing form(work.engine);
  for (const Case& each : cases) {
    SCOPED_TRACE(each.what);
    work.ask({.begin = u"A", .operation = kHighlight, .confirm = true});
    form.SingleProcess();
    for (const char16_t* button : each.pressed) forms::press(form, button);
    if (each.closes) form.close();
    EXPECT_FALSE(form.Visible());
    EXPECT_EQ(std::exchange(application->told, ""), each.told);
  }

  // Without another call the pass has ended where looking for the next block fails, or its window.
  form.SingleProcess();
  struct FailingSearch : PassObserver {
    Answer searching() override { throw errors::Fault(4198, u"Command failed"); }
  } failing;
  work.engine.observer(&failing);
  forms::press(form, u"cmdPerform");
  EXPECT_EQ(std::exchange(application->told, ""), "[<>]");
  work.engine.observer(nullptr);

  form.SingleProcess();
  work.forms.changes = [](forms::Form& each) {
    if (each.Visible()) throw errors::Fault(7, u"Out of windows");
  };
  bool finished = false;
  form.Finished.handledBy([&] { finished = true; });
  forms::press(form, u"cmdPerform");
  EXPECT_EQ(application->told, "[<>]");
  EXPECT_TRUE(finished && !form.Visible());
  EXPECT_TRUE(work.reports.back().starts_with("7 "));
  work.forms.changes = {};

  // Nor does it outlive the next one, or the engine.
  application->told.clear();
  form.SingleProcess();
  forms::press(form, u"cmdPerform");
  work.engine.InitializeFind();
  EXPECT_EQ(application->told, "[<>]");
}

}  // namespace
}  // namespace pluvo::engine
