#pragma once

#include "open_document.h"

#include <QMainWindow>
#include <string>

namespace pluvo::desktop {

/// One of the program's own documents, in a window of its own: to be read and copied from. It is no document
/// of the word processor, so that nothing is executed on it, and it is never saved.
class HelpWindow final : public QMainWindow {
 public:
  /// Throws Fault where the file cannot be opened.
  explicit HelpWindow(const std::string& path);

 private:
  OpenDocument document_;
};

}  // namespace pluvo::desktop
