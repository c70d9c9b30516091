#pragma once

#include "body_walker.h"
#include "document/edit_script.h"
#include "identifiers.h"
#include "part_output.h"
#include "properties.h"
#include "reader.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace pluvo::docx {

using document::EditScript;
using document::Step;

/// What a deletion takes with it besides text: markers of bookmarks and comments, by kind and id.
class Casualties {
 public:
  virtual ~Casualties() = default;
  virtual bool goes(const Marker& marker) const = 0;
  /// Places outside the deleted text where such markers stand, just before these positions.
  virtual const std::vector<Position>& places() const = 0;
};

/// Carries an edit over to the main part. Walks the touched paragraphs once more, each from the nearest place
/// known, leaves every byte where nothing is touched, and writes touched runs anew:
///
/// - new text stands in the run of the character it is put beside, but outside its tracked deletion where it
///   lives, and outside a phonetic guide of which nothing stays on one side of it;
/// - a run is divided only where its highlight changes, and one that lost its text goes, with the hyperlink
/// or
///   the like that holds nothing else;
/// - a new paragraph mark ends the paragraph with a copy of its properties, and whatever is open in it is
/// closed
///   and opened again;
/// - what is left of a paragraph that lost its mark is carried into the next one, with the markers in
/// between.
class Rewriter : private BodyEvents {
 public:
  Rewriter(base::ByteSpan part, const std::string& partName, const BodyMap& map, const document::Story& model,
           const text::RunMap<std::uint8_t>& originalHighlight, const Casualties& casualties,
           std::function<std::string()> placeholderStyle, EditScript script);

  /// The new part; the spans hold as long as this.
  std::vector<base::ByteSpan> rewrite();

 private:
  static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

  struct Open {
    Tag tag;
    Offset inner = 0;                 ///< behind the start tag, and behind a paragraph's properties
    std::size_t outBegin = kNowhere;  ///< where the start tag and what is behind inner stand in the output
    std::size_t outInner = kNowhere;
    bool kept = false;       ///< holds text, old or new
    bool lost = false;       ///< held text that went
    bool reopened = false;   ///< stands for the rest of a divided element
    bool bare = false;       ///< its tags are no longer written
    bool toComplex = false;  ///< a simple field that has become a complex one
    bool expanded = false;   ///< was <a/> and has content now
    bool touched = false;
    bool textChanged = false;
    Offset content = 0;          ///< content control: where its content begins
    bool breaksLines = false;    ///< control, paragraph: it holds a line break that a control has to allow
    bool headed = false;         ///< paragraph: what was carried stands in it
    bool splitOff = false;       ///< paragraph: not the first of those it was divided into
    bool behindCarried = false;  ///< paragraph: its content joins what was carried, its header waits
    std::string header;
    Properties properties;                                    ///< paragraph
    std::u16string instruction;                               ///< simple field
    std::string markers;                                      ///< to stay when the element goes
    std::vector<std::pair<std::size_t, std::size_t>> passed;  ///< alternatives not chosen, in the output
  };
  struct Run {
    bool active = false;
    bool isNew = false;    ///< made for new text that is beside no run
    bool touched = false;  ///< written anew from here on
    Tag tag;
    std::string_view properties;
    std::string ownProperties;  ///< of new text
    Offset headerEnd = 0;
    Offset rawEnd = 0;  ///< behind what was left as it is
    std::uint8_t colour = 0;
    bool numbered = false;                   ///< the properties hold a number that no other run may have
    std::optional<std::uint8_t> openColour;  ///< of the run now open in the output
    bool headerWritten = false;
    std::string gap;  ///< what stands between elements, until the run is open
  };
  struct FieldState {
    bool kept = false;
    bool inResult = false;
  };
  /// What a paragraph begins with.
  struct Header {
    std::string tag;
    std::string properties;
  };
  /// New text behind a mark, to stand at the beginning of the next paragraph.
  struct Waiting {
    Step put;
    std::string runProperties;
    Header
        header;  ///< of the paragraphs it consists of; none: that of the paragraph it comes to stand before
    std::string_view deletion;  ///< the one to take after
  };
  /// New text up to a mark, or what follows the last.
  struct Line {
    std::string runs;
    std::uint8_t markColour = 0;
    bool markDeleted = false;
  };

  void open(const Tag& tag) override;
  void close(const Tag& tag, Extent endTag) override;
  void properties(Name kind, const Properties& properties) override;
  void passedAlternative(Extent extent) override;
  void marker(const Marker& marker) override;
  void text(const TextElement& element) override;
  void character(char16_t unit, Extent extent, Name name, std::string_view reference) override;
  void formula(const Formula& formula) override;
  void simpleField(const Tag& tag, std::u16string_view instruction) override;
  void endSimpleField(Extent endTag) override;
  void paragraphMark(Extent endTag) override;
  void missingParagraph(Name container, Extent endTag) override;
  void rowMark(Extent endTag) override;

  // The walk (rewriter.cpp).
  struct Visits {
    std::vector<text::Span> spans;
    std::size_t touches = 0;  ///< stretches of text that are touched
  };
  Visits placesToVisit() const;
  bool idle() const;
  void jumpTowards(Position position);
  void copyTo(Offset to);
  void closeContainer(Extent endTag);
  void removePassed(Open& open);
  void unbind(Open& open);
  void loseText();
  void passOn(const Open& closed);
  void openTable(const Tag& tag);
  void trackField(char16_t unit, bool kept);
  bool inCode() const;
  std::size_t trackedDeletion() const;
  std::size_t guideToLeave(const Step& step) const;
  void openRuby(const Tag& tag);
  void holdLineBreaks(std::u16string_view units);
  const Markup& markup() const;
  std::string_view qualifiedName(const Tag& tag) const;

