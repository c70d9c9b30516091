#pragma once

#include "relationships.h"

#include <cstdint>
#include <optional>

namespace pluvo::docx {

/// The parts of a package that hold texts, or may hold some that nobody looks for.
enum class PartKind : std::uint8_t {
  stories,
  glossary,
  chart,
  diagram,
  diagramDrawing,
  chunk,
  settings,
  people,
  core,
  extended,
  properties,
  data,
  package,
  object,
  picture,
  macros,
  thumbnail,
};

/// The kind of part that a relationship leads to; nothing where that holds no text.
std::optional<PartKind> kindOf(const Relationship& relationship);

/// Custom XML and properties come last, when it is known which controls show them; so do drawings of
/// diagrams, when their data are known.
bool comesLast(PartKind kind);

}  // namespace pluvo::docx
