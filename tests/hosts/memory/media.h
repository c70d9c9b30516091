#pragma once

#include "support/notation.h"

#include <functional>
#include <string_view>
#include <vector>

namespace pluvo::memory {

/// A document of a notation.
struct Kept {
  notation::Sample sample;
  /// Saves the document where it is kept in a file, and reads that again: the test fails unless it is the
  /// same document in a sound file.
  std::function<void(const document::Document&)> save = [](const document::Document&) {};

  void expectToSurviveASave() { save(sample.document->stories()); }
};

/// What the documents of these tests are kept in: nothing but memory, or files they are read from and saved
/// to, as far as those are built for this system.
using Medium = Kept (*)(std::string_view notation);
const std::vector<Medium>& media();

}  // namespace pluvo::memory
