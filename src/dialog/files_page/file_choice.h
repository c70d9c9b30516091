#pragma once

#include "dialog/clsProcessFind.h"
#include "page.h"

#include <functional>
#include <string>
#include <vector>

namespace pluvo::dialog {

/// On the files page the user chooses a folder, the files in it that are to be processed, and perhaps only
/// some of them.
class FileChoice {
 public:
  /// All outlive it. The form is redrawn before a search.
  FileChoice(forms::Form& form, FilesPage& page, clsProcessFind& engine, errors::Context& context);

  /// Tells the files that the choices select, whatever is in the list; none where there are none.
  void LocateFilesForRun(const std::function<void(std::vector<std::u16string> files)>& then);
  /// Lists these files, whatever the choices select, and the folder that they all lie in or below.
  void show(const std::vector<std::u16string>& files);

  /// A search that the user asked for has come to its end.
  forms::Event<> Listed;

 private:
  void cmdBrowse_Click();
  void cmdChooseFiles_Click();
  void cmdGetPotentialFiles_Click();
  void cmdRemoveFiles_Click();
  void txtFilePath_Change();
  void ListPotentialFiles(const std::function<void()>& then);
  std::u16string folder();
  std::u16string masks() const;
  std::int16_t depth() const;
  void showCount(const std::u16string& count);

  forms::Form& form_;
  FilesPage& page_;
  errors::Context& context_;
  clsProcessFind& engine_;
  std::vector<std::u16string> potentialFiles_;
};

}  // namespace pluvo::dialog
