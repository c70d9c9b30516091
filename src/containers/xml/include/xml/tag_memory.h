#pragma once

#include "xml/attribute.h"
#include "xml/name_resolver.h"
#include "xml/slots.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace pluvo::xml {

/// A start or empty tag that declares no namespace.
struct KnownTag {
  struct Name {
    NameId id = kOtherName;
    NamespaceId space = kNoNamespace;
    Offset end = 0;
  };
  static constexpr std::size_t kMostAttributes = 4;

  std::string_view bytes;  ///< where they were first met
  Scope scope = 0;         ///< 0: no tag
  Name name;
  std::uint8_t attributeCount = 0;
  std::array<Attribute, kMostAttributes> attributes;  ///< here and in the name offsets are those from the '<'
};

/// The tags met before. A document repeats few tags, byte for byte. A repeated tag needs no second reading:
/// the same bytes under the same declarations mean the same.
class TagMemory {
 public:
  /// For a text of so many bytes.
  explicit TagMemory(std::size_t textSize);

  /// The tag that the bytes begin with, or null.
  const KnownTag* recall(std::string_view bytes, Scope scope) const;
  /// A long tag, or one with many attributes or a '>' within, is forgotten at once. The bytes must outlive
  /// this; the other offsets are those of the scanned bytes, in which the tag begins at `begin`.
  void remember(std::string_view tag, Offset begin, KnownTag::Name name,
                const std::vector<Attribute>& attributes, Scope scope);

 private:
  std::size_t slotFor(std::string_view tag) const;

  Slots<KnownTag> slots_;  ///< tags of other texts have other scopes
};

}  // namespace pluvo::xml
