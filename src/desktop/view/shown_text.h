#pragma once

#include "document/story.h"
#include "text/visible.h"

#include <QString>
#include <vector>

namespace pluvo::view {

using text::Position;
using text::Span;

/// The text on screen of a stretch within one paragraph, and which character stands where. One unit
/// shown is one unit of the document.
class ShownText {
 public:
  /// The span may end with the paragraph's mark, which is not shown.
  ShownText(const document::Story& story, Span span, text::View view);

  const QString& text() const { return text_; }
  /// The document's position of a place in the text shown; after the last unit, that of the mark, or the
  /// end.
  Position position(int shown) const;
  /// The place of a position; of one that is not shown, that of the next one that is.
  int shown(Position position) const;

  struct Part {
    int shown = 0;
    Position position = 0;
    int length = 0;
  };
  const std::vector<Part>& parts() const { return parts_; }
  /// The stretch stands elsewhere in the document.
  void moveBy(Position growth);

 private:
  QString text_;
  std::vector<Part> parts_;
  Position end_ = 0;
};

/// The text of a span for a screen reader, a unit for each of the document's. Hidden text is blanks without
/// width. Paragraphs and rows end in line feeds, cells in tabs.
QString spokenText(const document::Story& story, Span span, text::View view);

/// The visible text of a span as other programs take it: paragraphs end in line feeds, cells in tabs.
QString copiedText(const document::Story& story, Span span, text::View view);

}  // namespace pluvo::view
