#include "base/utf.h"
#include "dialog/frmDirectoryBrowser.h"
#include "dialog/frmPassword.h"
#include "dialog/frmProcessing.h"
#include "dialog/frmStats.h"
#include "opened_dialog.h"
#include "scanner/scripted_folders.h"
#include "workplace.h"

#include <map>

namespace pluvo::dialog {
namespace {

using forms::ControlKind;

/// What the user sees of a control: "name|kind|text|tip|row column rows columns".
std::string shownOf(const forms::Control& control) {
  static const std::map<ControlKind, std::string> kinds = {
      {ControlKind::label, "label"},        {ControlKind::commandButton, "button"},
      {ControlKind::textBox, "text box"},   {ControlKind::checkBox, "check box"},
      {ControlKind::comboBox, "combo box"}, {ControlKind::listBox, "list box"},
      {ControlKind::picture, "picture"}};
  std::string kind = kinds.at(control.kind());
  std::u16string text = control.Caption();
  if (const auto* label = dynamic_cast<const forms::Label*>(&control); label && label->IsLink())
    kind = "link";
  if (const auto* box = dynamic_cast<const forms::TextBox*>(&control)) {
    text = box->Text();
    if (box->MultiLine()) kind += " of lines";
    if (box->ReadOnly()) kind += " read-only";
  }
  if (const auto* list = dynamic_cast<const forms::ComboBox*>(&control)) text = list->Text();
  if (const auto* list = dynamic_cast<const forms::ListBox*>(&control); list && list->MultiSelect())
    kind += " of several";
  if (const auto* button = dynamic_cast<const forms::CommandButton*>(&control); button && button->Default())
    kind += " default";
  if (const auto* box = dynamic_cast<const forms::CheckBox*>(&control); box && box->Value())
    kind += " ticked";
  if (!control.Enabled()) kind += " off";
  if (!control.Visible()) kind += " hidden";
  const auto [row, column, rows, columns] = control.Cell();
  std::string shown = base::utf8(control.Name()) + '|' + kind + '|' + base::utf8(text) + '|' +
                      base::utf8(control.ControlTipText()) + '|';
  for (const int place : {row, column, rows, columns}) shown += std::to_string(place) + ' ';
  shown.back() = '\n';
  return shown;
}

class Design : public testing::Test, protected OpenedDialog {
 protected:
  Design() { open(); }
  const std::vector<forms::Page*>& pages() { return dialog().get<forms::MultiPage>(u"MultiPage1").Pages(); }
};

/// Every control, with the manual's own spellings, which nobody may correct.
TEST_F(Design, ShowsTheControlsOfTheManual) {
  std::string shown;
  for (const auto& page : pages()) {
    shown += '\n' + base::utf8(page->Name() + u'|' + page->Caption() + u'|' + page->ControlTipText()) + '\n';
    for (const forms::Control* control : page->controls()) shown += shownOf(*control);
  }
  Workplace work(word);
  scanner::ScriptedFolders folders({"/d/a.txt"}, "/");
  const frmProcessing processing(work.engine);
  const frmPassword password(work.context, forms);
  const frmStats stats(forms);
  const frmDirectoryBrowser browser(forms, folders, u"/");
  for (const forms::Form* form :
       std::initializer_list<const forms::Form*>{&processing, &password, &stats, &browser}) {
    shown += '\n' + base::utf8(form->Name() + u'|' + form->Caption()) + '\n';
    for (const forms::Control* control : form->controls()) shown += shownOf(*control);
  }
  std::erase(shown, '\r');
  EXPECT_EQ(dialog().Caption(), u"Pluvorama");
  const std::string expected =
#include "controls.txt"
      ;
  EXPECT_EQ(std::regex_replace(shown, std::regex("Build " PLUVO_VERSION), "Build VERSION"), expected);
}

TEST_F(Design, GivesEveryControlAPlaceOfItsOwn) {
  for (const auto& page : pages()) {
    std::map<std::pair<int, int>, std::u16string> taken;
    for (const forms::Control* control : page->controls()) {
      const forms::Cell cell = control->Cell();
      EXPECT_GT(cell.columns, 0) << base::utf8(control->Name());
      EXPECT_LE(cell.column + cell.columns, 12) << base::utf8(control->Name());
      for (int row = cell.row; row < cell.row + cell.rows; ++row) {
        for (int column = cell.column; column < cell.column + cell.columns; ++column) {
          EXPECT_TRUE(taken.try_emplace({row, column}, control->Name()).second)
              << base::utf8(control->Name()) << " lies over " << base::utf8(taken[{row, column}]);
        }
      }
    }
  }
}

/// The find page's left half first.
TEST_F(Design, HasTheTabKeyFollowTheEye) {
  for (const auto& page : pages()) {
    std::vector<const forms::Control*> stops;
    for (const forms::Control* control : page->controls()) {
      const auto* label = dynamic_cast<const forms::Label*>(control);
      const bool stop = label == nullptr ? control->kind() != forms::ControlKind::picture : label->IsLink();
      if (stop) stops.push_back(control);
    }
    const auto place = [&](const forms::Control* control) {
      const forms::Cell cell = control->Cell();
      const bool halves = page->Name() == u"pgFindAndReplace";
      return std::tuple(halves && cell.row == 12, halves && cell.column >= 6, cell.row, cell.column);
    };
    std::ranges::stable_sort(stops, {}, [](const forms::Control* control) { return control->TabIndex(); });
    EXPECT_TRUE(std::ranges::is_sorted(stops, {}, place)) << base::utf8(page->Name());
  }
}

TEST_F(Design, FillsTheListsOnce) {
  open();
  const std::string numbers = " 1 2 3 4 5 6 7 8 9";
  const std::pair<const char16_t*, std::string> cases[] = {
      {u"cboxProcOperation1", " None=0 Insert=1 Replace=2 Delete=3 Highlight=4"},
      {u"cboxProcSelection1", " Selection=0 Beginning=1 Ending=2 Inside Text=3"},
      {u"cboxProcRelativePosition1", " Before=0 After=1"},
      {u"cboxNumberDistanceApart", " Same" + numbers + " (More...)"},
      {u"cboxUnitDistanceApart", " Word(s)=0 Sentence(s)=1 Paragraph(s)=2 Entire Document=3"},
      {u"cboxHighlighters", " Yellow=7 Pink=5 Green=11 Blue=2 Red=6 No Highlight=0"},
      {u"cboxLevelsDeep", " All" + numbers}};
  for (const auto& [name, expected] : cases) {
    std::string rows;
    for (const auto& [text, code] : list(name).rows())
      rows += ' ' + base::utf8(text) + (code.empty() ? "" : '=' + base::utf8(code));
    EXPECT_EQ(rows, expected) << base::utf8(name);
  }
}

}  // namespace
}  // namespace pluvo::dialog
