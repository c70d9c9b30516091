#pragma once

#include "look_memory.h"
#include "names.h"
#include "run_memory.h"
#include "text/positions.h"
#include "xml/scanner.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pluvo::docx {

using text::Position;
using xml::Offset;

inline bool opens(xml::Token token) { return token == xml::Token::start || token == xml::Token::empty; }

/// Bytes of the main part.
struct Extent {
  Offset begin = 0;
  Offset end = 0;
  bool empty() const { return begin >= end; }
};

struct Properties {
  Extent whole;
  RunLook look;       ///< of the run; of the paragraph's mark
  std::string style;  ///< of the paragraph
  bool hasSection = false;
};

/// Where a container's or a run's start tag lies; an empty one (<w:p/>) is closed at once.
struct Tag {
  Name name = Name::other;
  Extent extent;
  bool empty = false;
};

/// Data that a content control shows; read in a walk through every story only.
struct Binding {
  std::string path;      ///< XPath; empty where it is not bound
  std::string prefixes;  ///< "xmlns:a='urn:…' …"
  std::string store;     ///< the id of the part
  /// Of a choice: values and what it shows for them.
  std::vector<std::pair<std::string, std::string>> items;
  bool formatted = false;  ///< a date or a tick: it shows its data otherwise
};

/// What a content control says of itself.
struct ControlProperties {
  bool plain = false;  ///< a text, a date or a choice: its content is one paragraph
  bool contentLocked = false;
  bool deletionLocked = false;
  Binding binding;
};

/// Text as an element of a run holds it.
struct TextElement {
  Extent extent;
  std::string_view
      tag;  ///< the qualified name to write such text with; empty for text without a place of its own
  std::u16string_view units;  ///< empty where the bytes are printable ASCII
  std::string_view bytes;     ///< a byte a unit, where that is all there is to it
  /// Blanks at its ends that are no text, since nothing preserves them.
  std::string_view leading;
  std::string_view trailing;
  std::size_t length() const { return units.empty() ? bytes.size() : units.size(); }
};

/// One character that is in no run but has runs of its own.
struct Formula {
  Extent extent;
  RunLook look;  ///< of its first run
  std::vector<Extent>
      runProperties;    ///< the w:rPr of each run and operator; empty ones where they would stand
  std::u16string text;  ///< read in a walk through every story only
};

/// An element without content that only says where something begins or ends.
struct Marker {
  Name name = Name::other;
  Extent extent;
  std::string id;
  std::string label;  ///< the name of a bookmark
};

/// What a walk through the body meets, in document order. Characters are announced with the bytes they come
/// from; position() of the walker is that of the first of them.
class BodyEvents {
 public:
  virtual ~BodyEvents() = default;

  /// A container: body, table, row, cell, paragraph, run, and what may stand around them.
  virtual void open(const Tag& tag) = 0;
  virtual void close(const Tag& tag, Extent endTag) = 0;
  /// The w:pPr of the paragraph or w:rPr of the run just opened.
  virtual void properties(Name kind, const Properties& properties) = 0;
  /// Of the content control just opened.
  virtual void control(const ControlProperties&) {}
  /// Part of an alternative that was not chosen.
  virtual void passedAlternative(Extent) {}
  /// At this place something begins that may hold text of another story, or text of none.
  virtual void aside(Offset) {}
  virtual void marker(const Marker& marker) = 0;
  /// A run closes, and at once the next one opens, with properties or none (null).
  virtual void nextRun(const Tag& left, Extent endTag, const Tag& tag, const Properties* properties) {
    close(left, endTag);
    open(tag);
    if (properties != nullptr) this->properties(Name::rPr, *properties);
  }

  virtual void text(const TextElement& element) = 0;
  /// One character that is an element; reference is a note's or comment's id.
  virtual void character(char16_t unit, Extent extent, Name name, std::string_view reference) = 0;
  virtual void formula(const Formula& formula) = 0;
  /// Characters 19, the instruction and 20 of a simple field, which its start tag stands for.
  virtual void simpleField(const Tag& tag, std::u16string_view instruction) = 0;
  virtual void endSimpleField(Extent endTag) = 0;
  /// The mark of a paragraph, just before its close. Whether it is a mark of a cell, a section or a paragraph
  /// only shows later.
  virtual void paragraphMark(Extent endTag) = 0;
  /// The mark of a cell (or of the body) that does not end with a paragraph, just before its close.
  virtual void missingParagraph(Name container, Extent endTag) = 0;
  virtual void rowMark(Extent endTag) = 0;

  // In a walk through every story:
  /// The next container to open is a story's (header, footer, footnote, endnote, comment, box, entry), which
  /// ends where that closes.
  virtual void story(Name /*kind*/) {}
  /// An element outside stories, and the texts of drawings there.
  virtual void openOutside(const Tag&) {}
  virtual void closeOutside(const Tag&) {}
  virtual void outsideText(std::u16string_view) {}
  /// A phonetic guide, or a text with one that is one character.
  virtual void guide(std::u16string_view) {}
};

/// How far a walk goes: through main text alone, or also through what stands in its drawings, and through
/// parts that are no main part. A story lies within an element of another and has positions of its own.
enum class Reach : bool { mainText, everyStory };

