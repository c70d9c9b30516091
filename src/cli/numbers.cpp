#include "numbers.h"

#include "usage_error.h"

#include <charconv>

namespace pluvo::cli {

int numberFrom(const std::string& typed, std::string_view option, int least, int most) {
  int number = 0;
  const char* const last = typed.data() + typed.size();
  const auto [stopped, error] = std::from_chars(typed.data(), last, number);
  if (error == std::errc{} && stopped == last && number >= least && number <= most) return number;
  throw UsageError(std::string(option) + " is a number from " + std::to_string(least) + " to " +
                   std::to_string(most) + ", not '" + typed + "'.");
}

}  // namespace pluvo::cli
