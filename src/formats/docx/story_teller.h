#pragma once

#include "content_reader.h"
#include "data_bindings.h"
#include "departed.h"
#include "document/kept.h"
#include "formats/other_texts.h"
#include "styles.h"

#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace pluvo::docx {

/// What the walks through the parts of one package share.
struct Telling {
  formats::OtherTexts& texts;
  const Styles& styles;
  DataBindings& bindings;
  const Departed* departed = nullptr;  ///< none where nothing was edited
};

/// Tells the texts that a part of WordprocessingML holds: its stories, also those in the drawings of others,
/// and beside them formulas, phonetic guides, texts of drawings, alternative texts and the names of
/// commenters. Notes the controls that are bound to data.
class StoryTeller : public BodyEvents {
 public:
  StoryTeller(base::ByteSpan part, const std::string& partName, const Telling& telling,
              xml::Swept swept = xml::Swept::no);

  /// Of a part that is no main part.
  void tellPart();
  /// Of a main part all but its own text, by the places that may hold any. What stood in deleted text is not
  /// told.
  void tellBesideMainText(const BodyMap& map, const std::vector<Offset>& places,
                          const document::Story& model);

  void story(Name kind) override;
  void open(const Tag& tag) override;
  void close(const Tag& tag, Extent endTag) override;
  void openOutside(const Tag& tag) override;
  void closeOutside(const Tag& tag) override;
  void outsideText(std::u16string_view text) override { drawn_ += text; }
  void guide(std::u16string_view text) override;
  void formula(const Formula& formula) override;
  void control(const ControlProperties& properties) override;
  void character(char16_t unit, Extent extent, Name name, std::string_view reference) override;
  void text(const TextElement& element) override;

  void properties(Name kind, const Properties& properties) override;
  void marker(const Marker& marker) override;
  void nextRun(const Tag& left, Extent endTag, const Tag& tag, const Properties* properties) override;
  void simpleField(const Tag& tag, std::u16string_view instruction) override;
  void endSimpleField(Extent endTag) override;
  void paragraphMark(Extent endTag) override;
  void missingParagraph(Name container, Extent endTag) override;
  void rowMark(Extent endTag) override;

 private:
  struct OpenControl {
    Binding binding;
    Position from = 0;
  };
  struct BoundControl {
    Binding binding;
    text::Span span;
  };
  struct Level {
    Name kind = Name::document;
    std::unique_ptr<ContentReader> reader;  ///< none for main text
    std::vector<OpenControl> controls;
    std::vector<BoundControl> bound;
    std::size_t outside = 0;  ///< open elements outside stories, within it
  };
  /// An alternative content: what was told of its alternatives so far.
  struct Alternatives {
    Position from = 0;
    int number = 0;
    std::unordered_set<std::size_t> told;
  };

  BodyEvents& reader();
  bool isMainText() const { return !levels_.empty() && levels_.back().reader == nullptr; }
  /// Whether the character there stood in text that was deleted.
  bool isGone(Position position) const;
  bool isNoteGone(Name kind) const;
  bool isElementGone(const Tag& tag) const;
  void openAlternatives(Name name);
  void closeAlternatives(Name name);
  bool isTwin(std::u16string_view text);
  void tell(formats::Unreached kind, std::u16string_view text);
  void tellStory(Level level);
  void tellPictureTexts(const Tag& tag);
  void tellDrawn();
  void bind(const Binding& binding, const text::OriginalText& text, text::Span span);
  void closeControl();

  Telling telling_;
  BodyWalker walker_;
  std::vector<Level> levels_;
  std::optional<Name> next_;
  std::vector<Alternatives> alternatives_;
  std::u16string drawn_;
  std::string pictureText_, pictureTitle_;
  std::optional<document::Kept> kept_;
  const text::OriginalText* mainText_ = nullptr;
  /// Of main text, the element that was met last as a character.
  Offset lastElement_ = 0;
  Position lastPosition_ = 0;
  bool gone_ = false;      ///< within an element that stood in deleted text
  bool goneNote_ = false;  ///< within a note or comment that goes
};

}  // namespace pluvo::docx
