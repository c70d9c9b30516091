#pragma once

#include "base/utf.h"
#include "dialog/workplace.h"
#include "multifile/file_driver.h"
#include "scanner/scripted_folders.h"
#include "word_stand_in/word_session.h"

#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace pluvo::inside_word {

using stand_in::WordSession;

/// A run over C:\f\one.doc and C:\f\two.doc that replaces every "A" by "B", and all that the user hears of
/// it.
class FileRun {
 public:
  explicit FileRun(const word_com::Manner& manner = {}) : work(word.word(manner)) {
    for (const auto* name : {u"one", u"two"}) file(name).text = u"A form";
    work.engine.stepper(std::make_shared<multifile::FileDriver>(
        std::make_unique<scanner::ScriptedFolders>(std::vector<std::string>(), "\\")));
    work.engine.MultiFileRun(true);
    work.ask({.begin = u"A", .operation = engine::kReplace, .text = u"B"});
    work.engine.LiftLimitsSetting(manner.careful);
    work.forms.user = [this](forms::Form& form) { typePassword(form); };
  }

  static stand_in::StoredFile& file(const std::u16string& name) {
    return WordSession::world().fileAt(u"C:\\f\\" + name + u".doc");
  }
  /// Runs, and returns the titles of the boxes and the reports.
  std::vector<std::string> run() {
    work.engine.MultiPLUVO({u"C:\\f\\one.doc", u"C:\\f\\two.doc"});
    std::vector<std::string> heard;
    for (const auto& box : work.boxes.shown) heard.push_back(base::utf8(box.title.value_or(u"")));
    heard.insert(heard.end(), work.reports.begin(), work.reports.end());
    return heard;
  }

  WordSession word;
  dialog::Workplace work;
  std::deque<std::u16string> typed;

 private:
  void typePassword(forms::Form& form) {
    ASSERT_EQ(form.Name(), u"frmPassword");
    if (typed.empty()) return forms::press(form, u"cmdCancel");
    form.get<forms::TextBox>(u"txtPassword").Text(typed.front());
    typed.pop_front();
    forms::press(form, u"cmdProceed");
  }
};

}  // namespace pluvo::inside_word
