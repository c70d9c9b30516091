#pragma once

#include "interrupt.h"
#include "interviewer.h"
#include "plan.h"
#include "printer.h"
#include "progress.h"
#include "runs/face.h"

#include <memory>
#include <optional>
#include <string>

namespace pluvo::cli {

/// The face of a run of the command line. It prints what became of each document and how far the run is. It
/// asks the user about blocks, and ends the run after an interrupt.
class TerminalFace final : public runs::Face {
 public:
  /// The plan outlives it.
  explicit TerminalFace(const Plan& plan);

  void begins(std::size_t documents) override;
  bool wantsBlocks() const override { return printer_->wantsBlocks(); }
  void block(const std::string& path, const runs::BlockReport& block) override;
  void document(const runs::Outcome& outcome) override;
  void leftOut(const runs::LeftOut& leftOut) override { printer_->leftOut(leftOut); }
  void ends(const runs::Totals& totals) override;

  void warns(const std::string& sentence) override;
  /// For a document as a whole the outcome has the advice.
  bool answers(runs::Question question) const override {
    return plan_.confirm && question == runs::Question::perform;
  }
  runs::Answer answer(const runs::Asked& asked) override;
  runs::Cancelled cancelled() override;
  std::string sentenceFor(runs::Trouble trouble) const override;

 private:
  const Plan& plan_;
  std::unique_ptr<runs::Observer> printer_;
  std::optional<Progress> progress_;
  std::optional<Interviewer> interviewer_;
  std::optional<Interrupt> interrupt_;
};

}  // namespace pluvo::cli
