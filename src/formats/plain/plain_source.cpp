#include "plain_source.h"

#include "base/utf.h"
#include "writer.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace pluvo::plain {

using text::Position;

std::optional<std::string> PlainSource::refusesText(std::u16string_view newText) const {
  if (holdsAll(storage_.coding, newText)) return std::nullopt;
  const auto point = firstWithoutPlace(storage_.coding, newText);
  std::array<char, 16> name = {};
  std::snprintf(name.data(), name.size(), "U+%04X", static_cast<unsigned>(*point));
  if (base::isSurrogate(*point))
    return std::string("The new text holds half of a character (") + name.data() + "), which " +
           storage_.name + ", the encoding of this file, has no place for; give whole characters.";
  return std::string("The new text holds the character ") + name.data() + ", which " + storage_.name +
         ", the encoding of this file, does not have; save the file as UTF-8 first, or leave the character "
         "out.";
}

void PlainSource::copyPiece(const text::OriginalText& original, text::BytePlaceCursor& cuts, Position from,
                            Position to, Writer& writer, const std::function<void()>& pause) const {
  // Half of a character whose bytes stand for two units is written as a unit.
  const auto encodeUnitAt = [&](Position position) {
    const char16_t unit = original[position];
    writer.encode(std::u16string_view(&unit, 1));
  };
  const auto placeOf = [&](Position position) {
    if (const auto cut = cuts.offsetOf(position)) return ByteMap::Place{*cut, false};
    return map_.placeOf(position);
  };
  ByteMap::Place begin = placeOf(from);
  if (begin.insidePair) {
    encodeUnitAt(from);
    begin = placeOf(++from);
  }
  const ByteMap::Place end = placeOf(to);
  const base::ByteSpan content = bytes_.view.subspan(storage_.markLength);
  const std::size_t last = std::min(end.offset, content.size());  // the final mark has no bytes
  if (begin.offset < last) writer.copy(content.subspan(begin.offset, last - begin.offset), pause);
  if (end.insidePair) encodeUnitAt(to - 1);
}

void PlainSource::write(const document::Document& document, base::Output& out) const {
  const document::Story& story = document.mainText();
  out.write(bytes_.view.first(storage_.markLength));
  Writer writer(storage_.coding, storage_.name, lineEnd_, out);
  const text::OriginalText& original = story.text().original();
  const std::function<void()> pause = [this] {
    if (map_.isDecoded()) bytes_.release();  // the text itself does not lie there
  };
  text::BytePlaceCursor cuts(story.text().cuts());
  Position left = story.length() - 1;  // the last paragraph mark has no bytes
  story.text().forEachPiece([&](const text::Piece& piece, std::u16string_view added) {
    const Position length = std::min(piece.length, left);
    left -= length;
    if (piece.isNew()) {
      writer.encode(added.substr(0, static_cast<std::size_t>(length)));
    } else if (length > 0) {
      copyPiece(original, cuts, piece.original, piece.original + length, writer, pause);
    }
  });
  writer.finish();
  const std::size_t odd = (bytes_.view.size() - storage_.markLength) % unitSize(storage_.coding.encoding);
  out.write(bytes_.view.last(odd));  // half of a unit at the end of the file
}

}  // namespace pluvo::plain
