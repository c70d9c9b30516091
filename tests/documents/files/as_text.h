#pragma once

#include "files/bytes.h"
#include "files/problem.h"

#include <string>

namespace pluvo::files {

/// Bytes and refusals as texts, for tables of cases.
inline Bytes bytesOf(const std::string& text) { return Bytes::of({text.begin(), text.end()}); }
inline std::string textOf(ByteSpan bytes) { return {bytes.begin(), bytes.end()}; }

/// How work is refused: "damaged: The sentence."; empty where it is not.
template <class Work>
std::string refusalOf(Work work) {
  try {
    work();
  } catch (const DocumentError& error) {
    return std::string(nameOf(error.problem())) + ": " + error.what();
  }
  return "";
}

}  // namespace pluvo::files
