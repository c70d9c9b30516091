#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace pluvo::docx {

/// An element as bytes, cut from a part that a scanner has found well-formed.
struct Fragment {
  std::string_view whole;
  std::string_view startTag;
  std::string_view inner;
  std::string_view endTag;  ///< empty for <a/>

  std::string_view name() const;    ///< as written, with its prefix
  std::string_view prefix() const;  ///< with the colon; empty when there is none
  std::string_view local() const;
  /// The value of an attribute by its local name; empty when it is missing. References stay as they are.
  std::string_view value(std::string_view local) const;
};

/// The element whose start tag begins the bytes.
Fragment fragmentOf(std::string_view bytes);

/// Of the same, only the start tag.
Fragment startOf(std::string_view bytes);

/// Visits the child elements among an element's inner bytes: visit(const Fragment&).
template <class Visit>
void forEachChild(std::string_view inner, Visit visit);

/// An element's inner bytes with the children of which change(child) returns something replaced by that.
template <class Change>
std::string withChildren(std::string_view inner, Change change);

/// The element without the children that drop(local name) picks; one left without children goes as a whole.
template <class Drop>
std::string without(std::string_view element, Drop drop);

/// Where the next element's start tag begins at or after from, past text, comments and instructions; npos
/// when there is none.
std::size_t nextElement(std::string_view bytes, std::size_t from);

/// Walks attributes of a start tag: visit(name, value, begin, end), where begin to end are the attribute's
/// bytes with the blanks before it.
template <class Visit>
void forEachAttribute(std::string_view startTag, Visit visit);

template <class Visit>
void forEachChild(std::string_view inner, Visit visit) {
  std::size_t at = nextElement(inner, 0);
  while (at != std::string_view::npos) {
    const Fragment child = fragmentOf(inner.substr(at));
    visit(child);
    at = nextElement(inner, at + child.whole.size());
  }
}

template <class Visit>
void forEachAttribute(std::string_view startTag, Visit visit) {
  constexpr std::string_view kBlanks = " \t\r\n";
  std::size_t at = startTag.find_first_of(" \t\r\n/>");
  while (at < startTag.size()) {
    const std::size_t nameAt = startTag.find_first_not_of(kBlanks, at);
    const std::size_t equals = startTag.find('=', at);
    if (nameAt == std::string_view::npos || equals == std::string_view::npos) return;
    const std::size_t quote = startTag.find_first_of("\"'", equals);
    const std::size_t close = startTag.find(startTag[quote], quote + 1);
    const std::size_t nameEnd = startTag.find_last_not_of(kBlanks, equals - 1) + 1;
    visit(startTag.substr(nameAt, nameEnd - nameAt), startTag.substr(quote + 1, close - quote - 1), at,
          close + 1);
    at = close + 1;
  }
}

template <class Change>
std::string withChildren(std::string_view inner, Change change) {
  std::string result;
  std::size_t copied = 0;
  forEachChild(inner, [&](const Fragment& child) {
    const std::optional<std::string> changed = change(child);
    if (!changed) return;
    const auto at = static_cast<std::size_t>(child.whole.data() - inner.data());
    result.append(inner.substr(copied, at - copied)).append(*changed);
    copied = at + child.whole.size();
  });
  return result.append(inner.substr(copied));
}

template <class Drop>
std::string without(std::string_view element, Drop drop) {
  if (element.empty()) return {};
  const Fragment fragment = fragmentOf(element);
  bool any = false;
  const std::string inner =
      withChildren(fragment.inner, [&](const Fragment& child) -> std::optional<std::string> {
        if (child.prefix() == fragment.prefix() && drop(child.local())) return "";
        any = true;
        return std::nullopt;
      });
  return any ? std::string(fragment.startTag) + inner + std::string(fragment.endTag) : std::string();
}

}  // namespace pluvo::docx
