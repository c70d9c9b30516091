#pragma once

#include "events.h"
#include "inline_stack.h"
#include "open_blocks.h"
#include "open_tables.h"
#include "page.h"
#include "style_sheet.h"
#include "tokens.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace pluvo::formats::html {

/// The part of a page that is walked through.
struct Part {
  Extent bytes;
  StyleSheet* sheet = nullptr;  ///< of the page around it; its own where none is given
  bool isNote = false;          ///< a mark of its own stands in it, which is no text
  const std::vector<std::size_t>* strays =
      nullptr;  ///< marks of fields that are no text, by where they begin
};

/// What is open around the place that a walk has come to. The classes that take its tags and its text share
/// this, and each says in its own words what it does to it.
struct WalkState {
  WalkState(const Page& itsPage, Events& itsEvents, const Part& itsPart)
      : page(itsPage),
        bytes(itsPage.bytes()),
        events(itsEvents),
        part(itsPart),
        tokens(bytes, itsPart.bytes.begin, itsPart.bytes.end),
        sheet(itsPart.sheet == nullptr ? ownSheet : *itsPart.sheet),
        inlines(bytes),
        tables(blocks, itsEvents) {}
  WalkState(const WalkState&) = delete;
  WalkState& operator=(const WalkState&) = delete;

  std::string_view in(Extent extent) const { return bytes.substr(extent.begin, extent.size()); }
  /// To be called where inline elements were opened or closed.
  void applyState() { state = inlines.state(); }
  bool isPreformatted() const {
    return state.blanks == State::Blanks::asAround ? blocks.inner().preformatted
                                                   : state.blanks == State::Blanks::count;
  }

  const Page& page;
  std::string_view bytes;
  Events& events;
  Part part;
  Tokens tokens;
  StyleSheet ownSheet;
  StyleSheet& sheet;
  InlineStack inlines;
  State state;  ///< what the inline elements make of text here
  OpenBlocks blocks;
  OpenTables tables;
  bool isRaw = false;         ///< within an element of raw text
  bool endsWithin = false;    ///< a picture or raw text: nothing can be put after it
  bool keepsInlines = false;  ///< a follower refers to those of earlier paragraphs
};

}  // namespace pluvo::formats::html
