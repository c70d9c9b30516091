#pragma once

#include "errors/document_error.h"

#include <string>
#include <string_view>

namespace pluvo::doc {

/// "The document's table of pieces is cut off; restore it …"
inline errors::DocumentError damaged(std::string_view what) {
  return {errors::Problem::damaged,
          "The document's " + std::string(what) +
              "; restore it from a copy, or open it in a word processor and save it again."};
}

}  // namespace pluvo::doc
