#pragma once

#include "dialog/clsProcessFind.h"
#include "engine/observer.h"
#include "working.h"

#include <functional>

namespace pluvo::desktop {

/// Breathes while a pass is at work, and ends it where the user wants that: a pass over one document at once;
/// in a run over files the document at hand is finished first, and at a second cancel taken back. Where an
/// operation is refused, the others mostly are too, and each refusal is told in a box: so the user may end
/// the pass.
class PassWatch final : public engine::PassObserver {
 public:
  explicit PassWatch(Working& working) : working_(working) {}

  void engine(const dialog::clsProcessFind* engine) { engine_ = engine; }
  /// Whether the last run was one over files.
  bool runsOverFiles() const { return engine_ != nullptr && engine_->MultiFileRun(); }
  /// What the pass that began last looks for; the engine must be there.
  const engine::Request& request() const { return engine_->request(); }
  /// A pass begins over the active document.
  std::function<void()> begun = [] {};
  /// An operation was refused, which the user has been told; whether the pass goes on all the same. Asked
  /// once a pass.
  std::function<bool()> goesOnAfterRefusal = [] { return true; };
  /// What was done to the active document so far is to be undone: the run over files is cancelled.
  std::function<void()> takeBack = [] {};

  void begins() override;
  Answer searching() override { return breathe(); }
  Answer found(const engine::Block&) override { return breathe(); }
  Answer operated(const engine::Block&, const errors::Fault* refusal) override;
  Answer skipped(const engine::Block&) override { return breathe(); }

 private:
  Answer breathe();
  Answer stop();

  Working& working_;
  const dialog::clsProcessFind* engine_ = nullptr;
  bool takenBack_ = false;
  bool refused_ = false;
};

}  // namespace pluvo::desktop
