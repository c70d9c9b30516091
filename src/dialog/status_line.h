#pragma once

#include "files_page/file_choice.h"
#include "find_page/execution.h"
#include "forms/form.h"
#include "options_page/options_file.h"
#include "pages.h"
#include "scanner/folders.h"

#include <functional>
#include <string>

namespace pluvo::dialog {

/// The dialog's status line. It tells what Execute would run, or, until the user goes on, how the last run,
/// search or save ended.
class StatusLine {
 public:
  /// Tells the texts that the last run did not reach; see DialogServices.
  using NotReached = std::function<void(const std::function<void(const std::u16string& sentence)>& told)>;

  /// All outlive it, and have their handlers already.
  StatusLine(forms::Form& form, Pages& pages, forms::MultiPage& tabs, scanner::Folders& folders,
             FileChoice& files, Execution& execution, OptionsFile& options, NotReached notReached);

  /// A document was opened or closed.
  void documentsChanged();

  /// A run over files goes on with this one.
  void tellFile(const std::u16string& path, std::size_t number, std::size_t count);

 private:
  void tellOverWhat();
  std::u16string overWhat() const;
  void tellOfRun();
  void tellWhereNothingWasFound();
  const std::u16string& path() const;

  forms::Form& form_;
  FilesPage& files_;
  scanner::Folders& folders_;
  Execution& execution_;
  NotReached notReached_;
  std::size_t listed_ = 0;
  std::u16string toldOverWhat_;
  /// Execute has returned, and blocks are decided upon.
  bool confirms_ = false;
};

}  // namespace pluvo::dialog
