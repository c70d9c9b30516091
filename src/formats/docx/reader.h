#pragma once

#include "body_walker.h"
#include "document/content.h"
#include "formats/place_map.h"
#include "styles.h"

#include <string>
#include <vector>

namespace pluvo::docx {

/// The way back from a text to the bytes of its part. It is coarse, since a walk from the nearest
/// place finds every character again.
struct BodyMap {
  /// From which a walk can start: paragraphs directly in the body, in no field.
  formats::PlaceMap<Offset> places;

  /// Tables in the order of their start tags; end is the position after the last row mark.
  struct Table {
    Offset offset;
    Position end;
  };
  std::vector<Table> tables;

  /// Notes and comments referred to.
  struct Reference {
    Position position;
    Name kind;
    std::string id;
  };
  std::vector<Reference> references;

  /// Where the ranges of comments begin and end: just before these positions.
  struct CommentMarker {
    Position position;
    std::string id;
  };
  std::vector<CommentMarker> commentMarkers;

  struct Bookmark {
    std::string id;
    std::string name;
    Position from;
    Position to;
    bool closed;
  };
  std::vector<Bookmark> bookmarks;

  /// Marks of sections, each with the end of the properties that make it one.
  struct SectionMark {
    Offset propertiesEnd;
    Position position;
  };
  std::vector<SectionMark> sectionMarks;

  /// Whether anything lies in a tracked deletion.
  bool hasDeletions = false;

  /// Phonetic guides in the order of their start tags, each with the text it guides.
  struct Guide {
    Offset offset;
    Position from;
    Position to;
  };
  std::vector<Guide> guides;

  /// Of a comment under edit, the paragraph by which other parts know it: its last one, also when it is
  /// divided.
  Offset lastParagraph = 0;

  /// The elements that may hold other texts, in order: drawings, formulas, guides, bound controls.
  std::vector<Offset> asides;

  /// For bytes that were moved; asides are not looked at.
  template <class Moved>
  void moveOffsets(Moved moved) {
    places.moveOffsets(moved);
    for (Table& table : tables) table.offset = moved(table.offset);
    for (Guide& guide : guides) guide.offset = moved(guide.offset);
  }
};

struct ReadBody {
  document::Content content;
  BodyMap map;
};

/// Reads the main part, which must be UTF-8.
ReadBody readBody(base::ByteSpan part, const std::string& partName, const Styles& styles,
                  document::Purpose purpose = document::Purpose::edit);

}  // namespace pluvo::docx
