#pragma once

#include "forms/machine.h"

#include <QUrl>
#include <functional>
#include <string>

namespace pluvo::forms_qt {

/// Opens through the desktop the web page that a command line gives to "start". It starts no program of its
/// own, so that nothing in the current folder is taken for one.
class QtLauncher final : public forms::Launcher {
 public:
  /// Opens with the program the desktop has for it; false where it has none.
  using Opener = std::function<bool(const QUrl&)>;
  QtLauncher();
  explicit QtLauncher(Opener opener) : opener_(std::move(opener)) {}

  /// "start ADDRESS", also after a shell ("cmd.exe /c start ADDRESS"). Throws Fault kFileNotFound, which
  /// tells what could not be opened; so for any other command line.
  void launchHidden(const std::u16string& commandLine) override;
  /// Opens a file with the program the desktop has for it. Throws Fault kFileNotFound.
  void openFile(const QString& path);

 private:
  Opener opener_;
};

}  // namespace pluvo::forms_qt
