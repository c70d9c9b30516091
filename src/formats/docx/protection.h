#pragma once

#include "formats/format.h"
#include "package.h"

#include <optional>

namespace pluvo::docx {

/// The protection against editing that the settings enforce.
std::optional<formats::Protection> protectionOf(const Package& package);
/// Whether whoever changes it is to give a password, or to read it only.
std::optional<formats::Reservation> reservationOf(const Package& package);

}  // namespace pluvo::docx
