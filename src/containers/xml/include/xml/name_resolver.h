#pragma once

#include "xml/slots.h"
#include "xml/vocabulary.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::xml {

/// The declarations in scope as a number that no other text has: the same number, the same declarations.
using Scope = std::uint64_t;

struct ResolvedName {
  NameId id = kOtherName;
  NamespaceId space = kNoNamespace;
  std::uint16_t binding = 0;       ///< NameResolver::uri() gives the URI itself
  std::uint32_t prefixLength = 0;  ///< without the colon
  const char* problem = nullptr;   ///< why this is no name here, as part of a sentence
};

/// The namespace declarations in scope, and what names mean under them. A name met before under the same
/// declarations costs one look into a table, whatever the vocabulary.
class NameResolver {
 public:
  /// For a text of so many bytes.
  NameResolver(const Vocabulary& vocabulary, std::size_t textSize);

  /// A declaration of the element that is being entered. Gives its fault, or null. The strings
  /// must outlive the resolver.
  const char* declare(std::string_view prefix, std::string_view uri);
  std::size_t declared() const { return bindings_.size(); }
  Scope scope() const { return scope_; }
  /// Forgets the declarations after the first `count`.
  void forget(std::size_t count);

  /// The result is good until the next call.
  const ResolvedName& element(std::string_view name) { return find(name, elements_, true); }
  const ResolvedName& attribute(std::string_view name) { return find(name, attributes_, false); }
  NamespaceId namespaceOf(std::string_view prefix) const;
  /// The namespace that a prefix is declared as; empty where it is not.
  std::string_view uriOf(std::string_view prefix) const { return uri(bindingOf(prefix)); }
  std::string_view uri(std::uint16_t binding) const { return bindings_[binding].uri; }
  /// The declarations in scope, the outermost first: visit(prefix, uri). An inner one may stand for another.
  template <class Visit>
  void forEachDeclaration(Visit visit) const {
    for (std::size_t i = kBuiltIn; i < bindings_.size(); ++i) visit(bindings_[i].prefix, bindings_[i].uri);
  }

 private:
  static constexpr std::size_t kBuiltIn = 3;  ///< bindings that no text declares
  struct Binding {
    std::string_view prefix;
    std::string_view uri;
    NamespaceId space;
    Scope scope;  ///< the scope that this binding opened
  };
  /// Names of up to 16 bytes are known by their length, first and last eight bytes.
  struct Slot {
    std::uint64_t head = 0, tail = 0;
    std::string_view name;
    Scope scope = 0;  ///< 0: nothing here yet
    ResolvedName resolved;
  };
  using Table = Slots<Slot>;  // names of other texts have other scopes

  const ResolvedName& find(std::string_view name, Table& table, bool isElement);
  ResolvedName resolve(std::string_view name, bool isElement) const;
  std::uint16_t bindingOf(std::string_view prefix) const;

  const Vocabulary* vocabulary_;
  std::vector<Binding> bindings_;
  Scope scope_;  ///< changes with the bindings, and comes back when they do
  Table elements_;
  Table attributes_;
  ResolvedName unsound_;
};

}  // namespace pluvo::xml
