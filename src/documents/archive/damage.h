#pragma once

#include "files/problem.h"

#include <string>

namespace pluvo::archive {

inline files::DocumentError damaged(const std::string& what) {
  return {files::Problem::damaged, "The document's ZIP archive is damaged: " + what +
                                       "; get an intact copy, or let a word processor repair and save it."};
}

}  // namespace pluvo::archive
