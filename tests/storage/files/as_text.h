#pragma once

#include "base/bytes.h"
#include "errors/document_error.h"

#include <string>

namespace pluvo::files {

/// base::Bytes and refusals as texts, for tables of cases.
inline base::Bytes bytesOf(const std::string& text) { return base::Bytes::of({text.begin(), text.end()}); }
inline std::string textOf(base::ByteSpan bytes) { return {bytes.begin(), bytes.end()}; }

/// How work is refused: "damaged: The sentence."; empty where it is not.
template <class Work>
std::string refusalOf(Work work) {
  try {
    work();
  } catch (const errors::DocumentError& error) {
    return std::string(nameOf(error.problem())) + ": " + error.what();
  }
  return "";
}

}  // namespace pluvo::files
