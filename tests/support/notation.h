#pragma once

#include "document/content.h"
#include "document/place.h"
#include "document/story.h"
#include "memory/document.h"
#include "text/positions.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Documents in one line of UTF-8:
///
///     ¶                 a paragraph mark; one is added at the end where it lacks
///     {code|result}     a field; {code} is one without a result
///     ⟦a¦b¦‖c¦d¦‖⟧      a table: ¦ ends a cell, ‖ a row
///     §                 a section mark
///     <h:text>          hidden text
///     <7:text>          text highlighted in colour 7; looks may be nested and may overlap all else
///     [atexta]          the range a (a small letter) over "text"; ranges may overlap
///     \x                the character x without its meaning; line feeds and so on stand for themselves
///
/// Other control characters are put in as they are.
namespace pluvo::notation {

using Ranges = std::map<char, text::Span>;

struct Parsed {
  document::Content content;
  Ranges ranges;
};

/// Throws std::invalid_argument when the notation is not sound.
Parsed parse(std::string_view notation);

/// The same notation for a document, with the ranges given.
std::string print(const document::Story& model, const Ranges& ranges = {});

/// A document in memory, and live ranges for those of the notation.
struct Sample {
  explicit Sample(std::string_view notation, std::shared_ptr<const document::Medium> medium = nullptr);
  Sample(Parsed parsed, std::shared_ptr<const document::Medium> medium);
  /// With the ranges in the first story of a place.
  Sample(std::vector<document::Content> stories, document::Place place, const Ranges& ranges,
         std::shared_ptr<const document::Medium> medium);

  document::Story& mainText() { return document->mainText(); }
  document::Story& story() { return document->stories().story(number); }
  /// In the story that the ranges are in.
  std::shared_ptr<word::Range> rangeAt(text::Span span);
  word::Range& range(char name) { return *ranges.at(name); }
  std::string print();

  std::shared_ptr<memory::MemoryDocument> document;
  std::size_t number = 0;  ///< of the story that the ranges are in
  std::map<char, std::shared_ptr<word::Range>> ranges;
};

}  // namespace pluvo::notation
