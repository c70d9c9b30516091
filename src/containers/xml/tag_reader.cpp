#include "tag_reader.h"

#include "characters.h"

#include <algorithm>
#include <tuple>
#include <vector>

namespace pluvo::xml {

namespace {

/// Up to here each attribute is compared with each.
constexpr std::size_t kFew = 16;

}  // namespace

void TagReader::read() {
  const char* at = scanner_.here() + 1;
  scanner_.nameBegin_ = scanner_.offset(at);
  while (at != scanner_.limit() && is(*at, kNamePart)) ++at;
  scanner_.nameEnd_ = scanner_.offset(at);
  if (scanner_.nameBegin_ == scanner_.nameEnd_)
    scanner_.fail(scanner_.here(), "there is a '<' that begins no markup");
  scanner_.attributes_.clear();
  scanAttributes(at);
  if (scanner_.declares_) declareNamespaces();
  resolveNames();
  if (scanner_.attributes_.size() > 1) refuseTwins();
  if (!scanner_.declares_)
    scanner_.tags_.remember(scanner_.bytes(scanner_.begin_, scanner_.end_), scanner_.begin_,
                            {scanner_.name_, scanner_.space_, scanner_.nameEnd_}, scanner_.attributes_,
                            scanner_.names_.scope());
}

/// From the end of the element's name to the end of the tag.
void TagReader::scanAttributes(const char* at) {
  const char* const last = scanner_.limit();
  for (;;) {
    const char* const blank = at;
    while (at != last && is(*at, kBlank)) ++at;
    if (at == last) scanner_.fail(scanner_.here(), "a tag is not closed");
    if (*at == '>') {
      scanner_.end_ = scanner_.offset(at) + 1;
      return;
    }
    if (*at == '/') {
      if (at + 1 == last || at[1] != '>') scanner_.fail(at, "a tag is not closed");
      scanner_.end_ = scanner_.offset(at) + 2;
      return;
    }
    if (at == blank) scanner_.fail(at, "a tag has something other than a name and attributes");
    at = scanAttribute(at);
  }
}

const char* TagReader::scanAttribute(const char* at) {
  const char* const last = scanner_.limit();
  Attribute attribute;
  attribute.nameBegin = scanner_.offset(at);
  while (at != last && is(*at, kNamePart)) ++at;
  attribute.nameEnd = scanner_.offset(at);
  if (attribute.nameBegin == attribute.nameEnd)
    scanner_.fail(at, "a tag has something other than a name and attributes");
  while (at != last && is(*at, kBlank)) ++at;
  if (at == last || *at != '=') scanner_.fail(at, "an attribute has no value");
  ++at;
  while (at != last && is(*at, kBlank)) ++at;
  if (at == last || (*at != '"' && *at != '\'')) scanner_.fail(at, "an attribute's value is not in quotes");
  at = scanValue(at, attribute);
  if (scanner_.bytes(attribute.nameBegin, attribute.nameEnd).starts_with("xmlns")) scanner_.declares_ = true;
  if (scanner_.attributes_.size() == scanner_.limits_.attributes) {
    scanner_.refuseSize("has an element of more than ", scanner_.limits_.attributes, " attributes");
  }
  scanner_.attributes_.push_back(attribute);
  return at;
}

/// From the opening quote to after the closing one.
const char* TagReader::scanValue(const char* at, Attribute& attribute) {
  const char* const last = scanner_.limit();
  const char quote = *at++;
  attribute.valueBegin = scanner_.offset(at);
  for (;; ++at) {
    while (at != last && !is(*at, kValueStop)) ++at;
    if (at == last) scanner_.fail(scanner_.here(), "an attribute's value is not closed");
    if (*at == quote) break;
    if (*at == '<') scanner_.fail(at, "there is a '<' in an attribute's value");
    if (*at == '&') {
      char32_t c = 0;
      if (readReference(scanner_.rest(at), c) == 0)
        scanner_.fail(at, "there is an '&' that begins no character reference");
    }
    if (*at != '"' && *at != '\'') attribute.plain = false;
  }
  attribute.valueEnd = scanner_.offset(at);
  return at + 1;
}

void TagReader::declareNamespaces() {
  for (const Attribute& attribute : scanner_.attributes_) {
    const std::string_view name = scanner_.bytes(attribute.nameBegin, attribute.nameEnd);
    if (name == "xmlns") {
      declare(attribute, "");
    } else if (name.starts_with("xmlns:")) {
      declare(attribute, name.substr(6));
    }
  }
  if (scanner_.names_.declared() > scanner_.limits_.namespacesInScope) {
    scanner_.refuseSize("declares more than ", scanner_.limits_.namespacesInScope,
                        " namespaces in one place");
  }
}

void TagReader::declare(const Attribute& attribute, std::string_view prefix) {
  std::string_view uri = scanner_.rawValue(attribute);
  if (!attribute.plain) uri = scanner_.decodedUris_.emplace_back(scanner_.value(attribute));
  if (const char* const problem = scanner_.names_.declare(prefix, uri))
    scanner_.fail(scanner_.text_ + attribute.nameBegin, problem);
}

void TagReader::resolveNames() {
  const ResolvedName& element = scanner_.names_.element(scanner_.qualifiedName());
  if (element.problem != nullptr) scanner_.fail(scanner_.here(), element.problem);
  scanner_.name_ = element.id;
  scanner_.space_ = element.space;
  for (Attribute& attribute : scanner_.attributes_) {
    const ResolvedName& name =
        scanner_.names_.attribute(scanner_.bytes(attribute.nameBegin, attribute.nameEnd));
    if (name.problem != nullptr) scanner_.fail(scanner_.text_ + attribute.nameBegin, name.problem);
    attribute.id = name.id;
    attribute.space = name.space;
    attribute.binding = name.binding;
    attribute.prefixLength = name.prefixLength;
  }
}

std::string_view TagReader::localName(const Attribute& attribute) const {
  const Offset colon = attribute.prefixLength == 0 ? 0 : attribute.prefixLength + 1;
  return scanner_.bytes(attribute.nameBegin + colon, attribute.nameEnd);
}

/// Two attributes may not be the same name in the same namespace, however their prefixes are written. A known
/// name's number tells it from every other.
void TagReader::refuseTwins() {
  if (scanner_.attributes_.size() > kFew) return refuseTwinsAmongMany();
  for (auto a = scanner_.attributes_.begin(); a != scanner_.attributes_.end(); ++a) {
    for (auto b = scanner_.attributes_.begin(); b != a; ++b) {
      if (a->id != b->id) continue;
      if (a->id != kOtherName ||
          (localName(*a) == localName(*b) && scanner_.uriOf(*a) == scanner_.uriOf(*b))) {
        scanner_.fail(scanner_.text_ + a->nameBegin, "an attribute is repeated");
      }
    }
  }
}

void TagReader::refuseTwinsAmongMany() {
  using Key = std::tuple<NameId, std::string_view, std::string_view>;
  std::vector<Key> keys;
  for (const Attribute& attribute : scanner_.attributes_) {
    const bool known = attribute.id != kOtherName;
    keys.emplace_back(attribute.id, known ? "" : localName(attribute),
                      known ? "" : scanner_.uriOf(attribute));
  }
  std::sort(keys.begin(), keys.end());
  if (std::adjacent_find(keys.begin(), keys.end()) != keys.end())
    scanner_.fail(scanner_.here(), "an attribute is repeated");
}

}  // namespace pluvo::xml
