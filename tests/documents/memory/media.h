#pragma once

#include "documents/support/notation.h"
#include "files/bytes.h"
#include "formats/format.h"

#include <memory>
#include <string_view>

namespace pluvo::memory {

/// What the documents of these tests are kept in: nothing but memory, or a file they are read from and saved
/// to.
enum class Medium { memory, docx };
inline constexpr Medium kMedia[] = {Medium::memory, Medium::docx};

/// A document of a notation.
struct Kept {
  files::Bytes file;
  std::shared_ptr<const formats::Source> source;  ///< none in memory
  notation::Sample sample;
};
Kept keptIn(Medium medium, std::string_view notation);

/// Saves the document where it has a file, and reads that again: the test fails unless it is the same
/// document in a sound file.
void expectToSurviveASave(Kept& kept);

}  // namespace pluvo::memory
