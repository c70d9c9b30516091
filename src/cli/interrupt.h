#pragma once

#include <csignal>

namespace pluvo::cli {

/// While it lives, an interrupt from the keyboard or a request to end is noted instead of ending the program;
/// a second one ends it at once.
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
};

}  // namespace pluvo::cli
