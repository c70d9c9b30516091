#pragma once

#include "dialog/folder_list.h"
#include "dialog/folder_picker.h"
#include "forms/form.h"
#include "scanner/folders.h"

#include <string>

namespace pluvo::dialog {

/// The window in which the user chooses a folder. No fault leaves its handlers: a folder or a drive that
/// cannot be shown leaves the list as it was.
class frmDirectoryBrowser final : public forms::Form, public FolderPicker {
 public:
  /// Both outlive it. The list shows the root of the first drive, or of all folders, at first.
  frmDirectoryBrowser(forms::FormHost& host, scanner::Folders& folders, const std::u16string& separator);

  /// A path with a drive sets both lists. Where there are no drives, any absolute path sets the folders.
  void SetStartingDirectory(const std::u16string& folder) override;
  void choose() override;
  bool selected() const override { return selected_; }
  std::u16string path() const override { return Dir1.Path(); }

  forms::ComboBox Drive1{u"Drive1", forms::ComboBox::Bound::text};
  FolderList Dir1;
  forms::Label lblPath{u"lblPath"};
  forms::CommandButton cmdSelectDirectory{u"cmdSelectDirectory", u"Select"};

 private:
  void Drive1_Change();
  void cmdSelectDirectory_Click();

  std::u16string separator_;
  bool selected_ = false;
};

}  // namespace pluvo::dialog
