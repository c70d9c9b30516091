#pragma once

#include "engine/observer.h"
#include "engine/pass_result.h"
#include "prepared_search.h"
#include "trail.h"
#include "word/word_processor.h"

#include <cstdint>
#include <memory>
#include <string>

namespace pluvo::engine {

/// The four ranges of the current block. The begin range carries the search point from block to block.
struct WorkingRanges {
  std::shared_ptr<word::Range> block;
  std::shared_ptr<word::Range> begin;
  std::shared_ptr<word::Range> end;
  std::shared_ptr<word::Range> inside;

  // The finds of the texts, each prepared once for the pass. None with the limits kept, where each find is
  // prepared anew.
  std::shared_ptr<word::Find> beginFind;
  std::shared_ptr<word::Find> endFind;
  std::shared_ptr<word::Find> insideFind;

  /// The one they lie in, see word::Document.
  std::int32_t story = 0;

  /// Whether there are any: not where a pass could not be prepared, nor where the document has no story of
  /// the kinds asked for.
  bool placed() const { return block != nullptr; }
  /// New ranges, collapsed where the search starts: at the top of the first of the stories, or at the start
  /// of the selection. A selection in another story has no place there; then it is the top.
  void place(word::Application& application, word::StoryKinds stories, bool atTop);
  /// The same at the top of the next of the stories; false where there is none.
  bool placeInNext(word::Application& application, word::StoryKinds stories);
};

/// An object of the word processor, which must be there. Throws Fault kObjectNotSet.
template <class Object>
Object& required(const std::shared_ptr<Object>& object) {
  if (!object) throw errors::objectNotSet();
  return *object;
}

void moveSelectionToTop(word::Application& application);

/// Finds the next block: a beginning, an ending within the distance, an inside text between them. Each step
/// works under its own tag and answers "not found" after reporting a fault. Nothing of it grows with the
/// length of the block, so far as the host's counts do not.
class Locator {
 public:
  Locator(Trail& trail, word::Application& application, const PreparedSearch& search, WorkingRanges& ranges)
      : trail_(trail), application_(application), search_(search), ranges_(ranges) {}

  /// Moves on to the next block, rejecting candidates; false at the end of the story, and where the
  /// observer stops the search. Counts what it finds and rejects. Throws the faults that no step reports.
  bool next(PassObserver& observer, PassResult& result);
  /// Whether it was the observer that ended the search.
  bool isStopped() const { return isStopped_; }

  /// The next search starts after the current block, or at this position where that lies later.
  void resumeAfterBlock(std::int32_t atLeast = 0);

 private:
  enum class Verdict { block, mismatch, tooFar };

  bool hasEnding() const { return !search_.end.empty(); }
  bool find(word::Range& range, std::shared_ptr<word::Find>& prepared, const SearchText& text);
  bool FindBeginAndEnd();
  bool CheckUnitsApart();
  bool FindInsideText();
  bool MatchFullText(word::Range& range, const std::u16string& fullText);
  bool extendsToFullTexts();
  bool holdsInsideText();
  Verdict judge();
  void resumeAfterBeginning();

  Trail& trail_;
  word::Application& application_;
  const PreparedSearch& search_;
  WorkingRanges& ranges_;
  bool isStopped_ = false;
};

}  // namespace pluvo::engine
