#pragma once

#include "base/bytes.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string_view>

namespace pluvo::doc {

/// The streams that hold property sets.
inline constexpr const char* kSummary = "\005SummaryInformation";
inline constexpr const char* kDocumentSummary = "\005DocumentSummaryInformation";

/// A text in a stream of properties, up to its end.
struct PropertyText {
  std::u16string_view text;
  std::size_t set = 0;   ///< of the stream's sets
  std::uint32_t id = 0;  ///< of the property
  bool isName = false;   ///< of a property
  bool isWide = false;   ///< two bytes a unit
  /// Where in the stream the bytes of each unit begin, and where those of the last one end.
  std::span<const std::size_t> places = {};
};

/// Tells the texts of a stream of properties, and whether it holds a thumbnail. Values that cannot be read
/// are left out.
struct PropertyTexts {
  std::function<void(const PropertyText&)> text;
  std::function<void()> thumbnail;
};
void tellPropertySet(base::ByteSpan stream, const PropertyTexts& texts);

}  // namespace pluvo::doc
