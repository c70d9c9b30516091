#pragma once

#include "model/model.h"

#include <string_view>
#include <vector>

/// What an edit may remove and where new text goes; the same for every format.
///
/// A deletion takes its span but for:
/// - the marks of a field that the span covers only partly, and what the view does not show of that field (a
///   field inside it that is covered wholly goes, where the view shows the place it stands in);
/// - the cell and row marks of a table that the span covers only partly;
/// - a paragraph mark (or section mark) without which the text or the table before it would run into a table;
/// - the final paragraph mark.
///
/// New text joins the paragraph it is put into: it lies in the table in which that paragraph lies. Text that
/// ends with a paragraph mark of its own stays outside a table that begins behind it. It is shown where the
/// text around it is, and is hidden and highlighted as the character it is put beside.
namespace pluvo::model {

struct Removal {
  /// Where the deletion begins and text that replaces it goes.
  text::Position at = 0;
  /// What goes, in order; no two touch.
  std::vector<text::Span> spans;
};

/// What a deletion of the span takes when newText is put in its place.
Removal removalOf(const Model& model, text::Span span, std::u16string_view newText, text::View view);

/// What text put into a document takes from its surroundings.
struct Landing {
  text::Position at = 0;
  text::Anchor anchor;
  Structure structure;
  text::Visibility visibility = text::kEverywhere;
  std::uint8_t highlight = 0;
};

/// Where text inserted at position stands, and beside which character: the one before it (behind) or the one
/// behind it.
Landing landingAt(const Model& model, text::Position position, bool behind, std::u16string_view newText);
/// Where text that replaces a span stands; all of the span goes.
Landing landingInsteadOf(const Model& model, text::Span span, std::u16string_view newText);

}  // namespace pluvo::model
