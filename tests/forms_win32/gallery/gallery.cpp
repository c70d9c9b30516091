// Shows the whole dialog above a window that stands for the word processor, to be looked at:
//
//     forms_win32_gallery [find|filled|highlight|files|options|about|stats|picker|password|confirm|question
//                          |more|report]
#include "host/gallery.h"

#include "forms_win32/boxes.h"
#include "forms_win32/forms.h"
#include "forms_win32/machine.h"
#include "host/tips.h"

#include <string>

namespace {

using namespace pluvo;

class WindowsWord final : public memory::MemoryApplication {
 public:
  std::u16string PathSeparator() override { return u"\\"; }
};

HWND makeWordWindow() {
  return CreateWindowExW(0, L"EDIT",
                         L"Minutes of the board\r\n\r\nThe meeting opened at nine.  BEGIN CONFIDENTIAL The "
                         L"supplier's price rises by 18 per cent. END CONFIDENTIAL",
                         WS_OVERLAPPEDWINDOW | WS_VISIBLE | ES_MULTILINE, 0, 0, 1000, 740, nullptr, nullptr,
                         GetModuleHandleW(nullptr), nullptr);
}

class Shown {
 public:
  explicit Shown(std::string scene) : scene_(std::move(scene)) {
    forms_.owner = [this] { return window_; };
    forms_.leavesOthersUsable(u"frmFAR");
  }

  void run() {
    const auto random = host::machineRandomSource();
    const auto clock = forms::machineClock();
    const host::Surroundings surroundings{[this] { return gallery_.word; },
                                          forms_,
                                          boxes_,
                                          inputs_,
                                          *clock,
                                          yielding_,
                                          launcher_,
                                          *random,
                                          gallery_.path("")};
    host::frmFAR dialog(surroundings);
    dialog_ = &dialog;
    shown_ = this;
    constexpr UINT kSettled = 300;
    SetTimer(nullptr, 0, kSettled, [](HWND, UINT, UINT_PTR timer, DWORD) {
      KillTimer(nullptr, timer);
      shown_->gallery_.scene(shown_->scene_, *shown_->dialog_, shown_->forms_, shown_->boxes_);
    });
    dialog.ShowModal();
  }

 private:
  static inline Shown* shown_ = nullptr;

  std::string scene_;
  HWND window_ = makeWordWindow();
  host::Gallery gallery_{std::make_shared<WindowsWord>()};
  forms_win32::Win32MessageBoxes boxes_{u"Microsoft Word"};
  forms_win32::Win32Forms forms_{boxes_};
  forms_win32::Win32InputBoxes inputs_{forms_};
  forms_win32::Win32Yielding yielding_{forms_};
  forms_win32::Win32Launcher launcher_;
  host::frmFAR* dialog_ = nullptr;
};

}  // namespace

int main(int argc, char** argv) {
  Shown(argc > 1 ? argv[1] : "find").run();
  return 0;
}
