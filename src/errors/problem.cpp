#include "errors/problem.h"

namespace pluvo::errors {

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

}  // namespace pluvo::errors
