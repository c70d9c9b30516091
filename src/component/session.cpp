#include "session.h"

#include "errors/fault.h"
#include "forms/machine.h"
#include "forms_win32/boxes.h"
#include "forms_win32/forms.h"
#include "forms_win32/machine.h"
#include "host/clsOpenPLUVO.h"
#include "host/tips.h"
#include "module.h"
#include "word/faults.h"
#include "word_com/application.h"
#include "word_window.h"

#include <windows.h>

#include <memory>
#include <string>

namespace pluvo::component {

namespace {

/// The dialog and what it works with.
class Session {
 public:
  Session() {
    forms_.owner = wordWindow;
    boxes_.owner = wordWindow;
    // Texts are copied from the documents behind them.
    forms_.leavesOthersUsable(u"frmFAR");
    forms_.leavesOthersUsable(u"frmProcessing");
  }

  void open() {
    if (GetCurrentThreadId() != thread_)
      throw errors::Fault(word::kNotAvailable, u"PLUVO is in use on another thread of this program.");
    if (opens_) return;
    opens_ = true;
    const std::unique_ptr<bool, void (*)(bool*)> closed(&opens_, [](bool* opens) { *opens = false; });
    way_.OpenPLUVO();
  }

 private:
  static std::u16string folder() {
    const std::wstring folder = moduleFolder();
    return {folder.begin(), folder.end()};
  }

  Alive alive_;
  DWORD thread_ = GetCurrentThreadId();
  bool opens_ = false;

  forms_win32::Win32MessageBoxes boxes_{u"P.L.U.V.O."};
  forms_win32::Win32Forms forms_{boxes_};
  forms_win32::Win32InputBoxes inputs_{forms_};
  forms_win32::Win32Yielding yielding_{forms_};
  forms_win32::Win32Launcher launcher_;
  std::unique_ptr<forms::Clock> clock_ = forms::machineClock();
  std::unique_ptr<host::RandomSource> random_ = host::machineRandomSource();
  host::clsOpenPLUVO way_{host::Surroundings{.application = word_com::connectToWord,
                                             .forms = forms_,
                                             .boxes = boxes_,
                                             .inputs = inputs_,
                                             .clock = *clock_,
                                             .yielding = yielding_,
                                             .launcher = launcher_,
                                             .random = *random_,
                                             .componentFolder = folder()}};
};

/// Never taken down with the process: by then Word's objects and windows have gone.
Session* session = nullptr;

}  // namespace

void openDialog() {
  const bool isNew = session == nullptr;
  if (isNew) session = new Session;
  try {
    session->open();
  } catch (...) {
    if (isNew) {
      delete session;
      session = nullptr;
    }
    throw;
  }
  if (isNew) stayLoaded();
}

}  // namespace pluvo::component
