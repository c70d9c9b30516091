#pragma once

#include <memory>
#include <string>

/// The machine's services to a dialog.
namespace pluvo::forms {

class Clock {
 public:
  virtual ~Clock() = default;
  /// Local time; falls back to 0 at midnight.
  virtual double secondsSinceMidnight() = 0;
};

std::unique_ptr<Clock> machineClock();

class Yielding {
 public:
  virtual ~Yielding() = default;
  /// Lets the windows deal with what waits for them: they are drawn, and buttons can be pressed.
  virtual void yield() = 0;
};

class Launcher {
 public:
  virtual ~Launcher() = default;
  /// Starts a program by its command line, without a window of its own, and waits for nothing. Throws Fault
  /// where it cannot be started.
  virtual void launchHidden(const std::u16string& commandLine) = 0;
};

}  // namespace pluvo::forms
