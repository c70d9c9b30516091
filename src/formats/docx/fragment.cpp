#include "fragment.h"

namespace pluvo::docx {

namespace {

constexpr auto kEnd = std::string_view::npos;

/// The end of the markup (tag, comment, CDATA section, instruction) that begins at '<'.
std::size_t markupEnd(std::string_view bytes, std::size_t at) {
  const auto after = [&](std::string_view mark) {
    const std::size_t found = bytes.find(mark, at);
    return found == kEnd ? bytes.size() : found + mark.size();
  };
  if (bytes.substr(at, 4) == "<!--") return after("-->");
  if (bytes.substr(at, 9) == "<![CDATA[") return after("]]>");
  if (bytes.substr(at, 2) == "<?") return after("?>");
  for (std::size_t i = at; i < bytes.size(); ++i) {
    if (bytes[i] == '>') return i + 1;
    if (bytes[i] == '"' || bytes[i] == '\'') i = bytes.find(bytes[i], i + 1);
  }
  return bytes.size();
}

bool isStartTag(std::string_view bytes, std::size_t at) {
  const char next = at + 1 < bytes.size() ? bytes[at + 1] : '!';
  return next != '!' && next != '?' && next != '/';
}

}  // namespace

std::string_view Fragment::name() const {
  return startTag.substr(1, startTag.find_first_of(" \t\r\n/>", 1) - 1);
}

std::string_view Fragment::prefix() const { return name().substr(0, name().find(':') + 1); }

std::string_view Fragment::local() const { return name().substr(prefix().size()); }

std::string_view Fragment::value(std::string_view wanted) const {
  std::string_view found;
  forEachAttribute(startTag, [&](std::string_view name, std::string_view value, std::size_t, std::size_t) {
    if (name.substr(name.find(':') + 1) == wanted) found = value;
  });
  return found;
}

std::size_t nextElement(std::string_view bytes, std::size_t from) {
  std::size_t at = bytes.find('<', from);
  while (at != kEnd && !isStartTag(bytes, at)) at = bytes.find('<', markupEnd(bytes, at));
  return at;
}

Fragment startOf(std::string_view bytes) {
  Fragment result;
  result.startTag = bytes.substr(0, markupEnd(bytes, 0));
  return result;
}

Fragment fragmentOf(std::string_view bytes) {
  Fragment result = startOf(bytes);
  const std::size_t innerBegin = result.startTag.size();
  if (result.startTag.size() < 2 || result.startTag[result.startTag.size() - 2] == '/') {
    result.whole = result.startTag;
    return result;
  }
  std::size_t depth = 1;
  std::size_t at = innerBegin;
  while ((at = bytes.find('<', at)) != kEnd) {
    const std::size_t end = markupEnd(bytes, at);
    if (bytes[at + 1] == '/') {
      --depth;
    } else if (isStartTag(bytes, at) && bytes[end - 2] != '/') {
      ++depth;
    }
    if (depth == 0) {
      result.inner = bytes.substr(innerBegin, at - innerBegin);
      result.endTag = bytes.substr(at, end - at);
      result.whole = bytes.substr(0, end);
      return result;
    }
    at = end;
  }
  result.inner = bytes.substr(innerBegin);
  result.whole = bytes;
  return result;
}

}  // namespace pluvo::docx
