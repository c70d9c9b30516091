#include "base/text.h"
#include "document/content_builder.h"
#include "document/story.h"
#include "open_document.h"

namespace pluvo::stand_in {
namespace {

using text::kCellMark;
using text::kParagraphMark;

/// Whether a cell ends before the next paragraph does.
bool beginsRow(std::u16string_view rest) {
  const std::size_t mark = rest.find(kCellMark);
  return mark != std::u16string_view::npos && mark < rest.find(kParagraphMark);
}

}  // namespace

document::Content documentContent(const std::u16string& text) {
  std::u16string units = base::withParagraphMarks(text);
  if (units.empty() || units.back() != kParagraphMark) units += kParagraphMark;

  document::ContentBuilder builder;
  const std::u16string_view all = units;
  bool atStart = true;
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (atStart) {
      const bool row = beginsRow(all.substr(i));
      if (row && builder.openTables() == 0) builder.beginTable();
      if (!row && builder.openTables() != 0) builder.endTable();
    }
    const char16_t unit = all[i];
    atStart = unit == kParagraphMark;
    if (unit == text::kFieldBegin) {
      builder.beginField();
    } else if (unit == text::kFieldSeparator) {
      builder.separateField();
    } else if (unit == text::kFieldEnd) {
      builder.endField();
    } else if (unit == kCellMark && builder.openTables() != 0) {
      builder.cellMark();
      if (i + 1 < all.size() && all[i + 1] == kCellMark) {
        builder.rowMark();
        ++i;
        atStart = true;
      }
    } else {
      builder.append(unit);
    }
  }
  return builder.finish();
}

}  // namespace pluvo::stand_in
