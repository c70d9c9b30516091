#pragma once

#include "bookmarks.h"
#include "document/edit_script.h"
#include "new_text_writer.h"
#include "reader.h"
#include "row_definitions.h"
#include "splicer.h"
#include "walker.h"

#include <cstdint>
#include <functional>
#include <set>
#include <string_view>

namespace pluvo::rtf {

/// A story of the file, as its reader knows it.
struct OldStory {
  const TextMap& map;
  /// None of main text.
  const StoryBeginning* beginning = nullptr;
};

/// Writes an edited story: walks over the old one and splices. Every brace and control word stays but for
/// those of parts that go as a whole.
class StoryWriter final : public Events {
 public:
  /// Bytes that stay may hold other things to be written: others(those).
  StoryWriter(std::string_view file, Tables& tables, const OldStory& old, const document::Story& story,
              NewDocument& out, std::function<void(Extent)> others);

  void write() { walker_.walk(); }

  void text(Extent bytes) override;
  void character(const Character& character) override;
  void open(std::size_t begin) override;
  void close(std::size_t end, bool hasBrace) override;
  void missingFallback(std::uint16_t count, Extent at) override;
  void word(const Token& token) override;
  void group(const SkippedGroup& group) override;
  void alternative(Extent bytes) override { splicer_.alternative(bytes); }
  void end(std::size_t at) override;

 private:
  // Characters, from original positions on.
  void keep(const document::Step& step, const Character& character);
  void drop(const document::Step& step, const Character& character);
  void put(const document::Step& step, const Character& character);
  void keepPart(const document::Step& step, Extent bytes);
  void followFields(const Character& character, text::Position from);
  bool oddRow(const Character& rowMark);
  void missingCell(const Character& rowMark);

  bool goes(const SkippedGroup& group);
  void endWithoutBytes(std::size_t at);
  void closeFields(std::size_t at);
  void flush(std::size_t at);

  const TextMap& map_;
  const document::Story& story_;
  NewDocument& out_;
  std::function<void(Extent)> others_;
  Walker walker_;
  Splicer splicer_;
  document::EditScript script_;
  document::Dropped dropped_;
  RowDefinitions rows_;
  NewTextWriter newText_;
  DepartedBookmarks departed_;
  std::set<std::int32_t> droppedComments_;
  std::size_t nextOddity_ = 0;

  text::Position position_ = 0;                                ///< in the original text
  text::Position droppedTo_ = 0;                               ///< the last character that went ends there
  text::Position labelAt_ = -1;                                ///< of the edited text: where a label was kept
  std::size_t droppedFields_ = 0;                              ///< open fields that go …
  std::size_t droppedFieldAt_ = static_cast<std::size_t>(-1);  ///< … and where the outermost begins
  std::size_t unclosed_ = 0;  ///< groups that are kept, and that the document ends in
};

}  // namespace pluvo::rtf
