#include "errors/document_error.h"

namespace pluvo::errors {

DocumentError::DocumentError(Problem problem, std::string_view message)
    : std::runtime_error(std::string(message)), problem_(problem) {}

DocumentError::DocumentError(Problem problem, std::string_view happened, std::string_view advice)
    : std::runtime_error(std::string(happened).append(" ").append(advice)),
      problem_(problem),
      happened_(happened) {}

}  // namespace pluvo::errors
