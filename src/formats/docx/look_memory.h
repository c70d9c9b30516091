#pragma once

#include "xml/name_resolver.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace pluvo::docx {

/// The look that a run or a paragraph's mark asks for.
struct RunLook {
  enum class Hidden : std::uint8_t { inherited, no, yes };
  std::uint8_t highlight = 0;
  Hidden hidden = Hidden::inherited;
  bool deleted = false;   ///< a paragraph's mark
  bool numbered = false;  ///< it holds a tracked change of format, which has a number of its own
  std::string style;
};

/// The run properties read last, by their bytes. A document has few of them for its many runs, and the same
/// bytes under the same namespace declarations look the same.
class LookMemory {
 public:
  struct Known {
    std::string_view bytes;  ///< after the start tag, end tag included
    std::size_t inner = 0;   ///< without the end tag
    xml::Scope scope = 0;    ///< as the scanner numbers it; 0: nothing yet
    RunLook look;
  };

  /// The remembered tag that the bytes begin with, or null.
  const Known* recall(std::string_view bytes, xml::Scope scope) const {
    for (const Known& known : known_) {
      if (known.scope == scope && bytes.starts_with(known.bytes)) return &known;
    }
    return nullptr;
  }

  void remember(const Known& known) {
    if (known.bytes.size() > kLongest) return;
    known_[next_] = known;
    next_ = (next_ + 1) % known_.size();
  }

 private:
  static constexpr std::size_t kLongest = 512;

  std::array<Known, 16> known_;
  std::size_t next_ = 0;
};

}  // namespace pluvo::docx