/// Walks the body of a main part, and is the one place that knows which of its bytes are characters of the
/// text.
///
/// Hyperlinks, content controls, smart tags, tracked changes and the chosen one of alternative contents are
/// transparent: their runs are text. Text boxes, the inside of drawings, and elements of other vocabularies
/// are not. A formula is one character, like a picture. Of text with a phonetic guide the base is text: a run
/// that holds nothing else is opened as a run, and opening what is in it (ruby) makes it a container.
class BodyWalker {
 public:
  BodyWalker(base::ByteSpan part, const std::string& partName, BodyEvents& events,
             Reach reach = Reach::mainText, xml::Swept swept = xml::Swept::no);

  /// Takes one token, or a few that belong together; false at the end of the body.
  bool step();

  Position position() const { return position_; }
  Offset offset() const { return scanner_.end(); }
  /// Directly in the body and in no field: from such a place a walk can jump to another.
  bool betweenBlocks() const { return stack_.size() == 2 && fields_.empty(); }
  /// While a paragraph opens: whether the place before it is of that kind.
  bool opensBetweenBlocks() const { return stack_.size() == 3 && fields_.empty(); }
  /// Jumps forward to such a place.
  void resumeAt(Offset offset, Position position);

  const xml::Scanner& scanner() const { return scanner_; }
  /// From here on the walk tells this of what it meets.
  void tell(BodyEvents& events) { events_ = &events; }

 private:
  enum class Context : std::uint8_t { root, blocks, table, row, inlines, run, ruby, outside };
  struct Open {
    Tag tag;
    Context within;
    bool endsWithParagraph = false;  ///< body and cell: the last block was a paragraph
    bool hasCells = false;           ///< row
    bool preserves = false;          ///< text in it keeps its blanks
    Position from = 0;               ///< where it was opened
  };
  struct OpenField {
    bool inResult = false;
    bool simple = false;
  };

  /// A story around the one at hand.
  struct Suspended {
    Position position;
    std::vector<OpenField> fields;
  };

  void startElement(xml::Token token);
  void startOutside(Name name, xml::Token token);
  void enterOutside(Name name, xml::Token token);
  void enterStory(Name name, xml::Token token);
  void leaveStory();
  void descend(Name name, xml::Token token);
  void guide(xml::Token token);
  void readBinding(Binding& binding, Name name, xml::Token token);
  void leave(Extent endTag);
  void enter(Name name, xml::Token token, Context within);
  void startInRun(Name name, xml::Token token);
  void fieldCharacter(xml::Token token);
  void openField(OpenField field);
  void enterSimpleField(xml::Token token);
  void textElement(xml::Token token);
  void readText(xml::Token token);
  void tellText(TextElement element, bool preserved, std::string_view inner);
  void follow(xml::Token token);
  void rememberWay();
  bool passToNextRun();
  void alternativeInRun();
  void ruby(xml::Token token);
  bool rubyStandsAlone();
  void readControl(xml::Token token);
  void push(Name name, xml::Token token, Context within);
  bool preserves() const;
  void formula(xml::Token token);
  void enterAlternative(Name name, xml::Token token, Context within);
  void readProperties(Name kind, xml::Token token);
  void readLook(RunLook& look, xml::Token token);
  void scanLook(RunLook& look);
  void marker(Name name, xml::Token token);
  void reference(char16_t unit, xml::Token token, Name name);
  void single(char16_t unit, xml::Token token, Name name, std::string_view reference = {});
  void singleFrom(Offset begin, char16_t unit, xml::Token token, Name name, std::string_view reference);
  void skip(xml::Token token);
  char16_t drawingCharacter(xml::Token token);
  char16_t characterOf(Name name, xml::Token token);
  void collectText(xml::Token token);
  void widenPlain();
  Open& blockContainer();
  /// Of a field at any depth; the results of fields within a code are part of it.
  bool inCode() const;
  std::string attributeValue(Name name) const;
  bool understood(std::string_view prefixes) const;
  Extent tokenExtent() const { return {scanner_.begin(), scanner_.end()}; }
  void advance(std::size_t count);

  bool walksEveryStory() const { return reach_ == Reach::everyStory; }

  xml::Scanner scanner_;
  BodyEvents* events_;
  Reach reach_;
  std::vector<Suspended> suspended_;
  Position position_ = 0;
  std::vector<Open> stack_;
  std::vector<OpenField> fields_;
  std::vector<bool> alternatives_;  ///< per open alternative content: one was chosen
  /// From a text to the text of the next run. Offsets are those from the first of the bytes.
  struct Way {
    std::string_view bytes;  ///< from behind the end tag of the one to behind the start tag of the other
    xml::Scope scope = 0;    ///< 0: none
    bool preservesAround = false;  ///< of the paragraph, or what else holds the runs
    bool preservesInRun = false;
    bool preserves = false;  ///< of the text
    bool hasProperties = false;
    Extent endTag;
    Extent run;   ///< its start tag
    Extent text;  ///< the text's start tag
    std::string_view textName;
    Extent whole;  ///< of its properties
    Properties properties;
  };
  /// How far the way is followed that begins behind the text met last.
  enum class Followed : std::uint8_t { none, text, runClosed, runOpen, properties };
  Followed followed_ = Followed::none;
  Way way_;
  RunMemory<Way> ways_;
  std::u16string units_;
  std::string_view plain_;  ///< text collected in the place of units_
  std::size_t textTokens_ = 0;
  Extent textToken_;
  Properties properties_;
  Formula formula_;
  LookMemory looks_;
  bool finished_ = false;
};

}  // namespace pluvo::docx
