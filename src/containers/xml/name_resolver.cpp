#include "xml/name_resolver.h"

#include "characters.h"
#include "words.h"

#include <atomic>

namespace pluvo::xml {

namespace {

constexpr std::string_view kXmlUri = "http://www.w3.org/XML/1998/namespace";
constexpr std::string_view kXmlnsUri = "http://www.w3.org/2000/xmlns/";

/// The binding of names without a namespace; it comes first.
constexpr std::uint16_t kNothing = 0;

Scope newScope() {
  static std::atomic<Scope> last = 0;
  return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

}  // namespace

NameResolver::NameResolver(const Vocabulary& vocabulary, std::size_t textSize)
    : vocabulary_(&vocabulary),
      scope_(newScope()),
      elements_(slotsFor(textSize)),
      attributes_(slotsFor(textSize)) {
  bindings_.push_back({"", "", kNoNamespace, scope_});
  bindings_.push_back({"xml", kXmlUri, kXmlNamespace, scope_});
  bindings_.push_back({"xmlns", kXmlnsUri, kOtherNamespace, scope_});
}

const char* NameResolver::declare(std::string_view prefix, std::string_view uri) {
  if (prefix == "xml" && uri == kXmlUri) return nullptr;
  if (prefix == "xml" || prefix == "xmlns" || uri == kXmlUri || uri == kXmlnsUri) {
    return "a reserved namespace is declared anew";
  }
  if (uri.empty() && !prefix.empty()) return "a namespace prefix is declared without a namespace";
  scope_ = newScope();
  bindings_.push_back({prefix, uri, uri.empty() ? kNoNamespace : vocabulary_->findNamespace(uri), scope_});
  return nullptr;
}

void NameResolver::forget(std::size_t count) {
  bindings_.resize(count, bindings_.front());
  scope_ = bindings_.back().scope;
}

const ResolvedName& NameResolver::find(std::string_view name, Table& table, bool isElement) {
  const std::uint64_t head = headOf(name);
  const std::uint64_t tail = tailOf(name);
  Slot& slot = table[slotOf(head, tail, name.size(), table.size())];
  if (slot.scope == scope_ && slot.head == head && slot.tail == tail && slot.name.size() == name.size() &&
      (name.size() <= 16 || slot.name == name)) {
    return slot.resolved;
  }
  const ResolvedName resolved = resolve(name, isElement);
  if (resolved.problem != nullptr) return unsound_ = resolved;
  slot = {head, tail, name, scope_, resolved};
  return slot.resolved;
}

ResolvedName NameResolver::resolve(std::string_view name, bool isElement) const {
  ResolvedName resolved;
  const std::size_t colon = name.find(':');
  const bool prefixed = colon != std::string_view::npos;
  const std::string_view prefix = prefixed ? name.substr(0, colon) : std::string_view();
  const std::string_view local = prefixed ? name.substr(colon + 1) : name;
  if (!isNcName(local) || (prefixed && !isNcName(prefix))) {
    resolved.problem = "a name has characters that names may not have";
    return resolved;
  }
  resolved.prefixLength = static_cast<std::uint32_t>(prefix.size());
  if (!prefixed && !isElement) {
    resolved.id = vocabulary_->findName(kNoNamespace, local);
    return resolved;
  }
  resolved.binding = bindingOf(prefix);
  if (resolved.binding == kNothing && prefixed) {
    resolved.problem = "a name has a prefix that is declared nowhere";
    return resolved;
  }
  if (isElement && prefix == "xmlns") {
    resolved.problem = "an element has the reserved prefix xmlns";
    return resolved;
  }
  resolved.space = bindings_[resolved.binding].space;
  resolved.id = vocabulary_->findName(resolved.space, local);
  return resolved;
}

std::uint16_t NameResolver::bindingOf(std::string_view prefix) const {
  for (std::size_t i = bindings_.size(); i-- > 1;) {
    if (bindings_[i].prefix == prefix) return static_cast<std::uint16_t>(i);
  }
  return kNothing;
}

NamespaceId NameResolver::namespaceOf(std::string_view prefix) const {
  const std::uint16_t binding = bindingOf(prefix);
  if (binding == kNothing && !prefix.empty()) return kOtherNamespace;
  return bindings_[binding].space;
}

}  // namespace pluvo::xml
