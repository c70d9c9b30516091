#pragma once

#include "look_memory.h"
#include "names.h"
#include "text/positions.h"
#include "xml/scanner.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pluvo::docx {

using text::Position;
using xml::Offset;

inline bool opens(xml::Token token) { return token == xml::Token::start || token == xml::Token::empty; }

/// Bytes of a part.
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
  /// Of a choice: values, and the texts shown for them.
  std::vector<std::pair<std::string, std::string>> items;
  bool formatted = false;  ///< a date or a tick: it shows its data otherwise
};

/// The properties of a content control.
struct ControlProperties {
  bool plain = false;  ///< a text, a date or a choice: its content is one paragraph
  bool contentLocked = false;
  bool deletionLocked = false;
  bool bound = false;  ///< to data
  Binding binding;
};

/// Text as an element of a run holds it.
struct TextElement {
  Extent extent;
  std::string_view
      tag;  ///< the qualified name to write such text with; empty for text without a place of its own
  std::u16string_view units;  ///< empty where the bytes are all that is told
  std::string_view bytes;     ///< the same in UTF-8 as it lies there, where that is all there is to it
  /// Blanks at its ends that are no text, since nothing preserves them.
  std::string_view leading;
  std::string_view trailing;
  std::size_t count = 0;  ///< of units, where the bytes alone are told
  std::size_t length() const { return units.empty() ? count : units.size(); }
};

/// From a text to the text of the next run, for a search: in the same paragraph, or in the next one.
struct TextWay {
  bool closesParagraph = false;
  Properties paragraph;  ///< of the next one
  Properties run;
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

/// The events of a walk through the body, in document order. Characters are announced with the bytes they
/// come from; position() of the walker is that of the first of them. Who is told does nothing about what it
/// does not override.
class BodyEvents {
 public:
  virtual ~BodyEvents() = default;

  /// A container: body, table, row, cell, paragraph, run, and what may stand around them.
  virtual void open(const Tag& /*tag*/) {}
  virtual void close(const Tag& /*tag*/, Extent /*endTag*/) {}
  /// The w:pPr of the paragraph or w:rPr of the run just opened.
  virtual void properties(Name /*kind*/, const Properties& /*properties*/) {}
  /// Of the content control just opened.
  virtual void control(const ControlProperties&) {}
  /// Part of an alternative that was not chosen.
  virtual void passedAlternative(Extent) {}
  /// At this place something begins that may hold text of another story, or text of none.
  virtual void aside(Offset) {}
  virtual void marker(const Marker& /*marker*/) {}
  /// A run closes, and at once the next one opens, with properties or none (null).
  virtual void nextRun(const Tag& left, Extent endTag, const Tag& tag, const Properties* properties) {
    close(left, endTag);
    open(tag);
    if (properties != nullptr) this->properties(Name::rPr, *properties);
  }

  /// In a walk for a search, instead of those events: the way to the next text, and that, where it is
  /// printable ASCII. Else it is told by itself.
  virtual void nextText(const TextWay& /*way*/, std::string_view /*ascii*/) {}

  virtual void text(const TextElement& /*element*/) {}
  /// One character that is an element; reference is a note's or comment's id.
  virtual void character(char16_t /*unit*/, Extent /*extent*/, Name /*name*/,
                         std::string_view /*reference*/) {}
  /// The mark that a note or comment begins with: no text, and stays whatever becomes of the text beside it.
  virtual void ownMark(Extent /*extent*/) {}
  virtual void formula(const Formula& /*formula*/) {}
  /// Characters 19, the instruction and 20 of a simple field, which its start tag stands for.
  virtual void simpleField(const Tag& /*tag*/, std::u16string_view /*instruction*/) {}
  virtual void endSimpleField(Extent /*endTag*/) {}
  /// The mark of a paragraph, just before its close. Whether it is a mark of a cell, a section or a paragraph
  /// only shows later.
  virtual void paragraphMark(Extent /*endTag*/) {}
  /// The mark of a cell (or of the body) that does not end with a paragraph, just before its close.
  virtual void missingParagraph(Name /*container*/, Extent /*endTag*/) {}
  virtual void rowMark(Extent /*endTag*/) {}

  // In a walk through every story:
  /// The next container to open is a story's: header, footer, footnote, endnote, comment, box or entry. The
  /// story ends with it.
  virtual void story(Name /*kind*/) {}
  /// An element outside stories, and the texts of drawings there.
  virtual void openOutside(const Tag&) {}
  virtual void closeOutside(const Tag&) {}
  virtual void outsideText(std::u16string_view) {}
  /// A phonetic guide, or a text with one that is one character.
  virtual void guide(std::u16string_view) {}
};

}  // namespace pluvo::docx
