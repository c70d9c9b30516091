#pragma once

#include "zip/archive.h"

#include <string>
#include <string_view>
#include <vector>

namespace pluvo::docx {

/// That a part has another one, and as what.
struct Relationship {
  std::string type;  ///< a URI
  std::string part;  ///< its name in the package, though it may not be there
  std::string id;    ///< by which the part refers to it

  /// The last step of the type: "header".
  std::string_view kind() const;
};

/// Those of a part, or, of no part (""), of the package; without those that lead out of the package.
std::vector<Relationship> relationshipsIn(const zip::Archive& archive, std::string_view source);

/// The part in which they stand.
std::string relationshipPartOf(std::string_view source);

/// A relationship's target as the name of a part.
std::string resolved(std::string_view source, std::string_view target);

}  // namespace pluvo::docx
