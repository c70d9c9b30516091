#include "protection.h"

#include "base/little_endian.h"
#include "encryption/kept_password.h"
#include "strings.h"

#include <string>

namespace pluvo::doc {

namespace {

constexpr std::size_t kFlags = 4, kKey = 0x4E, kLaterFlags = 594;
constexpr std::uint32_t kComments = 1U << 20U, kForms = 1U << 25U, kRevisions = 1U << 30U;
constexpr std::uint8_t kCommentsMeanReading = 1;
constexpr std::size_t kPasswordForChanging = 17;

std::optional<word::WdProtectionType> typeIn(base::ByteSpan properties) {
  if (properties.size() < kKey + 4) return std::nullopt;
  const std::uint32_t flags = base::get32(properties, kFlags);
  if ((flags & kForms) != 0) return word::wdAllowOnlyFormFields;
  if ((flags & kComments) != 0) {
    const bool meansReading =
        properties.size() > kLaterFlags && (properties[kLaterFlags] & kCommentsMeanReading) != 0;
    return meansReading ? word::wdAllowOnlyReading : word::wdAllowOnlyComments;
  }
  if ((flags & kRevisions) != 0) return word::wdAllowOnlyRevisions;
  return std::nullopt;
}

}  // namespace

std::optional<formats::Protection> protectionOf(const Text& text) {
  const base::ByteSpan properties = text.in(Table::properties);
  const auto type = typeIn(properties);
  const std::uint32_t key = type ? base::get32(properties, kKey) : 0;
  std::u16string forChanging;
  if (text.fib.has(Fib::kWriteReservation)) {
    const auto strings = stringsIn(text.in(Table::titles));
    if (strings.size() > kPasswordForChanging) forChanging = strings[kPasswordForChanging];
  }
  if (!type && forChanging.empty()) return std::nullopt;
  formats::Protection protection;
  if (type) protection.type = *type;
  if (key != 0 || !forChanging.empty()) {
    protection.isLiftedBy = [key, forChanging](const std::u16string& given) {
      return (key == 0 || encryption::keyOf(given) == key) && (forChanging.empty() || given == forChanging);
    };
  }
  return protection;
}

}  // namespace pluvo::doc
