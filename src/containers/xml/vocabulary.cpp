#include "xml/vocabulary.h"

#include "words.h"

#include <algorithm>
#include <bit>

namespace pluvo::xml {

namespace {

std::size_t hashOf(NamespaceId space, std::string_view local) {
  if (local.empty()) return space;
  return mixed(headOf(local), tailOf(local), local.size() + space) >> 40U;
}

}  // namespace

Vocabulary::Vocabulary(std::span<const KnownNamespace> namespaces, std::span<const KnownName> names)
    : namespaces_(namespaces.begin(), namespaces.end()),
      names_(std::bit_ceil(names.size() * 2 + 1), KnownName{kNoNamespace, {}, kOtherName}) {
  std::sort(namespaces_.begin(), namespaces_.end(),
            [](const KnownNamespace& a, const KnownNamespace& b) { return a.uri < b.uri; });
  for (const KnownName& name : names) names_[placeOf(name.space, name.local)] = name;
}

NamespaceId Vocabulary::findNamespace(std::string_view uri) const {
  const auto at =
      std::lower_bound(namespaces_.begin(), namespaces_.end(), uri,
                       [](const KnownNamespace& known, std::string_view u) { return known.uri < u; });
  return at != namespaces_.end() && at->uri == uri ? at->id : kOtherNamespace;
}

NameId Vocabulary::findName(NamespaceId space, std::string_view local) const {
  return names_[placeOf(space, local)].id;
}

/// Where the name is, or the free place where it would be.
std::size_t Vocabulary::placeOf(NamespaceId space, std::string_view local) const {
  const std::size_t last = names_.size() - 1;
  std::size_t place = hashOf(space, local) & last;
  while (names_[place].id != kOtherName && (names_[place].space != space || names_[place].local != local))
    place = (place + 1) & last;
  return place;
}

}  // namespace pluvo::xml
