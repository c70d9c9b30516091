#pragma once

#include "document/content.h"
#include "package.h"
#include "reader.h"
#include "word/enums.h"

#include <string>
#include <string_view>
#include <vector>

namespace pluvo::docx {

/// What a section's w:headerReference (or w:footerReference) of these pages shows: "first", "even",
/// "default".
word::WdStoryType kindOnPages(bool isHeader, std::string_view pages);

/// A part of a header or footer, and the sections that show it.
struct PagePart {
  std::string part;
  std::vector<document::PageUse> uses;
};

/// The parts of headers and footers in the order in which a reader meets them. Sections follow each other; in
/// each, the parts of its first page come before those of all pages and of even pages. Parts that no section
/// names come last, by their names.
std::vector<PagePart> pageParts(const Package& package, base::ByteSpan mainPart, const BodyMap& map);

}  // namespace pluvo::docx
