#pragma once

#include "text/positions.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>
#include <vector>

namespace pluvo::text {

/// The result of reading a stretch of text: how many things it holds, and the state after it. Both are kept
/// for every state in which reading may begin.
template <std::size_t kStates>
struct Summary {
  std::array<Position, kStates> counts{};
  std::array<std::uint8_t, kStates> outcomes{};

  static Summary ofNothing() {
    Summary summary;
    for (std::size_t state = 0; state < kStates; ++state)
      summary.outcomes[state] = static_cast<std::uint8_t>(state);
    return summary;
  }

  /// Of the stretch that this is of and the one after it.
  Summary then(const Summary& next) const {
    Summary summary;
    for (std::size_t state = 0; state < kStates; ++state) {
      summary.counts[state] = counts[state] + next.counts[outcomes[state]];
      summary.outcomes[state] = next.outcomes[outcomes[state]];
    }
    return summary;
  }

  bool isOneOutcome() const {
    return std::all_of(outcomes.begin(), outcomes.end(), [&](std::uint8_t o) { return o == outcomes[0]; });
  }
};

/// Counts things in spans of a text, and finds the n-th, in O(log length). It uses summaries of chunks of the
/// text and of groups of chunks, each made when first needed.
///
/// As in a Partition there is a gap at the last edit. Chunks in front of it know where they start, chunks
/// after it how far from the end. On each side chunks form a stack with its top at the gap. A group is
/// sixteen neighbours from an index divisible by sixteen (256, 4096 …). So an edit spoils only the groups at
/// the tops.
///
/// Rule says which units count:
/// - kStates, kFirstState: the states of reading, and the one at the start of the text;
/// - summarise(from, to): reads [from, to);
/// - nth(from, to, state, n): the position of the n-th thing in [from, to), which holds it; n > 0;
/// - length(): of the text;
/// - count(seen, from, to), if it has that: the things in [from, to), where reading from seen tells the
/// state. Whether there is a thing at a position may depend on the text kMargin around it and on the state.
template <class Rule, Position kChunk = 1024>
class Checkpoints {
 public:
  using Summary = text::Summary<Rule::kStates>;

  explicit Checkpoints(Rule rule) : rule_(std::move(rule)) {}

  /// How many things [from, to) holds.
  Position count(Position from, Position to) {
    if (from >= to) return 0;
    if constexpr (requires { rule_.count(from, from, to); }) {
      if (to - from <= kRead)
        if (const auto counted = rule_.count(std::max(from - kGlance, 0), from, to)) return *counted;
    }
    return through(from, to).counts[stateAt(from)];
  }

  struct Found {
    Position position = 0;  ///< of the n-th thing, if there are so many
    Position count = 0;     ///< n, or how many there are
  };
  /// The n-th thing at or after from.
  Found forward(Position from, Position n) {
    const Position length = rule_.length();
    Found found;
    std::uint8_t state = stateAt(from);
    for (Position window = kNearby; from < length && window <= kRead; window *= 16) {
      const Position to = from + std::min(window, length - from);
      const Summary near = rule_.summarise(from, to);
      if (found.count + near.counts[state] >= n) return {rule_.nth(from, to, state, n - found.count), n};
      found.count += near.counts[state];
      state = near.outcomes[state];
      from = to;
    }
    if (from < length) found = forwardByChunks(from, state, n, found.count);
    return found;
  }

  /// The n-th thing in front of to, counted from there.
  Found backward(Position to, Position n) {
    for (std::int64_t window = kNearby;; window *= 8) {
      const auto from = static_cast<Position>(std::max<std::int64_t>(0, to - window));
      const Position held = count(from, to);
      if (held >= n) return {forward(from, held - n + 1).position, n};
      if (from == 0) return {0, held};
    }
  }

  /// [from, to) has been replaced by newLength units.
  void edited(Position from, Position to, Position newLength) {
    if (!built_) return;
    while (!front_.chunks.empty() && front_.chunks.back().place - kMargin >= to) moveToBack();
    while (!back_.chunks.empty() && endOfFirstAfter() <= from - kMargin) moveToFront();
    const Position growth = newLength - (to - from);
    Position start = gap();
    Position end = start;
    while (!front_.chunks.empty() && start > from - kMargin) {
      start = front_.chunks.back().place;
      front_.pop();
    }
    while (!back_.chunks.empty() && (end - kMargin < to || end - start + growth < kChunk / 2)) {
      end = endOfFirstAfter();
      back_.pop();
    }
    length_ += growth;
    addChunks(start, end + growth);
  }

