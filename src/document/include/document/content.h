#pragma once

#include "errors/problem.h"
#include "text/original.h"
#include "text/positions.h"
#include "text/run_map.h"
#include "word/enums.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace pluvo::document {

inline constexpr std::int32_t kNone = -1;

/// A table, known by its index in Content::tables. A table inside a cell of another has that one as parent,
/// and a higher index.
struct Table {
  std::int32_t parent = kNone;
};

/// A field, known by its index in Content::fields: character 19, its code, character 20 and the result where
/// it has one, then character 21. A field inside another has that one as parent, and a higher index.
struct Field {
  std::int32_t parent = kNone;
  /// The views that show the place where the field stands.
  text::Visibility around = text::kEverywhere;
};

/// A content control, or text with a phonetic guide, known by its index in Content::controls. A control
/// inside another has that one as parent, and a higher index.
struct Control {
  std::int32_t parent = kNone;
  /// The innermost table around it; kNone outside tables.
  std::int32_t table = kNone;
  /// It lies in a paragraph; otherwise it holds paragraphs, cells or rows.
  bool inlined = false;
  /// Text with a guide: text put beside its ends stays outside.
  bool isGuided = false;
  /// A line end put into it is a line break and no paragraph mark; true for controls within such a one, too.
  bool takesLineBreaks = false;
  /// Its content may not be changed; true for controls within such a one, too.
  bool contentLocked = false;
  /// It may not be deleted.
  bool deletionLocked = false;
};

/// A change that a format cannot make in place, known by its index in Nesting::restrictions.
struct Restriction {
  enum class Of : std::uint8_t {
    highlight,  ///< it keeps its colour, and ignores edits of the highlight, which would not be seen
    colour,     ///< it keeps its colour, and edits of the highlight are refused
    removal,    ///< it does not go; text beside it may come and go
    change,     ///< it does not go nor get a highlight, and no text is put beside it that takes after it
    part,       ///< it goes with all of the field it lies in or not at all, and no text is put into that
    living,     ///< its paragraph is deleted as a whole, and no text joins that which is not deleted
  };
  Of of = Of::change;
  /// Why an edit is refused, and what to do, for the user; UTF-8.
  std::string sentence;
  errors::Problem problem = errors::Problem::unsupported;
};

/// The facts of a character that the edit policy must know besides the character itself.
struct Structure {
  /// The innermost table it lies in, cell and row marks included; kNone outside tables.
  std::int32_t table = kNone;
  /// The innermost field it lies in, the field's own marks included; kNone outside fields.
  std::int32_t field = kNone;
  /// The innermost control it lies in; kNone outside controls.
  std::int32_t control = kNone;
  /// It lies in a tracked deletion.
  bool deleted = false;
  /// Character 12 only: it ends a section, and with it its paragraph.
  bool sectionMark = false;
  /// Character 7 only: it ends a row, not a cell.
  bool rowMark = false;
  /// The changes it refuses; kNone where it takes all.
  std::int8_t restriction = kNone;
  bool operator==(const Structure&) const = default;
};

/// The lists that the structure of a text names by index. No edit changes them.
struct Nesting {
  std::vector<Table> tables;
  std::vector<Field> fields;
  std::vector<Control> controls;
  std::vector<Restriction> restrictions;
};

/// The anchor of a story: the reference of a note or comment, the character that a text box is.
struct StoryAnchor {
  std::size_t story = 0;        ///< the number of the story it stands in
  text::Position position = 0;  ///< where the original text of that has it
};

/// A section that shows a header or footer, and on which of its pages.
struct PageUse {
  /// Where the original main text has the section's mark; kMaxLength of the last section, which has none.
  text::Position mark = text::kMaxLength;
  word::WdStoryType kind = word::wdPrimaryHeaderStory;
};

/// A story as a reader hands it over: a text and its layers. The maps are as long as the text. The text ends
/// with a paragraph mark outside tables and fields that no edit removes. Characters 7, 12 and 19 to 21 are
/// marks only where the structure says so.
struct Content {
  word::WdStoryType kind = word::wdMainTextStory;
  text::OriginalText text;
  text::RunMap<text::Visibility> visibility;
  text::RunMap<std::uint8_t> highlight;  ///< Word's colour index, 0 for none
  text::RunMap<Structure> structure;
  Nesting nesting;
  /// A story goes when all of these have gone; one without any never does.
  std::vector<StoryAnchor> anchors = {};
  /// The numbers of other versions of the same text, which the file holds for programs of another age. What
  /// one of them holds, too, is not edited here alone.
  std::vector<std::size_t> rivals = {};
  /// Of a header or footer: the sections that show it, in their order, and the part of the file that it lies
  /// in. An edit of the sections gives it another kind, and another number when the document is read anew; it
  /// is known by its part then.
  std::vector<PageUse> uses = {};
  std::string part = {};
};

/// A story without any structure, all of it visible. The text must end with a paragraph mark.
Content plainContent(text::OriginalText text);

}  // namespace pluvo::document
