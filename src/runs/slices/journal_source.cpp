#include "journal/named_runs.h"
#include "runs/sliced.h"
#include "slices/slice_run.h"
#include "slices/source.h"

namespace pluvo::runs {
namespace {

SliceTold::Stage stageOf(journal::SliceState::Stage stage) {
  using Stage = journal::SliceState::Stage;
  switch (stage) {
    case Stage::ended:
      return SliceTold::Stage::ended;
    case Stage::going:
      return SliceTold::Stage::going;
    case Stage::brokenOff:
      return SliceTold::Stage::brokenOff;
    case Stage::neverBegun:
      break;
  }
  return SliceTold::Stage::neverBegun;
}

class JournalSource final : public SliceReport::Source {
 public:
  JournalSource(files::FileSystem& system, const std::string& folder, const std::string& name)
      : system_(system), run_(system, folder, name), request_(requestDigestOf(run_.request().request)) {}

  const std::string& name() const override { return run_.request().run; }
  const std::string& request() const override { return request_; }
  const std::string& command() const override { return run_.request().command; }
  bool isOnceEach() const override { return true; }

  std::vector<SliceTold> read(const Visit& visit) override {
    std::vector<SliceTold> slices;
    for (std::uint32_t number = 1; number <= run_.request().slices; ++number) {
      const journal::SliceState state = run_.slice(number);
      SliceTold& told = slices.emplace_back();
      told.run = name();
      told.number = number;
      told.count = run_.request().slices;
      told.stage = stageOf(state.stage);
      told.attempts = static_cast<std::int64_t>(state.attempts.size());
      for (const journal::Attempt& attempt : state.attempts) {
        if ((", " + told.machines + ", ").find(", " + attempt.machine + ", ") != std::string::npos) continue;
        told.machines += (told.machines.empty() ? "" : ", ") + attempt.machine;
      }
      for (const journal::SliceDocument& each : state.documents)
        visit(told, each.key, each.name, each.outcome.empty() ? std::nullopt : knownOutcome(system_, each));
    }
    return slices;
  }

 private:
  files::FileSystem& system_;
  journal::NamedRun run_;
  std::string request_;
};

}  // namespace

std::unique_ptr<SliceReport::Source> sourceInJournal(files::FileSystem& system, const std::string& folder,
                                                     const std::string& name) {
  return std::make_unique<JournalSource>(system, folder, name);
}

}  // namespace pluvo::runs