 private:
  static constexpr Position kMargin = 4;
  /// Spans up to this length are read without chunks.
  static constexpr Position kRead = 2 * kChunk;
  /// So much is looked through first.
  static constexpr Position kNearby = kRead / 16;
  /// So much mostly tells in which state reading arrives after it.
  static constexpr Position kGlance = std::min(8, kRead);
  static constexpr Position kLongGlance = std::min(32, kRead);
  static constexpr std::size_t kGroupBits = 4;
  static constexpr std::size_t kGroup = 1U << kGroupBits;

  struct Chunk {
    /// In front_ its start, in back_ the distance of its start from the end of the text.
    Position place = 0;
    bool known = false;
    Summary summary{};
  };
  struct Group {
    Position length = 0;
    bool known = false;
    Summary summary{};
  };
  struct Side {
    std::vector<Chunk> chunks;               ///< the last is at the gap
    std::vector<std::vector<Group>> levels;  ///< of 16, 256 … chunks; only groups that are complete

    void pop() {
      chunks.pop_back();
      std::size_t complete = chunks.size();
      for (auto& level : levels) {
        complete >>= kGroupBits;
        if (level.size() > complete) level.resize(complete);
      }
    }
  };
  /// A chunk (level 0) or group of one side.
  struct Block {
    bool isFront;
    std::size_t level;
    std::size_t index;
  };

  /// What reading [from, to) comes to.
  Summary through(Position from, Position to) {
    if (to - from <= kRead) return rule_.summarise(from, to);
    build();
    const std::size_t first = chunkAt(from) + 1;
    const std::size_t last = chunkAt(to - 1);
    if (first > last) return rule_.summarise(from, to);
    const Summary front = rule_.summarise(from, start(first)).then(ofChunks(first, last));
    return front.then(rule_.summarise(start(last), to));
  }

  /// The state in which reading from the start of the text arrives at position.
  std::uint8_t stateAt(Position position) {
    if constexpr (Rule::kStates == 1) return 0;
    for (const Position reach : {kGlance, kLongGlance}) {
      const Position glanced = std::max(position - reach, 0);
      const Summary glance = rule_.summarise(glanced, position);
      if (glanced == 0) return glance.outcomes[Rule::kFirstState];
      if (glance.isOneOutcome()) return glance.outcomes[0];
    }
    build();
    const std::size_t last = chunkAt(position - 1);
    const Summary nearest = rule_.summarise(start(last), position);
    for (std::size_t reach = kGroup;; reach *= kGroup) {
      const std::size_t first = last - std::min(reach, last);
      const Summary summary = ofChunks(first, last).then(nearest);
      if (first == 0) return summary.outcomes[Rule::kFirstState];
      if (summary.isOneOutcome()) return summary.outcomes[0];
    }
  }

  /// What reading the chunks [first, last) comes to.
  Summary ofChunks(std::size_t first, std::size_t last) {
    Summary summary = Summary::ofNothing();
    forEachBlock(first, last, [&](const Block& block) {
      summary = summary.then(summaryOf(block));
      return true;
    });
    return summary;
  }

  Found forwardByChunks(Position from, std::uint8_t state, Position n, Position counted) {
    build();
    const std::size_t first = chunkAt(from) + 1;
    const Summary rest = rule_.summarise(from, start(first));
    if (counted + rest.counts[state] >= n) return {rule_.nth(from, start(first), state, n - counted), n};
    counted += rest.counts[state];
    state = rest.outcomes[state];
    Position at = start(first);
    bool reached = false;
    Block where{};
    forEachBlock(first, chunkCount(), [&](const Block& block) {
      where = block;
      reached = !passed(block, n, at, state, counted);
      return !reached;
    });
    if (!reached) return {length_, counted};
    while (where.level > 0) {
      for (std::size_t i = 0; i < kGroup; ++i) {
        const std::size_t child = where.isFront ? i : kGroup - 1 - i;
        const Block block{where.isFront, where.level - 1, where.index * kGroup + child};
        if (passed(block, n, at, state, counted)) continue;
        where = block;
        break;
      }
    }
    return {rule_.nth(at, at + lengthOf(where), state, n - counted), n};
  }

  /// Goes past a block, unless it holds the n-th thing.
  bool passed(const Block& block, Position n, Position& at, std::uint8_t& state, Position& counted) {
    const Summary& summary = summaryOf(block);
    if (counted + summary.counts[state] >= n) return false;
    counted += summary.counts[state];
    state = summary.outcomes[state];
    at += lengthOf(block);
    return true;
  }

