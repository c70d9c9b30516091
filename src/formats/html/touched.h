#pragma once

#include "document/edit_script.h"
#include "document/story.h"
#include "text/positions.h"
#include "text/run_map.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace pluvo::formats::html {

/// Where edits touch the original text.
class Touched {
 public:
  Touched(const document::EditScript& script, const document::Story& story,
          const text::RunMap<std::uint8_t>& originalHighlight);

  /// Whether a span is; to be asked front to back.
  bool in(text::Position from, text::Position to);
  /// Whether within the length of the longest reference another text stands after it than before.
  bool isNear(text::Position at) const;

 private:
  std::vector<text::Span> spans_;
  std::size_t next_ = 0;
};

}  // namespace pluvo::formats::html
