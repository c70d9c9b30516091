#include "engine/workplace.h"

#include <gtest/gtest.h>

namespace pluvo::engine {
namespace {

/// Knows whether a batch is open, and which there were: seen by the user or not.
class BatchingApplication : public memory::MemoryApplication {
 public:
  std::unique_ptr<word::Batch> beginBatch(bool seen) override {
    struct Open : word::Batch {
      explicit Open(int& count) : open(++count) {}
      ~Open() override { --open; }
      int& open;
    };
    begun.push_back(seen);
    return std::make_unique<Open>(open);
  }
  int open = 0;
  std::vector<bool> begun;
};

struct Failing : PassObserver {
  Answer found(const Block&) override { throw errors::Fault(4198, u"Command failed"); }
};

TEST(Batch, IsAPassAndEndsWithItOnEveryPath) {
  const notation::Sample sample("A1 A2¶");
  const auto application = std::make_shared<BatchingApplication>();
  application->add(sample.document);
  Workplace work(application);
  work.boxes.beforeAnswer = [&] {
    work.context.runSummary += application->open == 0 ? u" (ended)" : u" (open)";
  };

  work.engine.QuiteModeSetting(false);
  work.pass({.begin = u"none"});
  EXPECT_TRUE(work.lastSummary().ends_with("0 (ended)")) << work.lastSummary();
  work.engine.QuiteModeSetting(true);

  Failing failing;
  work.engine.observer(&failing);
  work.pass({.begin = u"A"});
  EXPECT_EQ(work.reports.all, (std::vector<std::string>{"4198 cpf:35"}));
  EXPECT_EQ(application->open, 0);
  work.engine.observer(nullptr);

  work.boxes.answers = {forms::Answer::yes, forms::Answer::cancel};
  work.pass({.begin = u"A", .operation = kDelete, .confirm = true});
  EXPECT_TRUE(work.context.runSummary.ends_with(u" (open) (open)\r\n   1"));
  EXPECT_EQ(application->open, 0);
  EXPECT_EQ(application->begun, (std::vector<bool>{false, false, true}));
}

}  // namespace
}  // namespace pluvo::engine
