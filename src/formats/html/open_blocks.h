#pragma once

#include "events.h"
#include "inline_stack.h"
#include "style.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace pluvo::formats::html {

/// The blocks that are open, the page itself first.
class OpenBlocks {
 public:
  OpenBlocks();

  const std::vector<Block>& all() const { return blocks_; }
  std::size_t size() const { return blocks_.size(); }
  Block& inner() { return blocks_.back(); }
  const Block& inner() const { return blocks_.back(); }
  const Block& operator[](std::size_t i) const { return blocks_[i]; }
  bool has(Name name) const { return counts_[static_cast<std::size_t>(name)] > 0; }

  /// A block begins among the inline elements that are open.
  void push(const Token& token, const Style& style, const Attributes& attributes, const InlineStack& inlines);
  Block pop();

 private:
  std::vector<Block> blocks_;
  std::array<std::uint16_t, static_cast<std::size_t>(Name::count)> counts_{};
};

}  // namespace pluvo::formats::html
