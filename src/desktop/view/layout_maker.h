#pragma once

#include "block_layout.h"
#include "document/story.h"
#include "looks.h"

#include <memory>
#include <optional>
#include <vector>

namespace pluvo::view {

/// Lays a block out: one paragraph or part of one, or the paragraphs in the cells of a row and the cells'
/// borders.
class LayoutMaker {
 public:
  /// All outlive the maker.
  LayoutMaker(const document::Story& story, text::View view, const Looks& looks)
      : story_(story), view_(view), looks_(looks) {}

  std::unique_ptr<BlockLayout> layOut(Span block, bool isRow, qreal width);

 private:
  using Fragment = BlockLayout::Fragment;
  struct Column {
    qreal left = 0;
    qreal width = 0;
  };

  qreal gapBelow() const;
  bool continues(Span span) const;
  bool goesOn(Span span) const;
  std::vector<qreal> widthsOf(const std::vector<Span>& cells, qreal room) const;
  Position lineStartAtEnd(Span part, Column column) const;
  std::optional<Fragment> inLines(Span span, Column column) const;
  qreal addParagraph(Span span, Column column, qreal top);
  qreal addCell(Span cell, std::int32_t table, Column column, qreal top, int depth);
  qreal addRow(Span row, std::int32_t table, Column column, qreal top, int depth);

  const document::Story& story_;
  text::View view_;
  const Looks& looks_;
  std::unique_ptr<BlockLayout> made_;
};

}  // namespace pluvo::view
