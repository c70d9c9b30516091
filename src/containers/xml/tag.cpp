#include "characters.h"
#include "xml/scanner.h"

#include <algorithm>
#include <tuple>

/// The scanner's work on start and empty tags: attributes, namespace declarations, names.
namespace pluvo::xml {

namespace {

/// Up to here each attribute is compared with each.
constexpr std::size_t kFew = 16;

}  // namespace

Token Scanner::scanTag() {
  const auto declared = static_cast<std::uint32_t>(names_.declared());
  declares_ = false;
  if (!recallTag()) readTag();

  if (open_.empty()) {
    if (rootSeen_) fail(here(), "there is a second outermost element");
    rootSeen_ = true;
  }
  if (text_[end_ - 2] == '/') {
    declaredOutside_ = declared;
    leaving_ = declares_;
    return Token::empty;
  }
  if (open_.size() >= limits_.depth) refuseSize("has elements nested ", limits_.depth, " deep");
  open_.push_back({nameBegin_, nameEnd_, name_, space_, declared});
  return Token::start;
}

bool Scanner::recallTag() {
  const KnownTag* const known = tags_.recall(rest(here()), names_.scope());
  if (known == nullptr) return false;
  nameBegin_ = begin_ + 1;
  nameEnd_ = begin_ + known->name.end;
  end_ = begin_ + static_cast<Offset>(known->bytes.size());
  name_ = known->name.id;
  space_ = known->name.space;
  attributes_.clear();
  for (std::size_t i = 0; i < known->attributeCount; ++i)
    attributes_.emplace_back(known->attributes[i]).moveBy(begin_);
  return true;
}

void Scanner::readTag() {
  const char* at = here() + 1;
  nameBegin_ = offset(at);
  while (at != limit() && is(*at, kNamePart)) ++at;
  nameEnd_ = offset(at);
  if (nameBegin_ == nameEnd_) fail(here(), "there is a '<' that begins no markup");
  attributes_.clear();
  scanAttributes(at);
  if (declares_) declareNamespaces();
  resolveNames();
  if (attributes_.size() > 1) refuseTwins();
  if (!declares_)
    tags_.remember(bytes(begin_, end_), begin_, {name_, space_, nameEnd_}, attributes_, names_.scope());
}

/// From the end of the element's name to the end of the tag.
void Scanner::scanAttributes(const char* at) {
  const char* const last = limit();
  for (;;) {
    const char* const blank = at;
    while (at != last && is(*at, kBlank)) ++at;
    if (at == last) fail(here(), "a tag is not closed");
    if (*at == '>') {
      end_ = offset(at) + 1;
      return;
    }
    if (*at == '/') {
      if (at + 1 == last || at[1] != '>') fail(at, "a tag is not closed");
      end_ = offset(at) + 2;
      return;
    }
    if (at == blank) fail(at, "a tag has something other than a name and attributes");
    at = scanAttribute(at);
  }
}

const char* Scanner::scanAttribute(const char* at) {
  const char* const last = limit();
  Attribute attribute;
  attribute.nameBegin = offset(at);
  while (at != last && is(*at, kNamePart)) ++at;
  attribute.nameEnd = offset(at);
  if (attribute.nameBegin == attribute.nameEnd)
    fail(at, "a tag has something other than a name and attributes");
  while (at != last && is(*at, kBlank)) ++at;
  if (at == last || *at != '=') fail(at, "an attribute has no value");
  ++at;
  while (at != last && is(*at, kBlank)) ++at;
  if (at == last || (*at != '"' && *at != '\'')) fail(at, "an attribute's value is not in quotes");
  at = scanValue(at, attribute);
  if (bytes(attribute.nameBegin, attribute.nameEnd).starts_with("xmlns")) declares_ = true;
  if (attributes_.size() == limits_.attributes) {
    refuseSize("has an element of more than ", limits_.attributes, " attributes");
  }
  attributes_.push_back(attribute);
  return at;
}

/// From the opening quote to behind the closing one.
const char* Scanner::scanValue(const char* at, Attribute& attribute) {
  const char* const last = limit();
  const char quote = *at++;
  attribute.valueBegin = offset(at);
  for (;; ++at) {
    while (at != last && !is(*at, kValueStop)) ++at;
    if (at == last) fail(here(), "an attribute's value is not closed");
    if (*at == quote) break;
    if (*at == '<') fail(at, "there is a '<' in an attribute's value");
    if (*at == '&') {
      char32_t c = 0;
      if (readReference(rest(at), c) == 0) fail(at, "there is an '&' that begins no character reference");
    }
    if (*at != '"' && *at != '\'') attribute.plain = false;
  }
  attribute.valueEnd = offset(at);
  return at + 1;
}

void Scanner::declareNamespaces() {
  for (const Attribute& attribute : attributes_) {
    const std::string_view name = bytes(attribute.nameBegin, attribute.nameEnd);
    if (name == "xmlns") {
      declare(attribute, "");
    } else if (name.starts_with("xmlns:")) {
      declare(attribute, name.substr(6));
    }
  }
  if (names_.declared() > limits_.namespacesInScope) {
    refuseSize("declares more than ", limits_.namespacesInScope, " namespaces in one place");
  }
}

void Scanner::declare(const Attribute& attribute, std::string_view prefix) {
  std::string_view uri = rawValue(attribute);
  if (!attribute.plain) uri = decodedUris_.emplace_back(value(attribute));
  if (const char* const problem = names_.declare(prefix, uri)) fail(text_ + attribute.nameBegin, problem);
}

void Scanner::resolveNames() {
  const ResolvedName& element = names_.element(qualifiedName());
  if (element.problem != nullptr) fail(here(), element.problem);
  name_ = element.id;
  space_ = element.space;
  for (Attribute& attribute : attributes_) {
    const ResolvedName& name = names_.attribute(bytes(attribute.nameBegin, attribute.nameEnd));
    if (name.problem != nullptr) fail(text_ + attribute.nameBegin, name.problem);
    attribute.id = name.id;
    attribute.space = name.space;
    attribute.binding = name.binding;
    attribute.prefixLength = name.prefixLength;
  }
}

std::string_view Scanner::localName(const Attribute& attribute) const {
  const Offset colon = attribute.prefixLength == 0 ? 0 : attribute.prefixLength + 1;
  return bytes(attribute.nameBegin + colon, attribute.nameEnd);
}

/// Two attributes may not be the same name in the same namespace, however their prefixes are written. A known
/// name's number tells it from every other.
void Scanner::refuseTwins() {
  if (attributes_.size() > kFew) return refuseTwinsAmongMany();
  for (auto a = attributes_.begin(); a != attributes_.end(); ++a) {
    for (auto b = attributes_.begin(); b != a; ++b) {
      if (a->id != b->id) continue;
      if (a->id != kOtherName || (localName(*a) == localName(*b) && uriOf(*a) == uriOf(*b))) {
        fail(text_ + a->nameBegin, "an attribute is repeated");
      }
    }
  }
}

void Scanner::refuseTwinsAmongMany() {
  using Key = std::tuple<NameId, std::string_view, std::string_view>;
  std::vector<Key> keys;
  for (const Attribute& attribute : attributes_) {
    const bool known = attribute.id != kOtherName;
    keys.emplace_back(attribute.id, known ? "" : localName(attribute), known ? "" : uriOf(attribute));
  }
  std::sort(keys.begin(), keys.end());
  if (std::adjacent_find(keys.begin(), keys.end()) != keys.end()) fail(here(), "an attribute is repeated");
}

}  // namespace pluvo::xml
