#pragma once

#include "base/bytes.h"
#include "decoder.h"
#include "formats/format.h"
#include "text/byte_places.h"

#include <functional>

namespace pluvo::plain {

class Writer;

/// The text file as it was read: its bytes, and where each position's bytes lie.
class PlainSource final : public formats::Source {
 public:
  /// The map is of the bytes after the byte order mark.
  PlainSource(base::Bytes bytes, const Storage& storage, LineEnd lineEnd, ByteMap map)
      : bytes_(std::move(bytes)), storage_(storage), lineEnd_(lineEnd), map_(std::move(map)) {}

  std::optional<std::string> refusesText(std::u16string_view newText) const override;
  bool holdsHighlight() const override { return false; }
  void write(const document::Document& document, base::Output& out) const override;

 private:
  /// Writes [from, to) of the original text.
  void copyPiece(const text::OriginalText& original, text::BytePlaceCursor& cuts, text::Position from,
                 text::Position to, Writer& writer, const std::function<void()>& pause) const;

  base::Bytes bytes_;
  Storage storage_;
  LineEnd lineEnd_;
  ByteMap map_;
};

}  // namespace pluvo::plain
