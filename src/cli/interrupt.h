#pragma once

#include <csignal>

namespace pluvo::cli {

/// While it lives, an interrupt from the keyboard, a request to end or the loss of the terminal is noted
/// instead of ending the program. A second interrupt or request ends it at once; the loss is told several
/// times, by the shell and by the system.
class Interrupt {
 public:
  /// Whether a read from the keyboard that is going on is to fail then.
  explicit Interrupt(bool endsReading);
  ~Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;

  static bool requested();

 private:
  struct sigaction forInterrupt_ = {};
  struct sigaction forEnd_ = {};
  struct sigaction forLoss_ = {};
};

}  // namespace pluvo::cli
