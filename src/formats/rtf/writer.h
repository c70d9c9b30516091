#pragma once

#include "document/edit_script.h"
#include "document/story.h"
#include "output.h"
#include "reader.h"
#include "walker.h"

#include <array>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::rtf {

/// Writes an edited document: walks over the old one and splices. Every brace and control word stays but for
/// those of what goes as a whole.
class Writer final : public Events {
 public:
  Writer(std::string_view file, const Tables& tables, const TextMap& map, const document::Story& story);

  void write(base::Output& out);

  void text(Extent bytes) override;
  void character(const Character& character) override;
  void open(std::size_t begin) override;
  void close(std::size_t end, bool hasBrace) override;
  void missingFallback(std::uint16_t count, Extent at) override;
  void word(const Token& token) override;
  void group(const SkippedGroup& group) override;
  void end(std::size_t at) override;

 private:
  /// An open brace, in the old bytes as in the new.
  struct Level {
    std::size_t begin = 0;
    text::Position position = 0;
    State before;
    std::uint8_t highlight = 0;  ///< in force in the new bytes
  };
  /// Where new text goes, and what holds there.
  struct Place {
    std::size_t at = 0;
    State state;
    std::size_t level = 0;
  };

  // Characters, from original positions on.
  void keep(const document::Step& step, const Character& character);
  void drop(const document::Step& step, const Character& character);
  void put(const document::Step& step, const Character& character);
  void emptyRow(const Character& rowMark);
  void missingCell(const Character& rowMark);
  void fillFallback(std::size_t at);
  void closeFields(std::size_t at);

  void copyTo(std::size_t at);
  void highlightTo(std::uint8_t colour);
  std::uint8_t wanted(text::Position at);
  std::int32_t placeOfColour(std::uint8_t colour);
  std::string newColours() const;

  void flush(std::size_t at);
  void flushAt(const Place& place);
  void write(const document::Step& text, const Place& place);
  void writeRuns(const document::Step& text, std::size_t from, std::size_t to, const State& state);
  Place here(std::size_t at) const;
  Place inFront(const Character& character, const document::Step& text) const;
  std::uint16_t depthOf(text::Position at) const;
  bool hidesItself(text::Position at) const;
  bool isRowDropped();

  std::string_view file_;
  const Tables& tables_;
  const TextMap& map_;
  const document::Story& story_;
  document::EditScript script_;
  std::vector<text::Span> droppedRows_;
  std::size_t nextDroppedRow_ = 0;
  std::set<std::int32_t> droppedComments_;
  std::size_t nextOddity_ = 0;

  Walker walker_;
  SplicedTokens head_;  ///< up to where new colours go …
  SplicedTokens rest_;  ///< … and from there on
  SplicedTokens* out_ = &head_;
  bool isHeadOpenEnded_ = false;
  std::vector<Level> levels_;
  text::Position position_ = 0;                                ///< in the original text
  text::Position droppedTo_ = 0;                               ///< the last character that went ends there
  text::Position written_ = 0;                                 ///< in the edited text
  text::Position labelAt_ = -1;                                ///< of the edited text: where a label was kept
  std::size_t droppedFields_ = 0;                              ///< open fields that go
  std::size_t droppedFieldAt_ = static_cast<std::size_t>(-1);  ///< where the outermost of them begins
  std::size_t unclosed_ = 0;                   ///< groups that are kept, and that the document ends in
  std::size_t runBegin_ = 0;                   ///< bytes of the text at hand …
  text::Position runPosition_ = 0;             ///< … and its first position
  std::uint16_t missingFallback_ = 0;          ///< of the character written last …
  Extent missingAt_;                           ///< … and where it should stand
  std::vector<document::Step> waiting_;        ///< new text for the next place that takes text
  bool waitsForLiving_ = false;                ///< … which must be outside deleted text
  text::RunMap<std::uint8_t>::Run highlight_;  ///< the one looked up last

  // The definition of a row before its first cell.
  bool inRowWords_ = false;
  std::size_t rowBegin_ = 0;
  text::Position rowPosition_ = -1;
  std::uint8_t rowHighlight_ = 0;

  std::array<std::int32_t, Colours::kWordColours + 1> colourPlaces_ = {};
  std::vector<std::uint8_t> newColours_;
};

}  // namespace pluvo::rtf
