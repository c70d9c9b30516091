#include "text/visible_text.h"

#include "gathered.h"

#include <algorithm>
#include <string_view>

namespace pluvo::text {

namespace {

/// Its length where it has none.
Position cellMarkIn(const Stretch& stretch) {
  const auto length = static_cast<std::size_t>(stretch.length);
  if (stretch.wide != nullptr)
    return static_cast<Position>(std::min(std::u16string_view(stretch.wide, length).find(kCellMark), length));
  const std::string_view narrow(reinterpret_cast<const char*>(stretch.narrow), length);
  return static_cast<Position>(std::min(narrow.find(static_cast<char>(kCellMark)), length));
}

}  // namespace

/// A hidden cell mark parts the text on both sides of it, as in a search that passes over it.
VisibleText::VisibleText(const Stretch& whole, const RunMap<Visibility>& visibility, View view) {
  const auto gathered = std::make_shared<Gathered>();
  gathered->expect(static_cast<std::size_t>(whole.length), visibility.runCount());
  const bool hasCells = cellMarkIn(whole) < whole.length;
  visibility.forEachRun([&](Position from, Position to, Visibility value) {
    const Stretch run = whole.part(from, to);
    if (isVisible(value, view)) return gathered->add(from, run);
    const Position mark = hasCells ? cellMarkIn(run) : run.length;
    if (mark < run.length) gathered->add(from + mark, run.part(mark, mark + 1));
  });
  gathered_ = gathered;
}

}  // namespace pluvo::text
