#pragma once

#include "documents/files/scratch.h"
#include "documents/support/notation.h"
#include "errors/context.h"
#include "errors/text.h"
#include "forms/message_boxes.h"
#include "host/frmFAR.h"
#include "memory/application.h"
#include "multifile/frmPassword.h"

#include <fstream>
#include <memory>
#include <string>
#include <string_view>

namespace pluvo::host {

/// What galleries show the dialog over, a document in memory and a folder of files, and the states that it is
/// brought into, to be looked at.
class Gallery {
 public:
  static constexpr const char* kDocument =
      "Minutes of the board¶The meeting opened at nine.  BEGIN CONFIDENTIAL The supplier's price rises by 18 "
      "per cent. END CONFIDENTIAL  The board thanked the team.¶It was agreed to go on.¶";

  explicit Gallery(std::shared_ptr<memory::MemoryApplication> application) : word(std::move(application)) {
    std::filesystem::create_directories(folder_.at("templates/PLUVO"));
    for (const char* name : {"Contracts", "Letters", "Minutes 2024", "Minutes 2025"})
      std::filesystem::create_directories(folder_.at(std::string("Documents/") + name));
    for (const char* name : {"lease.doc", "offer & acceptance.doc", "agreement.rtf"})
      folder_.put(std::string("Documents/Contracts/") + name, name);
    word->defaultFilePath(word::wdUserTemplatesPath, path("templates"));
    word->defaultFilePath(word::wdDocumentsPath, path("Documents"));
    word->add(sample_.document);
  }

  std::u16string path(const std::string& name) const { return folder_.at(name).make_preferred().u16string(); }

  /// find filled highlight files options about stats picker password confirm question more report
  void scene(std::string_view name, frmFAR& dialog, forms::FormHost& forms,
             forms::MessageBoxes& boxes) const {
    const auto press = [&](const char16_t* button) { dialog.get<forms::CommandButton>(button).press(); };
    const auto page = [&](std::size_t number) { dialog.get<forms::MultiPage>(u"MultiPage1").choose(number); };
    const auto type = [&](const char16_t* box, const std::u16string& text) {
      dialog.get<forms::TextBox>(box).type(text);
    };
    const auto enter = [&](const char16_t* list, const std::u16string& text) {
      dialog.get<forms::ComboBox>(list).enter(text);
    };
    if (name == "filled" || name == "highlight" || name == "stats" || name == "confirm") {
      type(u"txtBeginText", u"BEGIN CONFIDENTIAL");
      type(u"txtEndText", u"END CONFIDENTIAL");
      enter(u"cboxProcOperation1", u"Replace");
      type(u"txtTextToEnter", u"[withheld]");
      press(u"cmdViewOperation");
    }
    if (name == "highlight") enter(u"cboxProcOperation1", u"Highlight");
    if (name == "confirm") dialog.get<forms::CheckBox>(u"chkConfirmEach").tick(true);
    if (name == "stats" || name == "confirm") press(u"cmdExecuteFAR");
    if (name == "options") page(2);
    if (name == "about") page(3);
    if (name == "files" || name == "picker") page(1);
    if (name == "picker") press(u"cmdBrowse");
    if (name == "files") {
      type(u"txtFilePath", path("Documents/Contracts"));
      press(u"cmdGetPotentialFiles");
      dialog.get<forms::ListBox>(u"lbxPotentialFiles").select(0);
    }
    if (name == "password") {
      errors::Context context;
      std::u16string password;
      multifile::frmPassword(context, forms).RetrievePassword(password, u"Input Password to Unlock Form.");
    }
    if (name == "question")
      boxes.show(u"Insert Highlighted Data?", forms::Buttons::yesNo,
                 u"Right-Click Paste Selection Operation");
    if (name == "more") enter(u"cboxNumberDistanceApart", u"(More...)");
    if (name == "report") {
      dialog.get<forms::ComboBox>(u"cboxProcOperation1").type(u"");
      press(u"cmdExecuteFAR");
    }
  }

  const std::shared_ptr<memory::MemoryApplication> word;

 private:
  files::Scratch folder_;
  notation::Sample sample_{kDocument};
};

}  // namespace pluvo::host
