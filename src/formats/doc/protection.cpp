#include "protection.h"

#include "base/little_endian.h"
#include "encryption/kept_password.h"
#include "string_tables.h"

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
  if (!type) return std::nullopt;
  formats::Protection protection{*type};
  if (const std::uint32_t key = base::get32(properties, kKey); key != 0)
    protection.isLiftedBy = [key](const std::u16string& given) { return encryption::keyOf(given) == key; };
  return protection;
}

std::optional<formats::Reservation> reservationOf(const Text& text) {
  formats::Reservation reservation;
  if (text.fib.has(Fib::kWriteReservation)) {
    const auto strings = stringsIn(text.in(Table::titles));
    const std::u16string password(strings.size() > kPasswordForChanging ? strings[kPasswordForChanging]
                                                                        : u"");
    reservation.isLiftedBy = [password](const std::u16string& given) { return given == password; };
    if (!password.empty()) return reservation;
  }
  if (!text.fib.has(Fib::kReadOnlyRecommended)) return std::nullopt;
  return formats::Reservation();
}

}  // namespace pluvo::doc
