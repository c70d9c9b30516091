#include "session.h"

#include "base/at_end.h"
#include "boxes_over_edits.h"
#include "dialog/clsOpenPLUVO.h"
#include "dialog/frmProcessing.h"
#include "dialog/tips.h"
#include "errors/fault.h"
#include "forms/machine.h"
#include "forms_win32/boxes.h"
#include "forms_win32/forms.h"
#include "forms_win32/machine.h"
#include "module.h"
#include "multifile/file_driver.h"
#include "settings.h"
#include "word/faults.h"
#include "word_com/application.h"
#include "word_window.h"

#include <windows.h>
#include <wrl/client.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace pluvo::component {

namespace {

using Microsoft::WRL::ComPtr;

/// The object that Word gave the add-in, on Word's thread; null while it is not connected.
ComPtr<IDispatch>& givenWord() {
  static auto* const given = new ComPtr<IDispatch>;
  return *given;
}

/// The dialog and the objects it works with.
class Session {
 public:
  Session() {
    forms_.owner = wordWindow;
    forms_.isOwner = isWordWindow;
    systemBoxes_.owner = wordWindow;
    // Texts are copied from the documents behind them.
    forms_.leavesOthersUsable(dialog::frmFAR::kName);
    forms_.leavesOthersUsable(dialog::frmProcessing::kName);
    forms_.programEnds = endDialog;
  }

  void open() {
    if (opens_ || way_.isShown()) return forms_.bringForward(dialog::frmFAR::kName);
    opens_ = true;
    const base::AtEnd closed([this] { opens_ = false; });
    if (manner_.careful && (givenWord() || wordWindow() != nullptr)) {
      way_.show();
    } else {
      way_.OpenPLUVO();
    }
    // There are windows that call this code.
    if (!std::exchange(wasUp_, true)) stayLoaded();
  }
  bool isOfThisThread() const { return GetCurrentThreadId() == thread_; }
  /// Whether the dialog is up, or was.
  bool isUp() const { return opens_ || wasUp_; }
  /// Whether code of the dialog's is being executed; it may not go then.
  bool isBusy() const { return opens_ || forms_.isBusy(); }

  void end() {
    boxes_.silence();
    way_.wordCloses();
    forms_win32::Win32MessageBoxes::closeAll();
    forms_.closeAll();
    if (const auto word = word_.lock()) word_com::letGoOf(*word);
  }

 private:
  std::shared_ptr<word::Application> connect() {
    std::shared_ptr<word::Application> word =
        givenWord() ? word_com::applicationOf(givenWord().Get(), manner_) : word_com::connectToWord(manner_);
    word_ = word;
    return word;
  }
  std::shared_ptr<dialog::FileStepper> filesOf(const dialog::RunPlace& place) const {
    auto driver = std::make_shared<multifile::FileDriver>(place.folders(), place.makePicker);
    if (manner_.careful)
      driver->keepOriginals(std::make_unique<multifile::Originals>(place.context, place.boxes,
                                                                   place.dataFolder, place.separator));
    return driver;
  }
  static std::u16string folder() {
    const std::wstring folder = moduleFolder();
    return {folder.begin(), folder.end()};
  }

  Alive alive_;
  DWORD thread_ = GetCurrentThreadId();
  bool opens_ = false;
  bool wasUp_ = false;

  word_com::Manner manner_ = mannerOfUser();
  std::weak_ptr<word::Application> word_;
  forms_win32::Win32MessageBoxes systemBoxes_{u"P.L.U.V.O."};
  BoxesOverEdits boxes_{systemBoxes_, [this] { return word_.lock(); }};
  forms_win32::Win32Forms forms_{boxes_};
  forms_win32::Win32InputBoxes inputs_{forms_};
  forms_win32::Win32Yielding yielding_{forms_};
  forms_win32::Win32Launcher launcher_;
  std::unique_ptr<forms::Clock> clock_ = forms::machineClock();
  std::unique_ptr<dialog::RandomSource> random_ = dialog::machineRandomSource();
  dialog::clsOpenPLUVO way_{dialog::DialogServices{
      .application = [this] { return connect(); },
      .forms = forms_,
      .boxes = boxes_,
      .inputs = inputs_,
      .clock = *clock_,
      .yielding = yielding_,
      .launcher = launcher_,
      .random = *random_,
      .componentFolder = folder(),
      .engineMade = [this](dialog::clsProcessFind& engine) { engine.LiftLimitsSetting(manner_.careful); },
      .stepper = [this](const dialog::RunPlace& place) { return filesOf(place); }}};
};

/// The process's one session. Never taken down with the process: by then Word's objects and windows have
/// gone. Two threads may ask for it at once; whichever has it made, has it.
struct Sessions {
  SRWLOCK lock = SRWLOCK_INIT;
  std::shared_ptr<Session> one;
  /// Those that were ended while they were busy, on the thread that all dialogs are on.
  std::vector<std::shared_ptr<Session>> ended;
};

Sessions& sessions() {
  static auto* const kept = new Sessions;
  return *kept;
}

/// Makes the session where there is none.
std::shared_ptr<Session> sharedSession() {
  Sessions& all = sessions();
  AcquireSRWLockExclusive(&all.lock);
  const base::AtEnd released([&] { ReleaseSRWLockExclusive(&all.lock); });
  if (!all.one) all.one = std::make_shared<Session>();
  return all.one;
}

/// The next call starts anew.
void forget(const std::shared_ptr<Session>& session) {
  Sessions& all = sessions();
  AcquireSRWLockExclusive(&all.lock);
  const base::AtEnd released([&] { ReleaseSRWLockExclusive(&all.lock); });
  if (all.one == session) all.one.reset();
}

/// Destroys the ended dialog once its code has returned.
void CALLBACK takeDown(HWND /*window*/, UINT /*message*/, UINT_PTR timer, DWORD /*now*/) {
  auto& ended = sessions().ended;
  std::erase_if(ended, [](const auto& session) { return !session->isBusy(); });
  if (ended.empty()) KillTimer(nullptr, timer);
}

}  // namespace

void connectTo(IDispatch* word) { givenWord() = word; }

void endDialog() {
  constexpr UINT kInAWhile = 50;  // milliseconds
  Sessions& all = sessions();
  AcquireSRWLockShared(&all.lock);
  const std::shared_ptr<Session> session = all.one;
  ReleaseSRWLockShared(&all.lock);
  if (!session || !session->isOfThisThread()) return;
  forget(session);
  session->end();
  if (!session->isBusy()) return;
  all.ended.push_back(session);
  SetTimer(nullptr, 0, kInAWhile, takeDown);
}

void openDialog() {
  const std::shared_ptr<Session> session = sharedSession();
  if (!session->isOfThisThread())
    throw errors::Fault(word::kNotAvailable, u"PLUVO is in use on another thread of this program.");
  try {
    session->open();
  } catch (...) {
    if (!session->isUp()) forget(session);
    throw;
  }
}

}  // namespace pluvo::component
