#pragma once

#include "block_tags.h"
#include "conditional_markup.h"
#include "inline_tags.h"
#include "page_text.h"
#include "paragraphs.h"
#include "table_tags.h"
#include "walk_state.h"
#include "whole_elements.h"

#include <string_view>
#include <vector>

namespace pluvo::formats::html {

/// Goes through a page, or a part of it, and tells its events. At each of them it knows what is open there.
class Walker {
 public:
  Walker(const Page& page, Events& events, const Part& part) : walk_(page, events, part) {}

  void walk();

  std::string_view bytes() const { return walk_.bytes; }
  const InlineStack& inlines() const { return walk_.inlines; }
  const Block& block() const { return walk_.blocks.inner(); }
  const std::vector<Block>& blocks() const { return walk_.blocks.all(); }
  StyleSheet& sheet() { return walk_.sheet; }
  const State& state() const { return walk_.state; }
  bool isHidden() const { return walk_.state.hidden || isBlockHidden(); }
  bool isPreformatted() const { return walk_.isPreformatted(); }
  /// The look of the paragraph's mark: that of an element of Word's for it which ends the text at hand.
  const State& markState() const { return paragraphs_.markState(); }
  bool isMarkHidden() const { return markState().hidden || isBlockHidden(); }
  bool isMarkDeleted() const { return markState().deleted || block().deleted; }
  bool isRaw() const { return walk_.isRaw; }
  /// Between the tags of a table, within an element of raw text, or in one without an end.
  bool isLocked() const { return isRaw() || walk_.tables.isBetweenCells() || walk_.endsWithin; }
  /// While a follower refers to inline elements of earlier paragraphs.
  void keepInlines(bool keep) { walk_.keepsInlines = keep; }

 private:
  bool isBlockHidden() const { return block().hidden || walk_.tables.isRowHidden(); }
  void step(const Token& token);
  void startTag(const Token& token);
  void endTag(const Token& token);
  void endBody(const Token& token);
  void rawBlock(const Token& token);
  bool otherStory(const Token& token, Style::Special special);
  void finish();

  WalkState walk_;
  Paragraphs paragraphs_{walk_};
  PageText text_{walk_, paragraphs_};
  BlockTags blocks_{walk_, paragraphs_};
  TableTags tables_{walk_, paragraphs_, blocks_};
  WholeElements elements_{walk_, text_};
  InlineTags inlines_{walk_, paragraphs_, text_, elements_};
  ConditionalMarkup conditions_{walk_};
};

}  // namespace pluvo::formats::html
