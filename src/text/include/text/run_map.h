#pragma once

#include "text/partition.h"
#include "text/positions.h"

#include <cstdint>

namespace pluvo::text {

/// A value for every position of a text, kept as maximal runs of equal values. Few runs, whatever the length
/// of the text; edits that move forward are O(1) amortised, look-ups O(log runs).
///
/// To be built front to back with append, then edited in step with the text. A position or span that does not
/// lie in the map is a bug in the caller.
template <class Value>
class RunMap {
 public:
  struct Run {
    Position from = 0;
    Position to = 0;
    Value value{};
    bool operator==(const Run&) const = default;
  };

  RunMap() = default;
  RunMap(Position length, const Value& value) { append(length, value); }

  Position length() const { return parts_.length(); }
  std::size_t runCount() const { return parts_.count(); }

  void append(Position length, const Value& value) {
    if (parts_.afterGap() != nullptr) return replace(this->length(), this->length(), length, value);
    if (length == 0) return;
    if (parts_.beforeGap() != nullptr && *parts_.beforeGap() == value) return parts_.extend(length);
    parts_.insert(length, value);
  }

  /// Null unless all positions have the same.
  const Value* onlyValue() const { return parts_.only(); }
  Value valueAt(Position position) const { return parts_.partAt(position).value; }
  /// The maximal run that holds position.
  Run runAt(Position position) const {
    if (const Value* const only = onlyValue()) return {0, parts_.length(), *only};
    return run(parts_.indexAt(position));
  }
  Position runStart(Position position) const { return parts_.start(parts_.indexAt(position)); }
  Position runEnd(Position position) const { return parts_.end(parts_.indexAt(position)); }

  /// All runs in order, at little cost each: visit(from, to, value).
  template <class Visit>
  void forEachRun(Visit visit) const {
    parts_.forEachPart(visit);
  }

  /// Gives [from, to) one value.
  void set(Position from, Position to, const Value& value) {
    if (from >= to) return;
    const Run first = runAt(from);
    if (first.value == value && to <= first.to) return;
    replace(from, to, to - from, value);
  }

  /// Puts newLength positions of one value in the place of [from, to).
  void replace(Position from, Position to, Position newLength, const Value& value) {
    const Position newLengthOfAll = length() - (to - from) + newLength;
    const Value* const only = onlyValue();
    if (only != nullptr && newLengthOfAll > 0 && (newLength == 0 || *only == value))
      return parts_.resizeOne(newLengthOfAll);
    replaceRuns(from, to, newLength, value);
  }

  /// The runs that touch [from, to) in order, cut to it; valid until the next edit.
  ///
  ///     for (const auto& run : map.runs(from, to)) …
  class Runs {
   public:
    class Iterator {
     public:
      Iterator(const Runs* runs, std::size_t index) : runs_(runs), index_(index) {}
      Run operator*() const { return runs_->clipped(index_); }
      Iterator& operator++() {
        ++index_;
        return *this;
      }
      bool operator==(const Iterator& other) const { return index_ == other.index_; }

     private:
      const Runs* runs_;
      std::size_t index_;
    };

    Runs(const RunMap& map, Position from, Position to) : map_(&map), from_(from), to_(to) {}
    Iterator begin() const { return {this, from_ < to_ ? map_->parts_.indexAt(from_) : 0}; }
    Iterator end() const { return {this, from_ < to_ ? map_->parts_.indexAt(to_ - 1) + 1 : 0}; }

   private:
    Run clipped(std::size_t index) const {
      Run run = map_->run(index);
      run.from = std::max(run.from, from_);
      run.to = std::min(run.to, to_);
      return run;
    }

    const RunMap* map_;
    Position from_;
    Position to_;
  };
  Runs runs(Position from, Position to) const { return {*this, from, to}; }
  Runs runs() const { return {*this, 0, length()}; }

  /// Whether the runs cover the map and are maximal. For tests.
  bool check() const {
    for (std::size_t i = 1; i < parts_.count(); ++i) {
      if (parts_.value(i - 1) == parts_.value(i)) return false;
    }
    return parts_.check();
  }

 private:
  void replaceRuns(Position from, Position to, Position newLength, const Value& value) {
    parts_.erase(from, to, [](const Value& cut, Position) { return cut; });
    if (newLength > 0) {
      const Value* before = parts_.beforeGap();
      if (before != nullptr && *before == value) {
        parts_.extend(newLength);
      } else {
        parts_.insert(newLength, value);
      }
    }
    const Value* before = parts_.beforeGap();
    const Value* after = parts_.afterGap();
    if (before != nullptr && after != nullptr && *before == *after) parts_.join();
  }

  Run run(std::size_t index) const {
    const auto part = parts_.part(index);
    return {part.from, part.to, part.value};
  }

  Partition<Value> parts_;
};

/// Which views show a character: the one with field results, the one with field codes. Hidden text is in
/// none.
enum Visibility : std::uint8_t { kNowhere = 0, kInResults = 1, kInCodes = 2, kEverywhere = 3 };

}  // namespace pluvo::text
