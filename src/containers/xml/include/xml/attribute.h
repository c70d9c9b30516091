#pragma once

#include "xml/vocabulary.h"

#include <cstdint>

namespace pluvo::xml {

/// A place in the scanned bytes.
using Offset = std::uint32_t;

/// An attribute of a start or empty token. Offsets are those of the scanned bytes.
struct Attribute {
  NameId id = kOtherName;
  NamespaceId space = kNoNamespace;
  std::uint16_t binding = 0;  ///< the scanner's own
  Offset nameBegin = 0, nameEnd = 0;
  Offset valueBegin = 0, valueEnd = 0;  ///< between the quotes
  Offset prefixLength = 0;              ///< without the colon; 0 when there is none
  bool plain = true;                    ///< no reference, tab or line end: the bytes are the value

  void moveBy(Offset distance) {
    for (Offset* place : {&nameBegin, &nameEnd, &valueBegin, &valueEnd}) *place += distance;
  }
};

}  // namespace pluvo::xml
