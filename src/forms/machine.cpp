#include "forms/machine.h"

#include <chrono>
#include <ctime>

namespace pluvo::forms {

namespace {

class MachineClock final : public Clock {
 public:
  double secondsSinceMidnight() override {
    const auto now = std::chrono::system_clock::now();
    const std::time_t whole = std::chrono::system_clock::to_time_t(now);
    const std::chrono::duration<double> fraction = now - std::chrono::system_clock::from_time_t(whole);
    std::tm parts = {};
#ifdef _WIN32
    localtime_s(&parts, &whole);
#else
    localtime_r(&whole, &parts);
#endif
    return (parts.tm_hour * 60 + parts.tm_min) * 60 + parts.tm_sec + fraction.count();
  }
};

}  // namespace

std::unique_ptr<Clock> machineClock() { return std::make_unique<MachineClock>(); }

}  // namespace pluvo::forms
