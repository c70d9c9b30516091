#pragma once

#include "forms/form.h"

#include <string>

namespace pluvo::dialog {

/// Shows what a pass did, and lets the user end a multi-file run. Made for one showing.
class frmStats final : public forms::Form {
 public:
  explicit frmStats(forms::FormHost& host);

  /// Shows the report until a button is pressed; exit is then whether the user wants the run ended.
  void GiveStats(const std::u16string& message, const std::u16string& title, bool& exit);

  forms::Label lblStats{u"lblStats"};
  forms::CommandButton cmdContinue{u"cmdContinue", u"&Continue"};
  forms::CommandButton cmdExit{u"cmdExit", u"E&xit Operation"};

 private:
  void cmdContinue_Click();
  void cmdExit_Click();

  bool exit_ = false;
};

}  // namespace pluvo::dialog
