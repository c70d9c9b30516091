#include "base64.h"

#include <nettle/base64.h>

namespace pluvo::encryption {

std::optional<Octets> decoded(std::string_view base64) {
  base64_decode_ctx context = {};
  base64_decode_init(&context);
  Octets bytes(BASE64_DECODE_LENGTH(base64.size()));
  std::size_t size = bytes.size();
  if (base64_decode_update(&context, &size, bytes.data(), base64.size(), base64.data()) == 0 ||
      base64_decode_final(&context) == 0)
    return std::nullopt;
  bytes.resize(size);
  return bytes;
}

std::string encoded(base::ByteSpan bytes) {
  std::string base64(BASE64_ENCODE_RAW_LENGTH(bytes.size()), '\0');
  base64_encode_raw(base64.data(), bytes.size(), bytes.data());
  return base64;
}

}  // namespace pluvo::encryption
