#include "protection.h"

#include "passwords/kept_password.h"
#include "root_elements.h"

#include <charconv>
#include <utility>

namespace pluvo::docx {

namespace {

using passwords::KeptPassword;

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

/// What is no number is one that nobody counts to.
std::uint32_t turnsOf(std::string_view number) {
  if (number.empty()) return 0;
  std::uint32_t turns = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), turns);
  return error == std::errc() && end == number.data() + number.size() ? turns : passwords::kMostTurns + 1;
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

/// Asks for one more password than a protection asks for already.
void add(formats::Protection& protection, const std::optional<KeptPassword>& password) {
  if (!password) return;
  protection.isLiftedBy = [before = std::move(protection.isLiftedBy), password](const std::u16string& given) {
    return (!before || before(given)) && password->is(given);
  };
}

}  // namespace

std::optional<formats::Protection> protectionOf(const Package& package) {
  std::optional<formats::Protection> protection;
  const archive::Member* const settings = package.member(Role::settings);
  if (settings == nullptr) return protection;
  forEachInRoot(package.archive, *settings, Name::documentProtection, [&](const xml::Scanner& scanner) {
    // Without the attribute Word enforces, whatever the standard says.
    const bool enforced =
        attribute(scanner, Name::enforcement) == nullptr || isOn(valueOf(scanner, Name::enforcement));
    const std::string edit = valueOf(scanner, Name::edit);
    if (!enforced || edit.empty() || edit == "none") return;
    protection = formats::Protection{protectionNamed(edit)};
    add(*protection, passwordIn(scanner));
  });
  forEachInRoot(package.archive, *settings, Name::writeProtection, [&](const xml::Scanner& scanner) {
    const auto password = passwordIn(scanner);
    if (!password) return;
    if (!protection) protection.emplace();
    add(*protection, password);
  });
  return protection;
}

}  // namespace pluvo::docx
