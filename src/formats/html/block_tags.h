#pragma once

#include "paragraphs.h"
#include "walk_state.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace pluvo::formats::html {

/// Opens and closes blocks: some end where others begin, and end tags may be left out.
class BlockTags {
 public:
  BlockTags(WalkState& walk, Paragraphs& paragraphs) : walk_(walk), paragraphs_(paragraphs) {}

  void open(const Token& token, const Style& style, const Attributes& attributes);
  /// False where an end tag ended nothing.
  bool closeNamed(Name name, const Token& token);

  /// Ends the paragraph at hand, with its element where that is open.
  void endParagraph(std::size_t at);
  /// Ends what a block's start tag ends.
  void makeRoomFor(const Token& token);
  void push(const Token& token, const Style& style, const Attributes& attributes);
  /// The innermost one, without its paragraph.
  Block pop();
  void close(std::size_t at, Extent endTag);
  /// Until so many are open.
  void closeTo(std::size_t count, std::size_t at);

 private:
  void closeItem(Name name, std::size_t at);

  WalkState& walk_;
  Paragraphs& paragraphs_;
  /// Of those that would be too deep.
  std::array<std::uint32_t, static_cast<std::size_t>(Name::count)> flattened_{};
};

}  // namespace pluvo::formats::html
