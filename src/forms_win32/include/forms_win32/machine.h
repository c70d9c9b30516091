#pragma once

#include "forms/machine.h"
#include "forms_win32/forms.h"

#include <string>

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

/// Starts programs with their windows hidden.
class Win32Launcher final : public forms::Launcher {
 public:
  /// Throws Fault kFileNotFound (53) with the program and what the system says of it.
  void launchHidden(const std::u16string& commandLine) override;
};

}  // namespace pluvo::forms_win32
