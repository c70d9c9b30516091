#pragma once

#include "document/story.h"
#include "formats/appearance.h"
#include "shown_text.h"

#include <QColor>
#include <QFont>
#include <QList>
#include <QTextLayout>

namespace pluvo::view {

/// The looks with which a window shows a document.
struct Looks {
  QFont font;
  /// By original position; empty where the format tells of none.
  text::RunMap<formats::Appearance> appearance;
  /// Of text in tracked changes, besides a line through or below it.
  QColor deleted;
  QColor inserted;

  /// New text looks as the character it takes its formatting from.
  formats::Appearance of(const document::Story& story, Position position) const;
  /// The paragraph's own: its size, alignment and direction.
  QFont paragraphFont(const formats::Appearance& paragraph) const;
  /// Bold, highlight and so on of the text shown, in a paragraph that looks like this.
  QList<QTextLayout::FormatRange> formats(const document::Story& story, const ShownText& shown,
                                          const formats::Appearance& paragraph) const;
};

/// Word's sixteen colours by their index; none for 0 and for values that are no index.
QColor highlightColour(int index);
/// Red and green that can be read on the colour.
void colourChanges(Looks& looks, const QColor& background);
/// Black or white, whichever is read more easily on the colour.
QColor readableOn(const QColor& background);

}  // namespace pluvo::view
