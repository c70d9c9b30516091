#pragma once

#include "data_bindings.h"
#include "departed.h"
#include "document/kept.h"
#include "formats/other_texts.h"
#include "story_reader.h"
#include "styles.h"

#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace pluvo::docx {

/// The state that walks through the parts of one package share.
struct Telling {
  formats::OtherTexts& texts;
  const Styles& styles;
  DataBindings& bindings;
  const DepartedNotes* departed = nullptr;  ///< none where nothing was edited
};

/// Tells the texts that a part of WordprocessingML holds: its stories, also those in the drawings of others.
/// Beside them it tells formulas, phonetic guides, texts of drawings, alternative texts and the names of
/// commenters. Notes the controls that are bound to data.
class StoryTeller : public StoryReader {
 public:
  StoryTeller(base::ByteSpan part, const std::string& partName, const Telling& telling,
              xml::Swept swept = xml::Swept::no);

  /// Of a part that is no main part.
  void tellPart() { readPart(); }
  /// Of a main part all but its own text, by the places that may hold any. What stood in deleted text is not
  /// told.
  void tellBesideMainText(const BodyMap& map, const std::vector<Offset>& places,
                          const document::Story& story);

  void story(Name kind) override;
  void open(const Tag& tag) override;
  void close(const Tag& tag, Extent endTag) override;
  void openOutside(const Tag& tag) override;
  void closeOutside(const Tag& tag) override;
  void outsideText(std::u16string_view text) override { drawn_ += text; }
  void guide(std::u16string_view text) override;
  void formula(const Formula& formula) override;
  void control(const ControlProperties& properties) override;

 private:
  struct OpenControl {
    Binding binding;
    Position from = 0;
  };
  struct BoundControl {
    Binding binding;
    text::Span span;
  };
  /// Of a story.
  struct Controls {
    std::vector<OpenControl> open;
    std::vector<BoundControl> bound;
  };
  /// An alternative content: the texts told of its alternatives so far.
  struct Alternatives {
    Position from = 0;
    int number = 0;
    std::unordered_set<std::size_t> told;
  };

  void storyBegins(const Level& level) override;
  void storyEnds(Level level, Offset end) override;

  /// Whether the character there stood in text that was deleted.
  bool isGone(Position position) const;
  bool isNoteGone(Name kind) const;
  bool isElementGone(const Tag& tag) const;
  void openAlternatives(Name name);
  void closeAlternatives(Name name);
  bool isTwin(std::u16string_view text);
  void tell(formats::Unreached kind, std::u16string_view text);
  void tellStory(Level level, const Controls& controls);
  void tellPictureTexts(const Tag& tag);
  void tellDrawn();
  void bind(const Binding& binding, const text::OriginalText& text, text::Span span);
  void closeControl();

  Telling telling_;
  std::vector<Controls> controls_;  ///< of each story around the place that the walk has come to
  std::vector<Alternatives> alternatives_;
  std::u16string drawn_;
  std::string pictureText_, pictureTitle_;
  std::optional<document::Kept> kept_;
  const text::OriginalText* mainText_ = nullptr;
  bool gone_ = false;      ///< within an element that stood in deleted text
  bool goneNote_ = false;  ///< within a note or comment that goes
};

}  // namespace pluvo::docx
