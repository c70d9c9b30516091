#pragma once

#include "text/positions.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace pluvo::document {

class LiveRanges;

/// A pair start <= end over the text of a story that follows its text through every edit. Loses its story
/// when that goes.
class LiveRange {
 public:
  LiveRange(LiveRanges& ranges, text::Span span);
  LiveRange(const LiveRange&) = delete;
  LiveRange& operator=(const LiveRange&) = delete;
  ~LiveRange();

  text::Span span() const {
    return {static_cast<text::Position>(both_ >> 32U), static_cast<text::Position>(both_ & 0xFFFFFFFFU)};
  }
  void set(text::Span span) {
    both_ = std::uint64_t{static_cast<std::uint32_t>(span.from)} << 32U | static_cast<std::uint32_t>(span.to);
  }

 private:
  friend class LiveRanges;
  void moveWith(text::Span replaced, text::Position newLength);

  LiveRanges* ranges_;
  std::size_t place_ = 0;
  /// Start and end as one number: what is written by halves and read as a whole waits for the processor's
  /// stores, and ranges are written and read all the time.
  std::uint64_t both_ = 0;
};

/// All live ranges of one story.
///
/// When n characters are inserted at p, a start after p moves, and one at p stays. An end after p moves, and
/// so does one at p unless the range is empty. When a span is replaced, positions after it move. Strictly
/// inside it a start goes to the start of the new text, an end and an empty range to its end. So a range over
/// exactly the old text then covers exactly the new.
class LiveRanges {
 public:
  LiveRanges() = default;
  LiveRanges(const LiveRanges&) = delete;
  LiveRanges& operator=(const LiveRanges&) = delete;
  ~LiveRanges();

  void moveWith(text::Span replaced, text::Position newLength);

 private:
  friend class LiveRange;
  void add(LiveRange& range);
  void drop(const LiveRange& range);

  std::vector<LiveRange*> ranges_;
};

}  // namespace pluvo::document
