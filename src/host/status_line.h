#pragma once

#include "findpanel/execution.h"
#include "forms/form.h"
#include "multifile/folders.h"
#include "options/options_file.h"

#include <string>

namespace pluvo::host {

/// The dialog's status line: over what Execute would run, or what has come of the last search or save until
/// the user goes on.
class StatusLine {
 public:
  /// All outlive it, and have their handlers already.
  StatusLine(forms::Form& form, multifile::Folders& folders, findpanel::Execution& execution,
             options::OptionsFile& options);

  /// A document was opened or closed.
  void documentsChanged();

  /// A run over files goes on with this one.
  void tellFile(const std::u16string& path, std::size_t number, std::size_t count);

 private:
  void tellOverWhat();
  std::u16string overWhat() const;
  void tellWhereNothingWasFound();
  const std::u16string& path() const;

  forms::Form& form_;
  multifile::Folders& folders_;
  findpanel::Execution& execution_;
  std::size_t listed_ = 0;
  std::u16string toldOverWhat_;
};

}  // namespace pluvo::host
