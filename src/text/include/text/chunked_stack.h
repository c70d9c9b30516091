#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace pluvo::text {

/// A stack that any element can be read of. Its memory is that of its elements: growing moves none but the
/// few near the top, and copies share the rest.
///
/// All but the topmost elements lie in full chunks, which never change. A full top gives its lower half to a
/// new chunk, and an empty one takes a chunk back. So the two are far apart.
template <class Element, std::size_t kChunk = 256>
class ChunkedStack {
 public:
  // What was moved from is empty: its counts go with the elements.
  ChunkedStack() = default;
  ChunkedStack(const ChunkedStack&) = default;
  ChunkedStack(ChunkedStack&& from) noexcept
      : chunks_(std::move(from.chunks_)),
        below_(std::exchange(from.below_, 0)),
        top_(std::move(from.top_)),
        inTop_(std::exchange(from.inTop_, 0)) {}
  ChunkedStack& operator=(ChunkedStack from) noexcept {
    chunks_.swap(from.chunks_);
    std::swap(below_, from.below_);
    top_.swap(from.top_);
    std::swap(inTop_, from.inTop_);
    return *this;
  }
  ~ChunkedStack() = default;

  bool empty() const { return inTop_ == 0; }
  std::size_t size() const { return below_ + inTop_; }

  const Element& operator[](std::size_t i) const {
    require(i < size());
    return i >= below_ ? top_.data()[i - below_] : chunks_[i / kChunk][i % kChunk];
  }
  Element& back() { return require(!empty()), top_.data()[inTop_ - 1]; }
  const Element& back() const { return require(!empty()), top_.data()[inTop_ - 1]; }

  void push(Element element) {
    if (inTop_ == top_.size()) makeRoom();
    top_.data()[inTop_++] = std::move(element);
  }
  void pop() {
    require(!empty());
    if (--inTop_ == 0 && below_ > 0) rise();
  }

  /// Reads elements from one of them on, upwards. Valid until the stack changes.
  class Reader {
   public:
    explicit Reader(const ChunkedStack& stack, std::size_t from = 0)
        : stack_(&stack), chunk_(std::min(from / kChunk, stack.chunks_.size())) {
      const std::size_t skipped = from - chunk_ * kChunk;
      load();
      at_ = std::min(at_ + skipped, end_);
    }
    /// Null after the topmost.
    const Element* peek() const { return at_ != end_ ? at_ : nullptr; }
    void next() {
      if (++at_ == end_) load();
    }

   private:
    void load() {
      if (chunk_ > stack_->chunks_.size()) return;
      const bool isTop = chunk_ == stack_->chunks_.size();
      at_ = isTop ? stack_->top_.data() : stack_->chunks_[chunk_].get();
      end_ = at_ + (isTop ? stack_->inTop_ : kChunk);
      ++chunk_;
    }

    const ChunkedStack* stack_;
    std::size_t chunk_ = 0;
    const Element* at_ = nullptr;
    const Element* end_ = nullptr;
  };

  /// From the lowest to the topmost.
  template <class Visit>
  void forEach(Visit visit) const {
    for (const Chunk& chunk : chunks_) {
      for (const Element& element : std::span(chunk.get(), kChunk)) visit(element);
    }
    for (const Element& element : std::span(top_.data(), inTop_)) visit(element);
  }

  /// How many of the lowest elements hold the condition, which none above them does.
  template <class Condition>
  std::size_t countWhile(Condition holds) const {
    const auto within = [&](const Element* from, std::size_t count) {
      return static_cast<std::size_t>(std::partition_point(from, from + count, holds) - from);
    };
    if (below_ == 0 || holds(top_.front())) return below_ + within(top_.data(), inTop_);
    const auto above = std::partition_point(chunks_.begin(), chunks_.end(),
                                            [&](const Chunk& chunk) { return holds(chunk[0]); });
    if (above == chunks_.begin()) return 0;
    const auto last = static_cast<std::size_t>(above - chunks_.begin()) - 1;
    return last * kChunk + within(chunks_[last].get(), kChunk);
  }

 private:
  using Chunk = std::shared_ptr<const Element[]>;

  /// In what ships, too, as the library's containers check. Theirs would divide.
  static void require(bool holds) {
    if (!holds) std::abort();
  }
  /// Apart, so that a push is short.
  [[gnu::noinline]] void makeRoom() {
    if (inTop_ < 2 * kChunk) return top_.resize(std::clamp<std::size_t>(2 * inTop_, 1, 2 * kChunk));
    std::shared_ptr<Element[]> chunk(new Element[kChunk]);
    const auto middle = top_.begin() + kChunk;
    std::move(top_.begin(), middle, chunk.get());
    chunks_.push_back(std::move(chunk));
    std::move(middle, top_.end(), top_.begin());
    below_ += kChunk;
    inTop_ = kChunk;
  }
  [[gnu::noinline]] void rise() {
    const Element* const elements = chunks_.back().get();
    std::copy(elements, elements + kChunk, top_.begin());
    chunks_.pop_back();
    below_ -= kChunk;
    inTop_ = kChunk;
  }

  std::vector<Chunk> chunks_;
  std::size_t below_ = 0;     ///< elements in chunks
  std::vector<Element> top_;  ///< and room for more
  std::size_t inTop_ = 0;     ///< of it; none only where there are no chunks
};

}  // namespace pluvo::text
