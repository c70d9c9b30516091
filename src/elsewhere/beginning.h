#pragma once

#include "engine/request.h"
#include "text/pieces.h"
#include "text/run_map.h"
#include "text/search.h"
#include "text/visible.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pluvo::elsewhere {

/// The beginning of a request, looked for by itself.
class Beginning {
 public:
  explicit Beginning(const engine::Request& request);

  bool empty() const { return text_.empty(); }
  text::Position length() const { return static_cast<text::Position>(text_.size()); }
  const text::Search& search() const;

  /// Whether the view shows it in a text at all.
  bool standsIn(const text::PieceText& text, const text::RunMap<text::Visibility>& visibility,
                bool fieldCodes) const;
  /// How often it stands in a text of its own, one after the other.
  std::int64_t countIn(const text::Stretch& text) const;

 private:
  std::u16string text_;
  text::SearchFlags flags_;
  mutable std::optional<text::Search> search_;  ///< made when it is first asked for: many documents need none
};

}  // namespace pluvo::elsewhere
