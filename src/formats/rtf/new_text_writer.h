#pragma once

#include "document/edit_script.h"
#include "row_definitions.h"
#include "splicer.h"

#include <vector>

namespace pluvo::rtf {

/// Where new text goes, and what holds there.
struct Place {
  std::size_t at = 0;
  State state;
  std::size_t level = 0;
};

/// Puts new text between the old bytes, now or at the next place that takes text.
class NewTextWriter {
 public:
  NewTextWriter(Splicer& splicer, const RowDefinitions& rows) : splicer_(splicer), rows_(rows) {}

  Place here(std::size_t at) const { return {at, splicer_.walker().state(), splicer_.depth()}; }
  /// In front of a character whose bytes begin there; of a living text in front of a group that is deleted.
  Place inFrontOf(std::size_t begin, const document::Step& text) const;

  void write(const document::Step& text, const Place& place);
  /// Whole paragraphs go to the place, directly after a mark. The rest waits for the next
  /// paragraph.
  void writeAfterMark(const document::Step& text, const Place& place);
  /// At the end of a document or story, outside the table that it may end in.
  void writeAtEnd(const document::Step& text, std::size_t at);

  void wait(const document::Step& text) { waiting_.push_back(text); }
  /// The same for a place that does not lie in deleted text.
  void waitForLiving(const document::Step& text);
  bool waits() const { return !waiting_.empty(); }
  bool waitsForLiving() const { return waitsForLiving_; }
  void flushAt(const Place& place);
  std::vector<document::Step> takeWaiting();

  /// Where the text that was kept or written last ends, in the edited text.
  text::Position written() const { return written_; }
  void written(text::Position to) { written_ = to; }

 private:
  void writeRuns(const document::Step& text, std::size_t from, std::size_t to, const State& state);
  std::string wordsFor(text::Position first, const State& state) const;
  std::uint16_t depthOf(text::Position at) const;
  bool hidesItself(text::Position at) const;

  Splicer& splicer_;
  const RowDefinitions& rows_;
  std::vector<document::Step> waiting_;
  bool waitsForLiving_ = false;
  text::Position written_ = 0;
};

}  // namespace pluvo::rtf
