#include "xml/tag_memory.h"

#include "words.h"

#include <algorithm>
#include <cstring>

namespace pluvo::xml {

namespace {

constexpr std::size_t kLongest = 128;

/// Up to the first '>', which ends most tags; empty when it is far.
std::string_view cutTag(std::string_view bytes) {
  const auto* const close =
      static_cast<const char*>(std::memchr(bytes.data(), '>', std::min(bytes.size(), kLongest)));
  return close == nullptr ? std::string_view()
                          : bytes.substr(0, static_cast<std::size_t>(close + 1 - bytes.data()));
}

/// Where a tag is that another one drove away.
std::size_t neighbour(std::size_t slot) { return slot ^ 1U; }

}  // namespace

TagMemory::TagMemory(std::size_t textSize) : slots_(slotsFor(textSize)) {}

std::size_t TagMemory::slotFor(std::string_view tag) const {
  return slotOf(headOf(tag), tailOf(tag), tag.size(), slots_.size());
}

const KnownTag* TagMemory::recall(std::string_view bytes, Scope scope) const {
  const std::string_view tag = cutTag(bytes);
  if (tag.empty()) return nullptr;
  const std::size_t slot = slotFor(tag);
  const auto at = [&](std::size_t place) {
    const KnownTag& known = slots_[place];
    return known.scope == scope && known.bytes == tag ? &known : nullptr;
  };
  const KnownTag* const known = at(slot);
  return known != nullptr ? known : at(neighbour(slot));
}

void TagMemory::remember(std::string_view tag, Offset begin, KnownTag::Name name,
                         const std::vector<Attribute>& attributes, Scope scope) {
  if (attributes.size() > KnownTag::kMostAttributes || cutTag(tag).size() != tag.size()) return;
  const std::size_t slot = slotFor(tag);
  KnownTag& known = slots_[slot];
  if (known.scope != 0) slots_[neighbour(slot)] = known;
  known.bytes = tag;
  known.scope = scope;
  known.name = name;
  known.name.end -= begin;
  known.attributeCount = static_cast<std::uint8_t>(attributes.size());
  std::copy(attributes.begin(), attributes.end(), known.attributes.begin());
  for (Attribute& attribute : known.attributes) attribute.moveBy(Offset{0} - begin);
}

}  // namespace pluvo::xml
