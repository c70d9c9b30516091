#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace pluvo::xml {

/// A name the caller cares about; the numbers are the caller's own. 0 is every other name.
using NameId = std::uint16_t;
inline constexpr NameId kOtherName = 0;

/// A namespace the caller cares about. Several URIs may share a number (the transitional and the strict one).
using NamespaceId = std::uint8_t;
inline constexpr NamespaceId kNoNamespace = 0;       ///< an attribute without prefix, an element without any
inline constexpr NamespaceId kXmlNamespace = 1;      ///< the prefix "xml"; always known
inline constexpr NamespaceId kOtherNamespace = 255;  ///< a URI the caller did not name; callers use 2 to 254

struct KnownNamespace {
  std::string_view uri;
  NamespaceId id;
};

/// Elements and attributes alike. An attribute written without prefix lies in kNoNamespace.
struct KnownName {  // NOLINT(clang-analyzer-optin.performance.Padding): in the order in which names are read
  NamespaceId space;
  std::string_view local;
  NameId id;
};

/// The names a reader asks a scanner to recognise. Made once; the strings are not copied and must outlive it.
class Vocabulary {
 public:
  Vocabulary(std::span<const KnownNamespace> namespaces, std::span<const KnownName> names);

  NamespaceId findNamespace(std::string_view uri) const;
  NameId findName(NamespaceId space, std::string_view local) const;

 private:
  std::size_t placeOf(NamespaceId space, std::string_view local) const;

  std::vector<KnownNamespace> namespaces_;  ///< sorted by URI
  std::vector<KnownName> names_;            ///< a hash table, at most half of it in use
};

}  // namespace pluvo::xml
