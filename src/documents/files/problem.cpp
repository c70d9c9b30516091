#include "files/problem.h"

namespace pluvo::files {

DocumentError::DocumentError(Problem problem, std::string_view message)
    : std::runtime_error(std::string(message)), problem_(problem) {}

DocumentError::DocumentError(Problem problem, std::string_view happened, std::string_view advice)
    : std::runtime_error(std::string(happened).append(" ").append(advice)),
      problem_(problem),
      happened_(happened) {}

std::string_view nameOf(Problem problem) {
  switch (problem) {
    case Problem::locked:
      return "locked";
    case Problem::readOnly:
      return "read-only";
    case Problem::password:
      return "password";
    case Problem::protection:
      return "protected";
    case Problem::signature:
      return "signed";
    case Problem::damaged:
      return "damaged";
    case Problem::unsupported:
      return "unsupported";
    case Problem::encoding:
      return "encoding";
    case Problem::tooLarge:
      return "too-large";
    case Problem::temporary:
      return "temporary";
    case Problem::changed:
      return "changed";
    case Problem::refused:
      return "refused";
    case Problem::io:
      return "io";
  }
  return "io";
}

}  // namespace pluvo::files
