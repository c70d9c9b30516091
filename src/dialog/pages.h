#pragma once

#include "about_page/page.h"
#include "files_page/page.h"
#include "find_page/page.h"
#include "options_page/page.h"

namespace pluvo::dialog {

/// The main dialog's pages, left to right. Each is a struct of its controls, and keeps them as a collection
/// in designed order, too.
struct Pages {
  FindPage pgFindAndReplace;
  FilesPage pgMultiFiles;
  OptionsPage Options;
  AboutPage pgAbout;
};

}  // namespace pluvo::dialog
