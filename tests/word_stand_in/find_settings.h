#pragma once

#include "pattern.h"

#include <cstdint>

namespace pluvo::stand_in {

/// What one Find object was told; it keeps that from one execution to the next.
struct FindSettings {
  Criteria criteria;
  bool forward = true;
  std::int32_t wrap = 0;
  bool found = false;
  /// Criteria that a search with any of them on is not possible here: wildcards, sounds, word forms, formats,
  /// phrases, ignored blanks and punctuation, fuzzy, marks of other scripts.
  bool wildcards = false;
  bool soundsLike = false;
  bool wordForms = false;
  bool format = false;
  bool phrase = false;
  bool ignoreSpace = false;
  bool ignorePunctuation = false;
  bool fuzzy = false;
  bool kashida = false;
  bool diacritics = false;
  bool alefHamza = false;
  bool control = false;
  /// Letters of different widths are different.
  bool byte = false;

  bool possible() const {
    return !wildcards && !soundsLike && !wordForms && !format && !phrase && !ignoreSpace &&
           !ignorePunctuation && !fuzzy && !kashida && !diacritics && !alefHamza && !control;
  }
};

}  // namespace pluvo::stand_in
