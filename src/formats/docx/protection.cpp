#include "protection.h"

#include "encryption/kept_password.h"
#include "root_elements.h"

#include <charconv>
#include <utility>

namespace pluvo::docx {

namespace {

using encryption::KeptPassword;

word::WdProtectionType protectionNamed(std::string_view edit) {
  if (edit == "trackedChanges") return word::wdAllowOnlyRevisions;
  if (edit == "comments") return word::wdAllowOnlyComments;
  if (edit == "forms") return word::wdAllowOnlyFormFields;
  return word::wdAllowOnlyReading;
}

std::string algorithmNumbered(std::string_view number) {
  if (number == "3") return "MD5";
  if (number == "4") return "SHA-1";
  if (number == "12") return "SHA-256";
  if (number == "13") return "SHA-384";
  if (number == "14") return "SHA-512";
  return {};
}

/// A spin count that is not a number never verifies.
std::uint32_t turnsOf(std::string_view number) {
  if (number.empty()) return 0;
  std::uint32_t turns = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), turns);
  return error == std::errc() && end == number.data() + number.size() ? turns : encryption::kMostTurns + 1;
}

/// The standards keep a password in attributes of different names. Nothing where there is none.
std::optional<KeptPassword> passwordIn(const xml::Scanner& scanner) {
  const auto value = [&](Name name) { return valueOf(scanner, name); };
  if (std::string hash = value(Name::hash); !hash.empty()) {
    return KeptPassword{algorithmNumbered(value(Name::cryptAlgorithmSid)), value(Name::salt), std::move(hash),
                        turnsOf(value(Name::cryptSpinCount)), KeptPassword::Of::key};
  }
  if (std::string hash = value(Name::hashValue); !hash.empty()) {
    return KeptPassword{value(Name::algorithmName), value(Name::saltValue), std::move(hash),
                        turnsOf(value(Name::spinCount)), KeptPassword::Of::password};
  }
  return std::nullopt;
}

/// A protection or a reservation asks for this password.
template <class Asking>
void ask(Asking& asking, KeptPassword password) {
  asking.hashes = password.turns;
  if (asking.hashes > encryption::kMostTurns) {
    asking.obstacle =
        "Each password for its protection would have to be hashed more than 1,000,000 times, ten times as "
        "often as word processors do; that could take seconds or hours, so none is tried. Lift the "
        "protection in a word processor.";
  }
  asking.isLiftedBy = [password = std::move(password)](const std::u16string& given) {
    return password.is(given);
  };
}

}  // namespace

std::optional<formats::Protection> protectionOf(const Package& package) {
  std::optional<formats::Protection> protection;
  const zip::Member* const settings = package.member(Role::settings);
  if (settings == nullptr) return protection;
  // The last one counts.
  std::optional<KeptPassword> password;
  forEachInRoot(package.archive, *settings, Name::documentProtection, [&](const xml::Scanner& scanner) {
    // Without the attribute Word enforces, whatever the standard says.
    const bool enforced =
        attribute(scanner, Name::enforcement) == nullptr || isOn(valueOf(scanner, Name::enforcement));
    const std::string edit = valueOf(scanner, Name::edit);
    if (!enforced || edit.empty() || edit == "none") return;
    protection = formats::Protection{protectionNamed(edit)};
    password = passwordIn(scanner);
  });
  if (protection && password) ask(*protection, *std::move(password));
  return protection;
}

std::optional<formats::Reservation> reservationOf(const Package& package) {
  std::optional<formats::Reservation> reservation;
  const zip::Member* const settings = package.member(Role::settings);
  if (settings == nullptr) return reservation;
  forEachInRoot(package.archive, *settings, Name::writeProtection, [&](const xml::Scanner& scanner) {
    auto password = passwordIn(scanner);
    reservation.reset();
    if (!password && !isOn(valueOf(scanner, Name::recommended))) return;
    reservation.emplace();
    if (password) ask(*reservation, *std::move(password));
  });
  return reservation;
}

}  // namespace pluvo::docx
