#pragma once

#include "document/story.h"

#include <string>
#include <string_view>
#include <vector>

/// The policy of edits: text that may go, and the place of new text. It is the same for every format.
///
/// A deletion takes its span except:
/// - the marks of a field that the span covers only partly, and what the view does not show of that field. A
///   field inside it that is covered wholly goes, where the view shows its place;
/// - the cell and row marks of a table that the span covers only partly;
/// - a paragraph mark (or section mark) without which the text or the table before it would run into a table;
/// - the final paragraph mark.
///
/// A control whose content is locked is not changed, and one that is locked against deletion does not go:
/// such an edit is refused. Where a paragraph mark would divide a control that is one paragraph, or lies in
/// one, it is a line break.
///
/// A change that the format cannot make in place (Restriction) is refused, too.
///
/// New text joins the paragraph it is put into: it lies in the table in which that paragraph lies. Text that
/// ends with a paragraph mark of its own stays outside a table that begins after it. It is shown where the
/// text around it is, and is hidden and highlighted as the character it is put beside. It is deleted where
/// the characters it stands for, or both of its neighbours, are.
namespace pluvo::document {

struct Removal {
  /// Where the deletion begins and text that replaces it goes.
  text::Position at = 0;
  /// The spans that go, in order; no two touch.
  std::vector<text::Span> spans;
};

/// The text that a deletion of the span takes when newText is put in its place.
Removal removalOf(const Story& story, text::Span span, std::u16string_view newText, text::View view);

/// The looks and structure that new text takes from its neighbours.
struct Landing {
  text::Position at = 0;
  /// The character it is put beside, and that as the original text has it.
  text::Position beside = 0;
  text::Anchor anchor;
  Structure structure;
  text::Visibility visibility = text::kEverywhere;
  std::uint8_t highlight = 0;
};

/// Where text inserted at position stands, and beside which character: the one before it (after) or the one
/// after it.
Landing landingAt(const Story& story, text::Position position, bool after, std::u16string_view newText);
/// Where text that replaces the first span of a removal stands.
Landing landingInsteadOf(const Story& story, const Removal& removal, std::u16string_view newText);

/// The text with line breaks where the control it lands in takes no paragraph marks. A removal that takes a
/// paragraph mark which the text brings anew leaves it, and it goes from the text.
std::u16string fitted(const Story& story, const Landing& landing, Removal& removal, std::u16string text);

/// Throws a Fault where a lock forbids the edit; no landing when no text is put in.
void requireUnlocked(const Story& story, const Removal& removal, const Landing* landing,
                     std::u16string_view newText);
void requireUnlocked(const Story& story, text::Span highlighted);

/// Throws a Fault where the file cannot hold the edit in place; no landing when no text is put in.
void requirePossible(const Story& story, const Removal& removal, const Landing* landing);
void requirePossible(const Story& story, text::Span highlighted);

}  // namespace pluvo::document
