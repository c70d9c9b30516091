#pragma once

#include "base/bytes.h"

#include <cstddef>
#include <functional>
#include <string_view>

namespace pluvo::doc {

/// Takes the texts that drawings have besides their boxes.
struct DrawingTexts {
  std::function<void(std::u16string_view)> wordArt;
  std::function<void(std::u16string_view)> description;
};

/// Tells the texts of all shapes in the records of drawings, from a place on.
void tellDrawings(base::ByteSpan records, const DrawingTexts& texts);
/// Calls visit(from, to) with where the pictures of shapes lie in the WordDocument stream, whatever the
/// records say.
void forEachShapePicture(base::ByteSpan records, const std::function<void(std::size_t, std::size_t)>& visit);
/// The records with a picture that lies in the Data stream at a place; none where it cannot be read.
base::ByteSpan pictureRecords(base::ByteSpan data, std::size_t at);

}  // namespace pluvo::doc
