#pragma once

#include "parse.h"
#include "word/enums.h"

#include <cstdint>
#include <string>

namespace pluvo::cli {

/// The engine's value codes.
enum class Place : std::int32_t { block = 0, begin = 1, end = 2, inside = 3 };
enum class Unit : std::int32_t { word = 0, sentence = 1, paragraph = 2, document = 3 };

/// What to look for in a document and what to do with it, ready for the engine: texts are UTF-16 with line
/// ends as paragraph marks.
struct Request {
  Command command = Command::find;

  std::u16string begin;
  std::u16string end;     ///< empty: the block is its beginning
  std::u16string inside;  ///< empty: no condition
  std::u16string apart = u"Same";
  Unit unit = Unit::paragraph;
  bool wholeWords = false;
  bool matchCase = false;
  bool fieldCodes = false;

  Place place = Place::block;
  std::u16string text;
  bool after = false;
  bool extraSpace = false;
  word::WdColorIndex color = word::wdYellow;
};

/// What was typed about the blocks and the change, made out. Reads the files that hold texts and nothing
/// else. Throws UsageError.
Request requestFrom(Command command, const TypedOptions& typed);

}  // namespace pluvo::cli
