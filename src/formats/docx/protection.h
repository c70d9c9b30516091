#pragma once

#include "formats/format.h"
#include "package.h"

#include <optional>

namespace pluvo::docx {

/// The protection against editing that the settings enforce.
std::optional<formats::Protection> protectionOf(const Package& package);
/// Whether a password is asked for before changes, or reading only is recommended.
std::optional<formats::Reservation> reservationOf(const Package& package);

}  // namespace pluvo::docx
