#include "xml/vocabulary.h"

#include <algorithm>
#include <tuple>

namespace pluvo::xml {

namespace {

bool before(const KnownName& a, const KnownName& b) {
  return std::tie(a.space, a.local) < std::tie(b.space, b.local);
}

}  // namespace

Vocabulary::Vocabulary(std::span<const KnownNamespace> namespaces, std::span<const KnownName> names)
    : namespaces_(namespaces.begin(), namespaces.end()), names_(names.begin(), names.end()) {
  std::sort(namespaces_.begin(), namespaces_.end(),
            [](const KnownNamespace& a, const KnownNamespace& b) { return a.uri < b.uri; });
  std::sort(names_.begin(), names_.end(), before);
}

NamespaceId Vocabulary::findNamespace(std::string_view uri) const {
  const auto at =
      std::lower_bound(namespaces_.begin(), namespaces_.end(), uri,
                       [](const KnownNamespace& known, std::string_view u) { return known.uri < u; });
  return at != namespaces_.end() && at->uri == uri ? at->id : kOtherNamespace;
}

NameId Vocabulary::findName(NamespaceId space, std::string_view local) const {
  const KnownName sought{space, local, kOtherName};
  const auto at = std::lower_bound(names_.begin(), names_.end(), sought, before);
  return at != names_.end() && at->space == space && at->local == local ? at->id : kOtherName;
}

}  // namespace pluvo::xml
