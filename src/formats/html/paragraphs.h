#pragma once

#include "walk_state.h"

#include <cstddef>

namespace pluvo::formats::html {

/// The paragraph that a walk is in, or that begins with the next character.
class Paragraphs {
 public:
  explicit Paragraphs(WalkState& walk) : walk_(walk) {}

  bool isOpen() const { return isOpen_; }
  /// A character comes.
  void begin();
  /// The block's tag comes that it ends at; whether the innermost block ends there, too.
  void end(std::size_t at, bool endsBlock);
  /// The mark of a section came, which ends it without a mark of its own.
  void endAtSection();
  /// The cell ends in which no paragraph ended last: it has one without text.
  void addToCell(std::size_t at, const State& markState);

  /// Whether a blank is no text here.
  bool folds() const { return folds_; }
  void fold(bool folds) { folds_ = folds; }

  /// The look of its mark: that of an element of Word's for it which ends the text at hand.
  const State& markState() const { return markState_; }
  void lookOfMark(const State& state) { markState_ = state; }

  /// Where text after all others would go, if the page has said so and nothing has come since.
  std::size_t endOfText(std::size_t otherwise) const { return endAt_ == kNowhere ? otherwise : endAt_; }
  void endText(std::size_t at) { endAt_ = endOfText(at); }
  void goOn() { endAt_ = kNowhere; }

 private:
  static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

  WalkState& walk_;
  bool isOpen_ = false;
  bool endedSection_ = false;  ///< since the last block's tag
  bool hadText_ = false;       ///< since the last block's tag
  bool folds_ = true;
  State markState_;
  std::size_t endAt_ = kNowhere;
};

inline void Paragraphs::begin() {
  endAt_ = kNowhere;
  hadText_ = true;
  markState_ = {};
  if (isOpen_) return;
  if (walk_.tables.isBetweenCells()) walk_.tables.interrupt();
  isOpen_ = true;
}

}  // namespace pluvo::formats::html
