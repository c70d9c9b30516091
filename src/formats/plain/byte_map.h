#pragma once

#include "base/bytes.h"
#include "encoding.h"
#include "formats/place_map.h"
#include "text/bytes_text.h"
#include "text/positions.h"

#include <memory>

namespace pluvo::plain {

/// Where the bytes of every position of a text begin. Noted every so many units only; in between the
/// bytes are read again.
class ByteMap {
 public:
  using Place = text::BytesText::Place;

  /// Of a text that lies in its bytes, each unit in one.
  ByteMap() = default;
  /// Of a text that lies in its bytes as they are.
  explicit ByteMap(std::shared_ptr<const text::BytesText> text) : text_(std::move(text)) {}
  ByteMap(const Coding& coding, base::ByteSpan bytes)
      : decoded_(true), coding_(coding), bytes_(bytes), places_(kInterval) {}

  bool isDecoded() const { return decoded_; }

  /// To be called front to back, at the start of a token.
  void note(text::Position position, std::size_t offset) { places_.note(position, offset); }
  /// Up to this many units go between two notes.
  static constexpr text::Position kInterval = 1024;

  Place placeOf(text::Position position) const;

 private:
  bool decoded_ = false;
  std::shared_ptr<const text::BytesText> text_;
  Coding coding_;
  base::ByteSpan bytes_;
  formats::PlaceMap<std::size_t> places_;
};

}  // namespace pluvo::plain
