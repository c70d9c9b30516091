#pragma once

#include "dialog/clsProcessFind.h"
#include "engine/observer.h"
#include "found_blocks.h"
#include "work.h"

#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace pluvo::desktop {

/// Watches a pass in the thread that makes it, and ends it where the user wants that. A pass over one
/// document ends at once, one of a run over files where the run wants it. Where an operation is refused, the
/// others mostly are too, and a box tells each refusal. So the user may end the pass there.
class PassWatch final : public engine::PassObserver {
 public:
  explicit PassWatch(Work& work) : work_(work) {}

  void engine(const dialog::clsProcessFind* engine) { engine_ = engine; }
  /// The watcher of the run over files that the passes are made for; none where null.
  void run(engine::PassObserver* run) { run_ = run; }
  /// Whether the last run was one over files.
  bool runsOverFiles() const { return engine_ != nullptr && engine_->MultiFileRun(); }
  /// The request of the pass that began last; the engine must be there.
  const engine::Request& request() const { return engine_->request(); }
  /// The blocks of the last pass over one document, once; nothing after a run over files. No pass is under
  /// way.
  std::optional<std::vector<BlockPlace>> takeBlocks() { return std::exchange(blocks_, std::nullopt); }
  /// The pass has come on, in its own thread.
  std::function<void()> comesOn = [] {};

  // Of the window's thread, while the pass waits.
  /// A pass begins over the active document.
  std::function<void()> begun = [] {};
  /// An operation was refused, which the user has been told; whether the pass goes on all the same. Asked
  /// once a pass.
  std::function<bool()> goesOnAfterRefusal = [] { return true; };
  /// The changes to the active document so far are to be undone: of one that is saved at once, all changes
  /// are made or none.
  std::function<void()> takeBack = [] {};

  void begins() override;
  void enters(std::int32_t story) override;
  Next searching() override { return goesOn(run().searching()); }
  void tooFar() override { run().tooFar(); }
  Next found(const engine::Block& block) override { return goesOn(run().found(block)); }
  Next operated(const engine::Block&, const errors::Fault* refusal) override;
  Next skipped(const engine::Block& block) override;

 private:
  engine::PassObserver& run() { return run_ != nullptr ? *run_ : nobody_; }
  Next goesOn(Next ofRun);
  void keep(const engine::Block& block);

  Work& work_;
  const dialog::clsProcessFind* engine_ = nullptr;
  engine::PassObserver* run_ = nullptr;
  engine::PassObserver nobody_;
  bool refused_ = false;
  std::int32_t story_ = 0;
  std::optional<std::vector<BlockPlace>> blocks_;
};

}  // namespace pluvo::desktop
