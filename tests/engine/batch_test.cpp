#include "engine/batching_application.h"
#include "engine/desk.h"

#include <gtest/gtest.h>

#include <string_view>
#include <utility>

namespace pluvo::engine {
namespace {

using Decision = Observer::Decision;

struct Failing : Watch {
  Answer found(const Block&) override { throw errors::Fault(4198, u"Command failed"); }
  Answer searching() override {
    if (searches == 1) throw errors::Fault(4198, u"Command failed");
    return Watch::searching();
  }
};

struct Batches : testing::Test {
  Batches() {
    application.add(sample.document);
    watch.deciding = [this](const Block&) { application.told += '?'; };
  }
  std::string told() { return std::exchange(application.told, ""); }

  const notation::Sample sample{"A1 A2 A3¶"};
  const Request highlight = Asked{.begin = u"A", .operation = kHighlight}.request();
  BatchingApplication application;
  Watch watch;
  Engine engine{application, watch};
};

TEST_F(Batches, APassIsOneStepAndEndsOnEveryPath) {
  engine.pass(Asked{.begin = u"none"}.request());
  EXPECT_EQ(told(), "[()]");

  Failing failing;
  EXPECT_EQ(Engine(application, failing).pass(highlight).faults, 1);
  EXPECT_EQ(failing.faults, (std::vector<std::string>{"4198 cpf:35"}));
  EXPECT_EQ(told(), "[()]");

  engine.pass(highlight);
  EXPECT_EQ(told(), "[()]") << "seen as a whole";

  Request confirmed = highlight;
  confirmed.confirmEach = true;
  watch.decisions = {Decision::operate, Decision::skip, Decision::stop};
  engine.pass(confirmed);
  EXPECT_EQ(told(), "[?<>??]");
}

TEST_F(Batches, BlockByBlockIsOneStepToo) {
  const struct {
    const char* steps;  ///< m make, s skip, each after a find; then f another find, which fails, or e an end
    const char* told;
  } cases[] = {{"msmf", "[<><>]"}, {"sssf", ""}, {"mme", "[<><>]"}};
  for (const auto& [steps, wanted] : cases) {
    SCOPED_TRACE(steps);
    engine.InitializeFind(highlight);
    for (const char step : std::string_view(steps)) {
      if (step == 'e') {
        engine.endPass();
      } else {
        EXPECT_EQ(engine.FindNextItem(), step != 'f');
      }
      if (step == 'm') engine.MakeChanges();
      if (step == 's') engine.SkipChanges();
    }
    EXPECT_EQ(told(), wanted);
  }

  // It also ends where looking for the next block fails, with the next pass, and with the engine.
  enum End { kSearchFails, kNextPass, kEngineGoes };
  for (const End how : {kSearchFails, kNextPass, kEngineGoes}) {
    Failing failing;
    failing.most = 0;
    auto other = std::make_unique<Engine>(application, failing);
    other->InitializeFind(highlight);
    EXPECT_TRUE(other->FindNextItem());
    other->MakeChanges();
    EXPECT_EQ(application.told, "[<>");
    failing.searches = 1;
    if (how == kSearchFails) {
      EXPECT_FALSE(other->FindNextItem());
    } else if (how == kNextPass) {
      other->InitializeFind(highlight);
    } else {
      other.reset();
    }
    EXPECT_EQ(told(), "[<>]") << how;
  }
}

}  // namespace
}  // namespace pluvo::engine
