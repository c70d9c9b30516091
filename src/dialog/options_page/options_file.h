#pragma once

#include "errors/context.h"
#include "page.h"

#include <string>

namespace pluvo::dialog {

/// Keeps the check boxes of the page "Options" in a file of one line, PLUVO.cfg in the data folder:
///
///     reserved;reserved;True;False;…;
///
/// Each control of the page whose name begins with "chk" has a field, in the order of the page. An empty
/// field ends them. The order decides which field is whose, not the name.
class OptionsFile {
 public:
  /// Page and context outlive it. The folder ends with the path separator; it is made
  /// when the options are first saved.
  OptionsFile(OptionsPage& page, errors::Context& context, const std::u16string& dataFolder);

  /// Sets the boxes. Without a file they stay as they are; a fault in it is reported, and the boxes after
  /// stay as they are.
  void load();
  void save();
  forms::Event<> Saved;

 private:
  void cmdSaveOptions_Click();
  std::u16string optionsText();

  OptionsPage& page_;
  errors::Context& context_;
  std::u16string path_;
  /// Written back as they were read.
  std::u16string reserved0_ = u"PLUVO";
  std::u16string reserved1_ = u"Options";
};

}  // namespace pluvo::dialog
