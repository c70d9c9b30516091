#pragma once

#include "base/bytes.h"
#include "names.h"
#include "text/coded_text.h"

#include <optional>

namespace pluvo::plain {

struct Guess {
  Named named;
  text::CodedText::Survey coded{};  ///< where all bytes were looked at in it
};

/// Tells the encoding of a text that is not UTF-8 or UTF-16 from how it reads. Every byte has a meaning in
/// the answer. Where what there is to go by is too little, or contradicts itself, there is none.
std::optional<Guess> guessed(const base::Bytes& file);

}  // namespace pluvo::plain
