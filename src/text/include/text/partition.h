#pragma once

#include "text/chunked_stack.h"
#include "text/positions.h"

#include <cassert>
#include <cstddef>
#include <utility>

namespace pluvo::text {

/// A text divided into consecutive parts, none of them empty, each with a value. There is a gap between two
/// parts. Parts in front of it know where they start, parts after it how far their start lies from the end of
/// the text. An edit at the gap therefore touches no other part; the gap moves to the edit, so edits that
/// move forward cost O(1) amortised. Look-ups are O(log parts).
template <class Value>
class Partition {
 public:
  std::size_t count() const { return front_.size() + back_.size(); }
  Position length() const { return length_; }
  /// The value of all the text; null where there are several parts, or none.
  const Value* only() const {
    if (back_.empty()) return front_.size() == 1 ? &front_.back().value : nullptr;
    return front_.empty() && back_.size() == 1 ? &back_.back().value : nullptr;
  }

  /// The part that holds position, which must lie in the text.
  std::size_t indexAt(Position position) const {
    assert(0 <= position && position < length_);
    if (count() == 1) return 0;
    if (position < gap()) {
      return front_.countWhile([&](const Part& part) { return part.place <= position; }) - 1;
    }
    // Mostly it is the part after the last edit.
    if (back_.size() == 1) return front_.size();
    const Position distance = length_ - position;
    if (back_[back_.size() - 2].place < distance) return front_.size();
    return count() - 1 - back_.countWhile([&](const Part& part) { return part.place < distance; });
  }

  /// Part i as it lies in the text.
  struct Place {
    Position from;
    Position to;
    const Value& value;
  };
  Place part(std::size_t i) const {
    const std::size_t inFront = front_.size();
    if (i < inFront) {
      const Part& here = front_[i];
      return {here.place, i + 1 < inFront ? front_[i + 1].place : gap(), here.value};
    }
    const std::size_t below = inFront + back_.size() - 1 - i;
    const Part& here = back_[below];
    return {length_ - here.place, below == 0 ? length_ : length_ - back_[below - 1].place, here.value};
  }

  /// The part that holds position.
  Place partAt(Position position) const {
    const bool isLast = back_.size() == 1 && position >= gap();
    return isLast ? Place{gap(), length_, back_.back().value} : part(indexAt(position));
  }

  /// All parts in order: visit(from, to, value).
  template <class Visit>
  void forEachPart(Visit visit) const {
    const Part* last = nullptr;
    front_.forEach([&](const Part& part) {
      if (last != nullptr) visit(last->place, part.place, last->value);
      last = &part;
    });
    if (last != nullptr) visit(last->place, gap(), last->value);
    for (std::size_t i = front_.size(); i < count(); ++i) {
      const Place part = this->part(i);
      visit(part.from, part.to, part.value);
    }
  }

  /// The parts from the one that holds a position on, uncut, in order: visit(from, to, value), which returns
  /// false to stop.
  template <class Visit>
  void forEachPartFrom(Position position, Visit visit) const {
    std::size_t i = indexAt(position);
    typename ChunkedStack<Part>::Reader front(front_, std::min(i, front_.size()));
    for (const Part* here = front.peek(); here != nullptr; ++i) {
      const Part part = *here;
      front.next();
      here = front.peek();
      if (!visit(part.place, here != nullptr ? here->place : gap(), part.value)) return;
    }
    for (; i < count(); ++i) {
      const Place part = this->part(i);
      if (!visit(part.from, part.to, part.value)) return;
    }
  }

  /// Where part i starts; the length of the text for i == count().
  Position start(std::size_t i) const {
    if (i < front_.size()) return front_[i].place;
    return i == count() ? length_ : length_ - back_[count() - 1 - i].place;
  }
  Position end(std::size_t i) const { return start(i + 1); }

  const Value& value(std::size_t i) const {
    return i < front_.size() ? front_[i].value : back_[count() - 1 - i].value;
  }

  /// Takes out [from, to) and puts the gap there. Of a part that is cut, the piece after the cut gets
  /// remainder(value, units cut off its front).
  template <class Remainder>
  void erase(Position from, Position to, Remainder remainder) {
    assert(0 <= from && from <= to && to <= length_);
    moveGap(from);
    const Position tail = length_ - to;
    const Part* last = front_.empty() ? nullptr : &front_.back();
    Position lastStart = last == nullptr ? 0 : last->place;
    Part dropped;
    while (!back_.empty() && back_.back().place > tail) {
      dropped = std::move(back_.back());
      back_.pop();
      lastStart = length_ - dropped.place;
      last = &dropped;
    }
    if (tail > 0 && (back_.empty() || back_.back().place != tail)) {
      assert(last != nullptr);
      back_.push({tail, remainder(last->value, to - lastStart)});
    }
    length_ -= to - from;
  }

  /// Puts a part in at the gap, which comes to lie after it.
  void insert(Position length, const Value& value) {
    assert(length > 0);
    front_.push({gap(), value});
    length_ += length;
  }
  /// Makes the part in front of the gap longer.
  void extend(Position length) {
    assert(!front_.empty());
    length_ += length;
  }
  /// Adds a part at the end of the text.
  void append(Position length, Value value) {
    moveGap(length_);
    insert(length, std::move(value));
  }
  /// Gives the only part another length.
  void resizeOne(Position length) {
    assert(only() != nullptr && length > 0);
    if (!back_.empty()) back_.back().place = length;
    length_ = length;
  }
  /// Gives the first part after the gap to the one in front of it.
  void join() {
    assert(!front_.empty() && !back_.empty());
    back_.pop();
  }

  Position gap() const { return length_ - (back_.empty() ? 0 : back_.back().place); }
  /// The parts on both sides of the gap; null at the ends of the text.
  const Value* beforeGap() const { return front_.empty() ? nullptr : &front_.back().value; }
  const Value* afterGap() const { return back_.empty() ? nullptr : &back_.back().value; }
  Position startBeforeGap() const { return front_.empty() ? 0 : front_.back().place; }

  /// Whether the parts cover the text without overlap. For tests.
  bool check() const {
    if ((length_ == 0) != (count() == 0)) return false;
    for (std::size_t i = 0; i < count(); ++i) {
      if (start(i) >= end(i) || (i == 0 && start(i) != 0)) return false;
    }
    return true;
  }

 private:
  struct Part {
    /// In front_ its start, in back_ the distance of its start from the end of the text.
    Position place = 0;
    Value value{};
  };

  /// Puts every part that starts before position in front of the gap.
  void moveGap(Position position) {
    while (!front_.empty() && front_.back().place >= position) {
      back_.push({length_ - front_.back().place, front_.back().value});
      front_.pop();
    }
    while (!back_.empty() && length_ - back_.back().place < position) {
      front_.push({length_ - back_.back().place, back_.back().value});
      back_.pop();
    }
  }

  ChunkedStack<Part> front_;
  ChunkedStack<Part> back_;  ///< last part first
  Position length_ = 0;
};

}  // namespace pluvo::text
