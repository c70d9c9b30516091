// Shows the whole dialog above a window that stands for the word processor, to be looked at:
//
//     forms_win32_gallery [find|filled|highlight|files|options|about|stats|picker|password|confirm|question
//                          |more|report]
#include "documents/support/notation.h"
#include "errors/context.h"
#include "errors/machine_path.h"
#include "forms_win32/boxes.h"
#include "forms_win32/forms.h"
#include "forms_win32/machine.h"
#include "host/frmFAR.h"
#include "host/tips.h"
#include "memory/application.h"
#include "multifile/frmPassword.h"

#include <filesystem>
#include <fstream>
#include <string>

namespace {

using namespace pluvo;

constexpr const char* kDocument =
    "Minutes of the board¶The meeting opened at nine.  BEGIN CONFIDENTIAL The supplier's price rises by 18 "
    "per cent. END CONFIDENTIAL  The board thanked the team.¶It was agreed to go on.¶";

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

class Gallery {
 public:
  explicit Gallery(std::string scene)
      : scene_(std::move(scene)), folder_(std::filesystem::temp_directory_path() / "pluvo-gallery") {
    std::filesystem::create_directories(folder_ / "templates" / "PLUVO");
    for (const char* name : {"Contracts", "Letters", "Minutes 2024", "Minutes 2025"})
      std::filesystem::create_directories(folder_ / "Documents" / name);
    for (const char* name : {"lease.doc", "offer & acceptance.doc", "agreement.rtf"})
      std::ofstream(folder_ / "Documents" / "Contracts" / name) << name;
    word_->defaultFilePath(word::wdUserTemplatesPath, path("templates"));
    word_->defaultFilePath(word::wdDocumentsPath, path("Documents"));
    word_->add(sample_.document);
    forms_.owner = [this] { return window_; };
    forms_.leavesOthersUsable(u"frmFAR");
  }

  void run() {
    const auto random = host::machineRandomSource();
    const auto clock = forms::machineClock();
    const host::Surroundings surroundings{
        [this] { return word_; }, forms_, boxes_, inputs_, *clock, yielding_, launcher_, *random, path("")};
    host::frmFAR dialog(surroundings);
    dialog_ = &dialog;
    shown_ = this;
    constexpr UINT kSettled = 300;
    SetTimer(nullptr, 0, kSettled, [](HWND, UINT, UINT_PTR timer, DWORD) {
      KillTimer(nullptr, timer);
      shown_->scene();
    });
    dialog.ShowModal();
  }

 private:
  std::u16string path(const char* name) const { return errors::machineText(folder_ / name); }
  void press(const char16_t* name) { dialog_->get<forms::CommandButton>(name).press(); }
  void page(std::size_t number) { dialog_->get<forms::MultiPage>(u"MultiPage1").choose(number); }
  void fill() {
    dialog_->get<forms::TextBox>(u"txtBeginText").type(u"BEGIN CONFIDENTIAL");
    dialog_->get<forms::TextBox>(u"txtEndText").type(u"END CONFIDENTIAL");
    dialog_->get<forms::ComboBox>(u"cboxProcOperation1").enter(u"Replace");
    dialog_->get<forms::TextBox>(u"txtTextToEnter").type(u"[withheld]");
    press(u"cmdViewOperation");
  }
  void scene();

  static inline Gallery* shown_ = nullptr;
  std::string scene_;
  std::filesystem::path folder_;
  HWND window_ = makeWordWindow();
  std::shared_ptr<WindowsWord> word_ = std::make_shared<WindowsWord>();
  notation::Sample sample_{kDocument};
  forms_win32::Win32MessageBoxes boxes_{u"Microsoft Word"};
  forms_win32::Win32Forms forms_{boxes_};
  forms_win32::Win32InputBoxes inputs_{forms_};
  forms_win32::Win32Yielding yielding_{forms_};
  forms_win32::Win32Launcher launcher_;
  host::frmFAR* dialog_ = nullptr;
};

void Gallery::scene() {
  if (scene_ == "filled") fill();
  if (scene_ == "highlight") {
    fill();
    dialog_->get<forms::ComboBox>(u"cboxProcOperation1").enter(u"Highlight");
  }
  if (scene_ == "options") page(2);
  if (scene_ == "about") page(3);
  if (scene_ == "files") {
    page(1);
    dialog_->get<forms::TextBox>(u"txtFilePath").type(path("Documents\\Contracts"));
    press(u"cmdGetPotentialFiles");
    dialog_->get<forms::ListBox>(u"lbxPotentialFiles").select(0);
  }
  if (scene_ == "stats") {
    fill();
    press(u"cmdExecuteFAR");
  }
  if (scene_ == "picker") {
    page(1);
    press(u"cmdBrowse");
  }
  if (scene_ == "password") {
    errors::Context context;
    std::u16string password;
    multifile::frmPassword(context, forms_).RetrievePassword(password, u"Input Password to Unlock Form.");
  }
  if (scene_ == "confirm") {
    fill();
    dialog_->get<forms::CheckBox>(u"chkConfirmEach").tick(true);
    press(u"cmdExecuteFAR");
  }
  if (scene_ == "question")
    boxes_.show(u"Insert Highlighted Data?", forms::Buttons::yesNo, u"Right-Click Paste Selection Operation");
  if (scene_ == "more") dialog_->get<forms::ComboBox>(u"cboxNumberDistanceApart").enter(u"(More...)");
  if (scene_ == "report") {
    dialog_->get<forms::ComboBox>(u"cboxProcOperation1").type(u"");
    press(u"cmdExecuteFAR");
  }
}

}  // namespace

int main(int argc, char** argv) {
  Gallery(argc > 1 ? argv[1] : "find").run();
  return 0;
}
