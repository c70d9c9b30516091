#pragma once

#include "errors/context.h"
#include "prepared_search.h"
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

  /// New ranges, collapsed where the search starts: at the top, or at the start of the selection.
  void place(word::Application& application, bool atTop);
};

/// A host's range, which must be there. Throws Fault kObjectNotSet.
word::Range& required(const std::shared_ptr<word::Range>& range);

/// Finds the next block: a beginning, an ending within the distance, an inside text between them. Each step
/// works under its own tag and answers "not found" after reporting a fault. Nothing of it grows with the
/// length of the block, so far as the host's counts do not.
class Locator {
 public:
  Locator(errors::Context& context, word::Application& application, const PreparedSearch& search,
          WorkingRanges& ranges)
      : context_(context), application_(application), search_(search), ranges_(ranges) {}

  /// Moves on to the next block, rejecting candidates; false at the end of the document. Throws the faults
  /// that no step reports.
  bool next();

  /// The next search starts behind the current block.
  void resumeBehindBlock(std::int32_t position);

 private:
  enum class Verdict { block, mismatch, tooFar };

  bool find(word::Range& range, const std::u16string& text);
  bool findBeginAndEnd();
  bool checkUnitsApart();
  bool findInsideText();
  bool matchFullText(word::Range& range, const std::u16string& fullText);
  Verdict judge();
  void resumeBehindBeginning();

  errors::Context& context_;
  word::Application& application_;
  const PreparedSearch& search_;
  WorkingRanges& ranges_;
};

}  // namespace pluvo::engine
