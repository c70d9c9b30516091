#pragma once

#include "formats/format.h"
#include "names.h"
#include "package_memory.h"
#include "relationships.h"
#include "zip/archive.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::docx {

/// The relations of other parts to the main one.
enum class Role : std::uint8_t {
  styles,
  settings,
  footnotes,
  endnotes,
  comments,
  commentsExtended,
  commentsIds,
  commentsExtensible,
};

/// The package of a document: the archive, and the places of its parts.
struct Package {
  zip::Archive archive;
  std::string mainPart;
  std::map<Role, std::string> parts;
  std::vector<std::string> stories;  ///< headers, footers, notes and comments
  std::vector<Relationship> rootRelationships = {};
  std::vector<Relationship> mainRelationships = {};
  bool isTemplate = false;

  const zip::Member* member(Role role) const;
};

/// Finds the parts by the relationships, whatever their names. Throws DocumentError as the archive does, too.
/// damaged: a package of another kind (the message says which), or one without a main part or with two.
/// signed: one with a digital signature.
Package openPackage(base::Bytes bytes);
/// The same, of one of many packages.
Package openPackage(zip::Archive archive, PackageMemory& memory);

}  // namespace pluvo::docx
