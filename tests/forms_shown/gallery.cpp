// Shows the whole dialog over a document in memory and a folder of files, in a state to be looked at:
//
//     forms_qt_gallery | forms_win32_gallery
//     [find|filled|changed|highlight|files|options|about|stats|picker|password
//                                              |confirm|question|more|report] [long]
//
// With `long`, captions are far longer than there is a place for in one line.
#include "dialog/frmFAR.h"
#include "dialog/frmPassword.h"
#include "dialog/tips.h"
#include "errors/context.h"
#include "memory/application.h"
#include "multifile/file_driver.h"
#include "storage/files/scratch.h"
#include "support/notation.h"
#include "user.h"

#include <memory>
#include <string>
#include <string_view>

namespace {

using namespace pluvo;

struct Word final : memory::MemoryApplication {
  std::u16string PathSeparator() override {
    return {static_cast<char16_t>(std::filesystem::path::preferred_separator)};
  }
};

void show(std::string_view scene, const std::u16string& documents, dialog::frmFAR& dialog,
          forms::User& user) {
  const auto press = [&](const char16_t* button) { dialog.get<forms::CommandButton>(button).press(); };
  const auto page = [&](std::size_t number) { dialog.get<forms::MultiPage>(u"MultiPage1").choose(number); };
  const auto type = [&](const char16_t* box, const std::u16string& text) {
    dialog.get<forms::TextBox>(box).type(text);
  };
  const auto enter = [&](const char16_t* list, const std::u16string& text) {
    dialog.get<forms::ComboBox>(list).enter(text);
  };
  if (scene == "filled" || scene == "highlight" || scene == "stats" || scene == "confirm") {
    type(u"txtBeginText", u"BEGIN CONFIDENTIAL");
    type(u"txtEndText", u"END CONFIDENTIAL");
    enter(u"cboxProcOperation1", u"Replace");
    type(u"txtTextToEnter", u"[withheld]");
    press(u"cmdViewOperation");
  }
  if (scene == "changed") {
    type(u"txtBeginText", u"BEGIN");
    press(u"cmdViewOperation");
    type(u"txtEndText", u"END\r\n");
  }
  if (scene == "highlight") enter(u"cboxProcOperation1", u"Highlight");
  if (scene == "confirm") dialog.get<forms::CheckBox>(u"chkConfirmEach").tick(true);
  if (scene == "stats" || scene == "confirm") press(u"cmdExecuteFAR");
  if (scene == "options") page(2);
  if (scene == "about") page(3);
  if (scene == "files" || scene == "picker") page(1);
  if (scene == "picker") press(u"cmdBrowse");
  if (scene == "files") {
    type(u"txtFilePath", documents);
    press(u"cmdGetPotentialFiles");
    dialog.get<forms::ListBox>(u"lbxPotentialFiles").select(0);
  }
  if (scene == "password") {
    errors::Context context;
    std::u16string password;
    dialog::frmPassword(context, user.host).RetrievePassword(password, u"Input Password to Unlock Form.");
  }
  if (scene == "question")
    user.boxes.show(u"Insert Highlighted Data?", forms::Buttons::yesNo,
                    u"Right-Click Paste Selection Operation");
  if (scene == "more") enter(u"cboxNumberDistanceApart", u"(More...)");
  if (scene == "report") {
    dialog.get<forms::ComboBox>(u"cboxProcOperation1").type(u"");
    press(u"cmdExecuteFAR");
  }
}

}  // namespace

int main(int argc, char** argv) {
  const forms::Toolkit toolkit(argc, argv);
  const files::Scratch folder;
  const auto path = [&](const std::string& name) { return folder.at(name).make_preferred().u16string(); };
  for (const char* name : {"Contracts", "Letters", "Minutes 2024", "Minutes 2025"})
    std::filesystem::create_directories(folder.at(std::string("Documents/") + name));
  for (const char* name : {"lease.doc", "offer & acceptance.doc", "agreement.rtf"})
    folder.put(std::string("Documents/Contracts/") + name, name);
  const notation::Sample document(
      "Minutes of the board¶The meeting opened at nine.  BEGIN CONFIDENTIAL The supplier's price rises by 18 "
      "per cent. END CONFIDENTIAL  The board thanked the team.¶It was agreed to go on.¶");
  const auto word = std::make_shared<Word>();
  word->defaultFilePath(word::wdUserTemplatesPath, path("templates"));
  word->defaultFilePath(word::wdDocumentsPath, path("Documents"));
  word->add(document.document);

  forms::User user;
  const auto clock = forms::machineClock();
  const auto random = dialog::machineRandomSource();
  dialog::DialogServices here{[&] { return word; }, user.host,     user.boxes, user.inputs,    *clock,
                              user.yielding,        user.launcher, *random,    path("program")};
  here.stepper = [](const dialog::RunPlace& place) {
    return std::make_shared<multifile::FileDriver>(place.folders(), place.makePicker);
  };
  dialog::frmFAR dialog(here);
  if (argc > 2) {
    for (const char16_t* name :
         {u"cmdViewOperation", u"chkConfirmEach", u"chkQuiteMode", u"cmdBrowse", u"lblReadMe"}) {
      auto& control = dialog.get<forms::Control>(name);
      control.Caption(control.Caption() + u" with many more words than there is a place for in one line");
    }
  }
  user.later([&] { show(argc > 1 ? argv[1] : "find", path("Documents/Contracts"), dialog, user); });
  dialog.ShowModal();
}