  // Runs (rewriter_runs.cpp).
  void beginRun(const Tag& tag);
  void endRun(Extent endTag);
  void beginNewRun(const std::string& runProperties);
  void endNewRun();
  void touchRun();
  void ensureRun(std::uint8_t colour);
  void interruptRun();
  void keepElement(Extent extent, std::uint8_t colour);
  void dropElement(Extent extent);
  void passBytesBefore(Extent extent);
  void beginChangedText(const TextElement& element);
  void carryText(const TextElement& element, const Step& step);
  void put(const Step& step);
  void putPart(const Step& step, bool deleted);
  std::string deletionTag();
  std::string_view textName(bool deleted) const;
  void putBesideReference(const Step& step);
  void write(std::u16string_view units, std::uint8_t colour, std::string_view tag);
  void highlightFormula(const Formula& formula, std::uint8_t colour);
  void writeAlone(char16_t unit, std::uint8_t colour);
  void writeBytes(std::string_view bytes, Position at, std::string_view tag);
  void beginText(std::uint8_t colour, std::string_view tag);
  void flushText();
  template <class Visit>
  void forEachColour(Position at, std::u16string_view units, Visit visit) const;
  template <class Visit>
  void forEachFate(Position at, std::u16string_view units, Visit visit) const;
  std::string runs(std::u16string_view units, Position at, const std::string& runProperties);

  // Paragraphs (rewriter_paragraphs.cpp).
  Open& paragraph() { return opens_[paragraph_]; }
  void enterParagraphContent();
  void expand(Open& open);
  void divideParagraph(std::uint8_t markColour, bool markDeleted);
  void closeInlines(std::size_t from);
  void openInlines(std::size_t from);
  std::string reopeningTag(std::size_t index);
  void replaceHeader(const std::string& header);
  void writeCarried();
  std::string forNewMark(std::string properties, std::uint8_t colour, bool deleted,
                         std::string_view runProperties);
  std::string headerOf(const Open& open, const std::string& properties) const;
  Header headerOfSplitOff(const Open& open) const;
  void noteDeletion(const Open& paragraph);
  void settleCarriedBreaks();
  void keepParagraph(Extent endTag);
  void mergeParagraph(Extent endTag);
  std::vector<Line> lines(const Step& put, const std::string& runProperties);
  void wait(const Step& step, std::string runProperties = {}, Header header = {});
  void placeWholeParagraphs();
  void placeWaiting(const Header& header);
  Header plainHeader() const;
  void placeBlocksBefore(const Tag& tag);
  void collectInRemovedTable(Position end);
  std::string fieldMark(std::string_view type) const;
  std::string beginningOfField(const Open& open) const;
  void writeFieldAnew(Position from, Position end);
  void putAll(bool behind, Extent endTag);

  base::ByteSpan part_;
  const BodyMap& map_;
  const document::Story& model_;
  const text::RunMap<std::uint8_t>& originalHighlight_;
  const Casualties& casualties_;
  std::function<std::string()> placeholderStyle_;
  std::optional<std::string> knownPlaceholderStyle_;
  EditScript script_;
  PartOutput output_;
  BodyWalker walker_;
  Identifiers identifiers_;

  std::vector<Open> opens_;
  std::size_t paragraph_ = 0;  ///< index of the open paragraph; 0 when there is none
  Run run_;
  std::string_view textProperties_;  ///< of the last run with text in the paragraph
  std::string pendingText_;          ///< as it is written
  std::string pendingTag_;
  std::string_view leadingBlanks_;  ///< of the element at hand, not yet written
  std::string_view trailingBlanks_;
  std::size_t guide_ = 0;      ///< index of the run that is open around a phonetic guide; 0: none
  text::Span keptGuided_;      ///< what stays of its text
  bool putsDeleted_ = false;   ///< what is put is deleted text,
  bool wrapsDeleted_ = false;  ///< and each of its runs needs a tracked deletion of its own
  std::string_view deletion_;  ///< the tag of the tracked deletion met last
  std::string textTag_;        ///< of the text element being written anew
  std::vector<Step> steps_;    ///< of a simple field
  Open fieldOpen_;             ///< of the simple field just met, before it is opened
  std::vector<FieldState> fields_;
  std::size_t removedTables_ = 0;  ///< depth within a table that goes
  Open removedParagraph_;

  // The mark of the paragraph being closed.
  bool markDropped_ = false;
  std::uint8_t markColour_ = 0;

  HighlightedProperties highlighted_{withHighlight};
  HighlightedProperties highlightedMarks_{withMarkHighlight};
  mutable Markup markup_;
  mutable std::string_view markupPrefix_ = "?";
  mutable Offset markupTag_ = 0;  ///< where the tag begins that it was last asked for

  // What is under way to the next paragraph.
  std::string carriedBlocks_;
  std::string carried_;
  bool carriesText_ = false;  ///< not only markers
  bool carriesBreak_ = false;
  std::vector<Waiting> waiting_;
};

}  // namespace pluvo::docx
