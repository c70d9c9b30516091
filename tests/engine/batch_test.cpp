#include "engine/desk.h"

#include <gtest/gtest.h>

#include <optional>
#include <utility>

namespace pluvo::engine {
namespace {

using Decision = Observer::Decision;

const Request kHighlighting{.begin = u"A", .operation = kHighlight};

struct Failing : Watch {
  Next found(const Block&) override { throw errors::Fault(4198, u"Command failed"); }
};

TEST(Batches, APassIsOneStepAndEndsOnEveryPath) {
  Desk desk("A1 A2 A3¶");
  std::string& told = desk.application.told;
  desk.pass({.begin = u"none"});
  EXPECT_EQ(std::exchange(told, ""), "[()]");

  Failing failing;
  EXPECT_EQ(Engine(desk.application, failing).pass(kHighlighting).faults, 1);
  EXPECT_EQ(failing.faults, (std::vector<std::string>{"4198 cpf:35"}));
  EXPECT_EQ(std::exchange(told, ""), "[()]");

  desk.pass(kHighlighting);
  EXPECT_EQ(std::exchange(told, ""), "[()]") << "seen as a whole";

  desk.watch.deciding = [&] { told += '?'; };
  desk.watch.decisions = {Decision::operate, Decision::skip, Decision::stop};
  desk.pass({.begin = u"A", .operation = kHighlight, .confirmEach = true});
  EXPECT_EQ(told, "[?<>??]");
}

/// Steps of a pass block by block. m makes and s skips, each after a find; f is a find that finds nothing. e
/// is the end of the pass, i the next one, x the engine's end.
TEST(Batches, BlockByBlockIsOneStepToo) {
  const std::pair<std::string_view, const char*> cases[] = {
      {"msmf", "[<><>]"}, {"sssf", ""}, {"mme", "[<><>]"}, {"mi", "[<>]"}, {"mx", "[<>]"}};
  for (const auto& [steps, told] : cases) {
    SCOPED_TRACE(steps);
    Desk desk("A1 A2 A3¶");
    std::optional<Engine> engine(std::in_place, desk.application, desk.watch);
    engine->InitializeFind(kHighlighting);
    for (const char step : steps) {
      const bool found =
          std::string_view("msf").find(step) != std::string_view::npos && engine->FindNextItem();
      EXPECT_EQ(found, step == 'm' || step == 's');
      if (step == 'm') engine->MakeChanges();
      if (step == 's') engine->SkipChanges();
      if (step == 'e') engine->endPass();
      if (step == 'i') engine->InitializeFind(kHighlighting);
      if (step == 'x') engine.reset();
    }
    EXPECT_EQ(desk.application.told, told);
  }
}

}  // namespace
}  // namespace pluvo::engine
