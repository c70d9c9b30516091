#pragma once

#include "engine/request.h"
#include "model/content.h"
#include "text/search.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace pluvo::elsewhere {

/// The beginning of a request, looked for by itself.
class Beginning {
 public:
  explicit Beginning(const engine::Request& request);

  bool empty() const { return length_ == 0; }
  text::Position length() const { return length_; }
  const text::Search& search() const { return search_; }

  /// Whether the view shows it in a text at all.
  bool standsIn(const model::Content& content, bool fieldCodes) const;
  /// How often it stands in a text of its own, one behind the other.
  std::int64_t countIn(std::u16string_view text) const;

 private:
  Beginning(const std::u16string& text, const engine::Request& request);

  text::Position length_;
  text::Search search_;
};

}  // namespace pluvo::elsewhere
