#include "engine/frmProcessing.h"

#include "errors/context.h"

namespace pluvo::engine {

frmProcessing::frmProcessing(clsProcessFind& engine)
    : Form(engine.forms(), u"frmProcessing", u"Confirm Operation"), engine_(engine) {
  cmdPerform.Default(true);
  add(cmdPerform);
  add(cmdSkip);
  cmdPerform.Click.handledBy([this] { cmdPerform_Click(); });
  cmdSkip.Click.handledBy([this] { cmdSkip_Click(); });
  Closed.handledBy([this] { engine_.endPass(); });
}

void frmProcessing::SingleProcess() {
  errors::guarded(engine_.context(), u"fproc:02", [&] {
    multi_ = false;
    engine_.InitializeFind();
    showNextBlock();
  });
}

void frmProcessing::MultiProcess(const std::vector<std::u16string>& files) {
  errors::guarded(engine_.context(), u"fproc:01", [&] {
    multi_ = true;
    Visible(false);
    files_ = files;
    index_ = 0;
    engine_.CancelOperation(false);
    if (!startNextFile()) return;
    if (engine_.FindNextItem()) {
      awaitDecision();
    } else {
      finish();
    }
  });
}

void frmProcessing::cmdPerform_Click() {
  errors::guarded(engine_.context(), u"fproc:04", [&] {
    engine_.MakeChanges();
    showNextBlock();
  });
}

void frmProcessing::cmdSkip_Click() {
  errors::guarded(engine_.context(), u"fproc:05", [&] {
    engine_.SkipChanges();
    showNextBlock();
  });
}

void frmProcessing::showNextBlock() {
  Visible(false);
  if (engine_.FindNextItem()) {
    awaitDecision();
  } else {
    finish();
  }
}

void frmProcessing::awaitDecision() {
  try {
    Visible(true);
  } catch (...) {
    // Without a window nobody can decide about the block, nor close the form.
    engine_.endPass();
    Finished.raise();
    throw;
  }
}

void frmProcessing::finish() {
  errors::guarded(engine_.context(), u"fproc:03", [&] {
    engine_.ChangesSummary();
    while (multi_) {
      engine_.MultiPLUVO_CloseFile();
      if (engine_.CancelOperation()) break;
      ++index_;
      if (!startNextFile()) break;
      if (engine_.FindNextItem()) return awaitDecision();
      engine_.context().locationTag = u"fproc:03";
      engine_.ChangesSummary();
    }
    Hide();
  });
  if (!Visible()) Finished.raise();
}

bool frmProcessing::startNextFile() {
  if (!engine_.MultiPLUVO_OpenNextFile(files_, index_)) return false;
  engine_.InitializeFind();
  return true;
}

}  // namespace pluvo::engine
