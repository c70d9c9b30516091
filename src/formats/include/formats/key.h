#pragma once

#include "base/secret_text.h"

#include <memory>
#include <variant>

namespace pluvo::formats {

/// What opens an encrypted document: the password as the user gave it, or what a format derived from that.
/// The latter opens a new version without being derived again. Its memory is wiped when the last holder goes.
using Key = std::variant<base::SecretText, base::SecretBytes>;
/// Null where no key is known.
using SharedKey = std::shared_ptr<const Key>;

}  // namespace pluvo::formats
