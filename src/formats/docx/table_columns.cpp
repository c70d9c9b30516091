#include "table_columns.h"

#include "fragment.h"

#include <algorithm>
#include <charconv>

namespace pluvo::docx {

namespace {

/// Word's widest page, 22 inches.
constexpr unsigned kWidest = 31'680;
constexpr unsigned kMostColumns = 1024;

unsigned numberOf(const Fragment& element, std::string_view wanted, unsigned most) {
  unsigned number = 0;
  forEachAttribute(element.startTag,
                   [&](std::string_view name, std::string_view value, std::size_t, std::size_t) {
                     if (name.substr(name.find(':') + 1) == wanted)
                       std::from_chars(value.data(), value.data() + value.size(), number);
                   });
  return std::min(number, most);
}

/// Of the element that begins here; without a look at its end, which may be far away.
std::string_view localNameAt(std::string_view bytes) {
  const std::string_view name = bytes.substr(1, bytes.find_first_of(" \t\r\n/>", 1) - 1);
  return name.substr(name.find(':') + 1);
}

/// Visits the children of the element of this name, which comes first or after the one that may.
template <class Visit>
void forEachPropertyIn(std::string_view afterTag, std::string_view wanted, std::string_view mayComeFirst,
                       Visit visit) {
  for (std::size_t at = nextElement(afterTag, 0); at != std::string_view::npos;
       at = nextElement(afterTag, at)) {
    const std::string_view name = localNameAt(afterTag.substr(at));
    if (name != wanted && name != mayComeFirst) return;
    const Fragment element = fragmentOf(afterTag.substr(at));
    if (name == wanted) return forEachChild(element.inner, visit);
    at += element.whole.size();
  }
}

}  // namespace

TableColumns::TableColumns(std::string_view afterTable) {
  forEachPropertyIn(afterTable, "tblGrid", "tblPr", [&](const Fragment& column) {
    if (column.local() == "gridCol" && grid_.size() < kMostColumns)
      grid_.push_back(static_cast<std::uint16_t>(numberOf(column, "w", kWidest)));
  });
}

void TableColumns::beginRow(std::string_view afterRow) {
  next_ = 0;
  forEachPropertyIn(afterRow, "trPr", "tblPrEx", [&](const Fragment& property) {
    if (property.local() == "gridBefore") next_ = numberOf(property, "val", kMostColumns);
  });
}

std::uint16_t TableColumns::cellWidth(std::string_view afterCell) {
  std::size_t span = 1;
  unsigned own = 0;
  forEachPropertyIn(afterCell, "tcPr", {}, [&](const Fragment& property) {
    if (property.local() == "gridSpan") span = std::max(numberOf(property, "val", kMostColumns), 1U);
    if (property.local() == "tcW") own = numberOf(property, "w", kWidest);
  });
  const std::size_t from = std::min(next_, grid_.size());
  next_ = std::min(from + span, grid_.size());
  unsigned width = 0;
  for (std::size_t i = from; i < next_; ++i) width += grid_[i];
  return static_cast<std::uint16_t>(std::min(width == 0 ? own : width, kWidest));
}

}  // namespace pluvo::docx
