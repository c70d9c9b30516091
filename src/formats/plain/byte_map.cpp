#include "byte_map.h"

#include "token.h"

namespace pluvo::plain {

using text::Position;

namespace {

template <Encoding kEncoding>
ByteMap::Place walk(base::ByteSpan bytes, const CodePage* page, std::size_t offset, Position units) {
  while (units > 0 && bytes.size() - offset >= unitSize(kEncoding)) {
    const Token token = firstToken<kEncoding>(bytes.subspan(offset), page);
    if (token.units() > units) return {offset, true};
    units -= token.units();
    offset += token.bytes;
  }
  return {offset, false};
}

}  // namespace

ByteMap::Place ByteMap::placeOf(Position position) const {
  if (text_ != nullptr) return text_->placeOf(position);
  if (!decoded_) return {static_cast<std::size_t>(position), false};
  const auto from = places_.before(position);
  return withEncoding(coding_.encoding, [&]<Encoding kEncoding>() {
    return walk<kEncoding>(bytes_, coding_.page, from.offset, position - from.position);
  });
}

}  // namespace pluvo::plain
