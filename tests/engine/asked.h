#pragma once

#include "engine/request.h"
#include "word/enums.h"

#include <cstdint>
#include <string>

namespace pluvo::engine {

/// What a test asks for: from the top, with matching capitals and any distance, unless said otherwise.
struct Asked {
  std::u16string begin = {};
  std::u16string end = {};
  std::u16string inside = {};
  std::int16_t apart = 0;
  UnitCode unit = kEntireDocument;
  OperationCode operation = kNone;
  LocationCode on = kSelection;
  PlaceCode place = kBefore;
  std::u16string text = {};
  bool extraSpace = false;
  bool wholeWords = false;
  bool matchCase = true;
  bool atTop = true;
  bool confirm = false;
  bool lift = false;
  bool fieldCodes = false;

  Request request() const {
    return {begin,          end,        inside,    apart,      unit,  operation, on,  place, text, extraSpace,
            word::wdYellow, wholeWords, matchCase, fieldCodes, atTop, confirm,   lift};
  }
};

}  // namespace pluvo::engine
