#pragma once

#include "forms/machine.h"
#include "forms_win32/forms.h"

#include <functional>
#include <string>
#include <utility>

namespace pluvo::forms_win32 {

/// Deals with the thread's messages that wait. A yield from within a yield does nothing, so that what one of
/// those messages starts is not cut into by the next.
class Win32Yielding final : public forms::Yielding {
 public:
  explicit Win32Yielding(Win32Forms& host) : host_(host) {}
  void yield() override;

 private:
  Win32Forms& host_;
  bool yields_ = false;
};

/// Starts the system's own programs, from the system's folder and in it, with hidden windows. A program of
/// the same name in the current folder is not started.
class Win32Launcher final : public forms::Launcher {
 public:
  /// Opens a web page with the user's browser; 0, or the system's error (GetLastError).
  using Opener = std::function<unsigned long(const std::u16string& address)>;
  Win32Launcher();
  explicit Win32Launcher(Opener opener) : opener_(std::move(opener)) {}

  /// "start ADDRESS" opens a web page; any other command line is a program of the system's and its arguments.
  /// Throws Fault kFileNotFound (53) with the command line and the system's error.
  void launchHidden(const std::u16string& commandLine) override;

 private:
  Opener opener_;
};

}  // namespace pluvo::forms_win32
