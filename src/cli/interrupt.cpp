#include "interrupt.h"

#include <atomic>

namespace pluvo::cli {
namespace {

std::atomic<bool> noted = false;
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler writes it");

extern "C" void noteInterrupt(int /*signal*/) { noted = true; }

}  // namespace

Interrupt::Interrupt(bool endsReading) {
  noted = false;
  struct sigaction action = {};
  action.sa_handler = noteInterrupt;
  action.sa_flags = static_cast<int>(SA_RESETHAND) | (endsReading ? 0 : SA_RESTART);
  sigemptyset(&action.sa_mask);
  // A shell ignores interrupts for programs in the background, and nohup the loss of the terminal.
  sigaction(SIGINT, nullptr, &forInterrupt_);
  if (forInterrupt_.sa_handler != SIG_IGN) sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, &forEnd_);
  action.sa_flags &= ~static_cast<int>(SA_RESETHAND);
  sigaction(SIGHUP, nullptr, &forLoss_);
  if (forLoss_.sa_handler != SIG_IGN) sigaction(SIGHUP, &action, nullptr);
}

Interrupt::~Interrupt() {
  sigaction(SIGINT, &forInterrupt_, nullptr);
  sigaction(SIGTERM, &forEnd_, nullptr);
  sigaction(SIGHUP, &forLoss_, nullptr);
}

bool Interrupt::requested() { return noted; }

}  // namespace pluvo::cli
