#include "declaration.h"

#include "characters.h"

#include <algorithm>

namespace pluvo::xml {

namespace {

void skipBlanks(std::string_view& text) {
  while (!text.empty() && is(text.front(), kBlank)) text.remove_prefix(1);
}

/// Takes ` name = "value"` from the front; false, and nothing taken, where something else stands there.
bool takeField(std::string_view& text, std::string_view name, std::string_view& value) {
  std::string_view left = text;
  skipBlanks(left);
  if (left.size() == text.size() || !left.starts_with(name)) return false;
  left.remove_prefix(name.size());
  skipBlanks(left);
  if (!left.starts_with('=')) return false;
  left.remove_prefix(1);
  skipBlanks(left);
  if (left.empty() || (left.front() != '"' && left.front() != '\'')) return false;
  const std::size_t close = left.find(left.front(), 1);
  if (close == std::string_view::npos) return false;
  value = left.substr(1, close - 1);
  text = left.substr(close + 1);
  return true;
}

bool isVersion(std::string_view value) {
  return value.size() > 2 && value.starts_with("1.") &&
         std::all_of(value.begin() + 2, value.end(), [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

bool isDeclaration(std::string_view text) {
  std::string_view value;
  bool sound = takeField(text, "version", value) && isVersion(value);
  if (sound && takeField(text, "encoding", value)) sound = !value.empty();
  if (sound && takeField(text, "standalone", value)) sound = value == "yes" || value == "no";
  skipBlanks(text);
  return sound && text.empty();
}

}  // namespace pluvo::xml
