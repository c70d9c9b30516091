#pragma once

#include "drawings.h"
#include "plc.h"
#include "word_file.h"

#include <cstddef>

namespace pluvo::doc {

/// Calls visit(from, to) with the used parts of the WordDocument stream besides information blocks and
/// pieces: pages of formatting, how sections look, pictures of shapes.
template <class Visit>
void forEachUsedStretch(const Text& text, Visit visit) {
  const auto addPage = [&](std::size_t at) { visit(at, at + FormattedPages::kPage); };
  text.characters.forEachPage(addPage);
  text.paragraphs.forEachPage(addPage);
  constexpr std::size_t kSection = 12, kPlace = 2;
  const Plc sections(text.in(Table::sections), kSection);
  for (std::size_t i = 0; i < sections.count(); ++i) {
    const std::size_t at = base::get32(sections.element(i), kPlace);
    if (at > text.fib.extentsAt() && at + 2 <= text.document.size())
      visit(at, at + 2 + base::get16(text.document, at));
  }
  forEachShapePicture(text.in(Table::drawings), visit);
}

}  // namespace pluvo::doc
