#pragma once

#include "document/content.h"
#include "document/content_builder.h"
#include "stories.h"
#include "walker.h"

#include <array>
#include <string>
#include <vector>

namespace pluvo::doc {

/// Builds a story from a walk over its text. Each character of the file is one of the story, so that places
/// in both differ by where the story begins alone. In which tables a paragraph lies is known where its row
/// ends: a row is kept until then. Marks of cells and rows that make no row are paragraph marks.
class TextReader final : public Events {
 public:
  /// A restriction holds for all of the text.
  explicit TextReader(Walker& walker, const document::Restriction* restriction = nullptr);

  /// A story of the file.
  document::Content read(const StoryPlace& place);

  void text(text::Position at, std::u16string_view units, const CharacterLook& look) override;
  void mark(text::Position at, Mark mark, std::int32_t depth, const CharacterLook& look) override;

 private:
  /// Characters of one look, or one that marks a field.
  struct Run {
    document::Look look;
    char16_t fieldMark = 0;
    std::size_t count = 0;
  };
  /// A kind of character that cannot be edited as others are, with the number of the restriction.
  enum class Odd : std::uint8_t { shape, comment, section, field, row, end };
  struct Paragraph {
    Mark mark = Mark::paragraph;
    document::Look look;
    std::size_t depth = 0;
    std::size_t runs = 0;
  };

  document::Look lookOf(const CharacterLook& look) const;
  void restrict(Odd odd, document::Look& look);
  void restrictEnd(document::Content& content);
  void special(text::Position at, std::u16string_view units, const CharacterLook& look);
  void add(std::u16string_view units, const document::Look& look);
  void handOn();
  void decideMarks();
  void play(const Run& run);
  void playMark(const Paragraph& paragraph);
  void goToDepth(std::size_t depth);

  Walker& walker_;
  document::ContentBuilder builder_;
  std::int8_t restriction_ = document::kNone;
  std::array<std::int8_t, 6> odd_;
  word::WdStoryType kind_ = word::wdMainTextStory;
  std::vector<FieldMark> fieldMarks_;
  std::size_t nextFieldMark_ = 0;

  // The state of a row, or of a paragraph:
  std::u16string units_;
  std::vector<Run> runs_;
  std::vector<Paragraph> paragraphs_;
  std::size_t played_ = 0;  ///< of units_
  std::size_t runsOfParagraph_ = 0;
  bool endsInMark_ = false;
};

}  // namespace pluvo::doc
