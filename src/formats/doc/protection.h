#pragma once

#include "formats/format.h"
#include "word_file.h"

#include <optional>

namespace pluvo::doc {

/// The protection against editing that a document enforces.
std::optional<formats::Protection> protectionOf(const Text& text);
/// Whether a password, which it holds in plain, is asked for before changes, or reading only is recommended.
std::optional<formats::Reservation> reservationOf(const Text& text);

}  // namespace pluvo::doc
