#pragma once

#include "formats/format.h"
#include "word_file.h"

#include <optional>

namespace pluvo::doc {

/// The protection against editing that a document enforces.
std::optional<formats::Protection> protectionOf(const Text& text);
/// Whether whoever changes it is to give a password, which it holds in plain, or to read it only.
std::optional<formats::Reservation> reservationOf(const Text& text);

}  // namespace pluvo::doc
