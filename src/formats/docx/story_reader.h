#pragma once

#include "content_reader.h"
#include "styles.h"

#include <memory>
#include <string>
#include <vector>

namespace pluvo::docx {

/// Reads the stories of one part, those in the drawings of others, too. It alone knows where they stand:
/// which elements hold one, and at which character of another story.
class StoryReader : public BodyEvents {
 public:
  StoryReader(base::ByteSpan part, const std::string& partName, const Styles& styles,
              document::Purpose purpose, xml::Swept swept = xml::Swept::no);

  /// Of a part that is no main part.
  void readPart();
  /// The stories beside a main part's own text, by the places that may hold any.
  void readBesideMainText(const BodyMap& map, const std::vector<Offset>& places);

  void story(Name kind) override;
  void open(const Tag& tag) override;
  void close(const Tag& tag, Extent endTag) override;
  void openOutside(const Tag& tag) override;
  void closeOutside(const Tag& tag) override;
  void formula(const Formula& formula) override;
  void control(const ControlProperties& properties) override;
  void character(char16_t unit, Extent extent, Name name, std::string_view reference) override;
  void nextText(const TextWay& way, std::string_view ascii) override { reader_->nextText(way, ascii); }
  void text(const TextElement& element) override;
  void properties(Name kind, const Properties& properties) override;
  void marker(const Marker& marker) override;
  void nextRun(const Tag& left, Extent endTag, const Tag& tag, const Properties* properties) override;
  void simpleField(const Tag& tag, std::u16string_view instruction) override;
  void endSimpleField(Extent endTag) override;
  void paragraphMark(Extent endTag) override;
  void missingParagraph(Name container, Extent endTag) override;
  void rowMark(Extent endTag) override;

 protected:
  struct Level {
    Name kind = Name::document;
    Offset begin = 0;                       ///< of the story's element
    std::unique_ptr<ContentReader> reader;  ///< none for main text
    std::size_t outside = 0;                ///< open elements outside stories, within it
    /// The characters met last: their first byte and their place in the text.
    Offset lastElement = 0;
    Position lastPosition = 0;
    bool lastIsText = false;
  };
  virtual void storyBegins(const Level& /*level*/) {}
  virtual void storyEnds(Level level, Offset end) = 0;

  const BodyWalker& walker() const { return walker_; }
  const xml::Scanner& scanner() const { return walker_.scanner(); }
  bool inStory() const { return !levels_.empty(); }
  bool isMainText() const { return inStory() && levels_.back().reader == nullptr; }
  /// The story at hand.
  const Level& level() const { return levels_.back(); }
  /// How many stories there are around the place that the walk has come to.
  std::size_t depth() const { return levels_.size(); }

 private:
  BodyEvents& reader() { return *reader_; }
  void findReader();
  void note(Offset element, bool isText);

  const Styles& styles_;
  const document::Purpose purpose_;
  BodyWalker walker_;
  std::vector<Level> levels_;
  BodyEvents nobody_;
  BodyEvents* reader_ = &nobody_;  ///< of the story at hand
  Name next_ = Name::other;        ///< the kind of the story that opens next
};

}  // namespace pluvo::docx
