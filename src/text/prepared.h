#pragma once

#include "characters.h"
#include "needle.h"
#include "text/search.h"

#include <string_view>

namespace pluvo::text {

/// Which ends of a match must be the ends of a word.
struct WordEnds {
  bool front = false;
  bool back = false;

  static WordEnds of(std::u16string_view needle) {
    return {asLineEnd(needle.front()) != kParagraphMark, asLineEnd(needle.back()) != kParagraphMark};
  }
};

struct Search::Prepared {
  Needle needle;
  WordEnds wholeWord;
};

}  // namespace pluvo::text
