#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pluvo::base {

/// Without leading zeros or blanks, with a minus sign when negative.
std::u16string decimal(std::int64_t number);

/// With every line end as a word processor's one paragraph mark: a line feed, alone or after a 13, is
/// that 13.
std::u16string withParagraphMarks(std::u16string_view text);

}  // namespace pluvo::base
