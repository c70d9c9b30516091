#include "dialog/frmStats.h"

namespace pluvo::dialog {

frmStats::frmStats(forms::FormHost& host) : Form(host, u"frmStats", u"Stats") {
  cmdContinue.Default(true);
  add(lblStats);
  add(cmdContinue);
  add(cmdExit);
  cmdContinue.Click.handledBy([this] { cmdContinue_Click(); });
  cmdExit.Click.handledBy([this] { cmdExit_Click(); });
}

void frmStats::GiveStats(const std::u16string& message, const std::u16string& title, bool& exit) {
  exit_ = false;
  lblStats.Caption(message);
  Caption(title);
  ShowModal();
  exit = exit_;
}

void frmStats::cmdContinue_Click() { Hide(); }

void frmStats::cmdExit_Click() {
  exit_ = true;
  Hide();
}

}  // namespace pluvo::dialog
