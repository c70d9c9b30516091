#pragma once

#include "body_events.h"
#include "formats/spliced_bytes.h"

#include <string_view>

namespace pluvo::docx {

/// A part under change.
class PartOutput : public formats::SplicedBytes<Offset> {
 public:
  using SplicedBytes::source;
  using SplicedBytes::SplicedBytes;

  std::string_view source(Extent extent) const { return source(extent.begin, extent.end); }
};

}  // namespace pluvo::docx
