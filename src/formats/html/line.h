#pragma once

#include "markup.h"
#include "pieces.h"

#include <string_view>

namespace pluvo::formats::html {

/// The place of a paragraph in the page.
struct Place {
  std::size_t from = 0;  ///< after the last block's tag
  std::size_t to = 0;
  std::int32_t inlinesFrom = -1;  ///< that are open there
  std::int32_t inlinesTo = -1;
  Block block;                ///< the innermost one
  bool existsEmpty = false;   ///< the paragraph is there without text …
  bool onlyAlone = false;     ///< … unless another was put in front of it
  bool dividesBlock = false;  ///< a new paragraph in front of it gets a block of its own, like this one
};

/// The state of a paragraph's line as written, which decides how the next bytes will be read.
struct Line {
  Line(Markup& itsMarkup, const Page& itsPage, Walker& itsWalker)
      : markup(itsMarkup), page(itsPage), walker(itsWalker) {}

  void begin(const Place& itsPlace);

  /// Whether blanks count within an inline element.
  bool keepsBlanks(std::int32_t inlines) const;
  /// Whether one lies in a conditional comment.
  bool isInComment(std::int32_t inlines) const;
  State stateOf(std::int32_t inlines) const {
    return inlines < 0 ? State() : walker.inlines()[inlines].state;
  }

  /// Old bytes that come next can be copied with the tags among them.
  bool canCopy() const { return isClean && markup.isAsBefore(); }
  /// Characters were written; after the last one blanks fold or not.
  void wrote(bool blanksFold);

  /// Adds new text where a piece of it stands, each character so that it is read as that. Throws
  /// errors::DocumentError for half of a character.
  void put(std::u16string_view units, std::int32_t inlines);
  void putUnit(char32_t point, std::int32_t inlines);

  Markup& markup;
  const Page& page;
  Walker& walker;
  Place place;

  bool isClean = true;        ///< all old bytes since the last ones copied are to stay
  bool isBeside = true;       ///< the bytes written last are the old ones in front of the next
  bool folds = true;          ///< a bare blank would be no text here
  bool afterInvalid = false;  ///< a byte that other bytes after it could make a character of
  bool atPreStart = false;    ///< a line end here would not count
  bool endsInLineEnd = false;
  bool isOpen = false;  ///< a paragraph, since the last boundary

 private:
  void protectBlank(std::int32_t inlines);
};

}  // namespace pluvo::formats::html