  /// The largest blocks that make up the chunks [first, last), in order of the text, until visit returns
  /// false.
  template <class Visit>
  void forEachBlock(std::size_t first, std::size_t last, Visit visit) {
    const std::size_t front = front_.chunks.size();
    const std::size_t count = chunkCount();
    std::size_t i = first;
    while (i < std::min(last, front)) {
      std::size_t level = 0;
      while (isMultiple(i, level + 1) && i + size(level + 1) <= std::min(last, front)) ++level;
      if (!visit(Block{true, level, i >> level * kGroupBits})) return;
      i += size(level);
    }
    if (last <= front) return;
    const std::size_t bottom = count - last;
    std::size_t top = count - std::max(first, front);
    while (top > bottom) {
      std::size_t level = 0;
      while (isMultiple(top, level + 1) && top - bottom >= size(level + 1)) ++level;
      top -= size(level);
      if (!visit(Block{false, level, top >> level * kGroupBits})) return;
    }
  }
  static std::size_t size(std::size_t level) { return std::size_t{1} << level * kGroupBits; }
  static bool isMultiple(std::size_t i, std::size_t level) { return (i & (size(level) - 1)) == 0; }

  const Summary& summaryOf(const Block& block) {
    Side& side = block.isFront ? front_ : back_;
    if (block.level > 0) return groupAt(side, block).summary;
    Chunk& chunk = side.chunks[block.index];
    if (!chunk.known) {
      const std::size_t index = block.isFront ? block.index : chunkCount() - 1 - block.index;
      chunk.summary = rule_.summarise(start(index), start(index + 1));
      chunk.known = true;
    }
    return chunk.summary;
  }

  Position lengthOf(const Block& block) {
    if (block.level > 0) return groupAt(block.isFront ? front_ : back_, block).length;
    const std::size_t index = block.isFront ? block.index : chunkCount() - 1 - block.index;
    return start(index + 1) - start(index);
  }

  const Group& groupAt(Side& side, const Block& block) {
    if (side.levels.size() < block.level) side.levels.resize(block.level);
    auto& level = side.levels[block.level - 1];
    if (level.size() <= block.index) level.resize(block.index + 1);
    if (!level[block.index].known) {
      Group group{0, true, Summary::ofNothing()};
      for (std::size_t i = 0; i < kGroup; ++i) {
        const std::size_t child = block.isFront ? i : kGroup - 1 - i;
        const Block part{block.isFront, block.level - 1, block.index * kGroup + child};
        group.summary = group.summary.then(summaryOf(part));
        group.length += lengthOf(part);
      }
      side.levels[block.level - 1][block.index] = group;
    }
    return side.levels[block.level - 1][block.index];
  }

  void build() {
    if (built_) return;
    built_ = true;
    length_ = rule_.length();
    const Position parts = partsOf(length_);
    back_.chunks.reserve(static_cast<std::size_t>(parts));
    for (Position i = parts; i-- > 0;)
      back_.chunks.push_back({length_ - partStart(length_, i, parts), false, {}});
  }

  /// Divides [from, to) into chunks, between the gap's two sides.
  void addChunks(Position from, Position to) {
    const Position parts = partsOf(to - from);
    for (Position i = 0; i < parts; ++i) {
      front_.chunks.push_back({from + partStart(to - from, i, parts), false, {}});
    }
  }
  static Position partsOf(Position length) { return length / kChunk + (length % kChunk != 0 ? 1 : 0); }
  static Position partStart(Position length, Position i, Position parts) {
    return static_cast<Position>(static_cast<std::int64_t>(length) * i / parts);
  }

  void moveToBack() {
    Chunk chunk = front_.chunks.back();
    front_.pop();
    chunk.place = length_ - chunk.place;
    back_.chunks.push_back(chunk);
  }
  void moveToFront() {
    Chunk chunk = back_.chunks.back();
    back_.pop();
    chunk.place = length_ - chunk.place;
    front_.chunks.push_back(chunk);
  }

  std::size_t chunkCount() const { return front_.chunks.size() + back_.chunks.size(); }
  Position gap() const { return length_ - (back_.chunks.empty() ? 0 : back_.chunks.back().place); }
  Position endOfFirstAfter() const { return start(front_.chunks.size() + 1); }

  /// Where chunk i starts, in order of the text; the length for the one after the last.
  Position start(std::size_t i) const {
    if (i < front_.chunks.size()) return front_.chunks[i].place;
    return i >= chunkCount() ? length_ : length_ - back_.chunks[chunkCount() - 1 - i].place;
  }
  std::size_t chunkAt(Position position) const {
    if (position < gap()) {
      const auto after = std::upper_bound(front_.chunks.begin(), front_.chunks.end(), position,
                                          [](Position p, const Chunk& chunk) { return p < chunk.place; });
      return static_cast<std::size_t>(after - front_.chunks.begin()) - 1;
    }
    const auto after = std::upper_bound(back_.chunks.rbegin(), back_.chunks.rend(), length_ - position,
                                        [](Position d, const Chunk& chunk) { return chunk.place < d; });
    return front_.chunks.size() + static_cast<std::size_t>(after - back_.chunks.rbegin()) - 1;
  }

  Rule rule_;
  bool built_ = false;
  Position length_ = 0;
  Side front_;
  Side back_;
};

}  // namespace pluvo::text
