#include "part_kinds.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace pluvo::docx {

namespace {

/// By the last step of a relationship's type.
constexpr std::array<std::pair<std::string_view, PartKind>, 29> kKinds = {{
    {"header", PartKind::stories},
    {"footer", PartKind::stories},
    {"footnotes", PartKind::stories},
    {"endnotes", PartKind::stories},
    {"comments", PartKind::stories},
    {"glossaryDocument", PartKind::glossary},
    {"chart", PartKind::chart},
    {"chartEx", PartKind::chart},
    {"chartUserShapes", PartKind::chart},
    {"diagramData", PartKind::diagram},
    {"diagramDrawing", PartKind::diagramDrawing},
    {"aFChunk", PartKind::chunk},
    {"settings", PartKind::settings},
    {"people", PartKind::people},
    {"core-properties", PartKind::core},
    {"extended-properties", PartKind::extended},
    {"extendedProperties", PartKind::extended},
    {"custom-properties", PartKind::properties},
    {"customProperties", PartKind::properties},
    {"customXml", PartKind::data},
    {"package", PartKind::package},
    {"oleObject", PartKind::object},
    {"control", PartKind::object},
    {"activeXControlBinary", PartKind::object},
    {"image", PartKind::picture},
    {"hdphoto", PartKind::picture},
    {"vbaProject", PartKind::macros},
    {"wordVbaData", PartKind::macros},
    {"thumbnail", PartKind::thumbnail},
}};

}  // namespace

std::optional<PartKind> kindOf(const Relationship& relationship) {
  const std::string_view kind = relationship.kind();
  const auto found =
      std::find_if(kKinds.begin(), kKinds.end(), [&](const auto& known) { return known.first == kind; });
  return found == kKinds.end() ? std::nullopt : std::optional(found->second);
}

bool comesLast(PartKind kind) {
  return kind == PartKind::core || kind == PartKind::extended || kind == PartKind::data ||
         kind == PartKind::diagramDrawing;
}

}  // namespace pluvo::docx
