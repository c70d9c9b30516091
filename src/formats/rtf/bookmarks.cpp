#include "bookmarks.h"

#include "base/ascii.h"

#include <unordered_map>

namespace pluvo::rtf {

namespace {

/// The words of all codes of fields, in small letters.
std::unordered_set<std::string> namedInFields(std::string_view file) {
  constexpr std::string_view kCode = "\\fldinst";
  std::unordered_set<std::string> names;
  for (std::size_t at = file.find(kCode); at != std::string_view::npos; at = file.find(kCode, at)) {
    Tokens tokens(file, at);
    tokens.next();
    std::string code;
    std::size_t depth = 1;
    for (Token token = tokens.next(); token.kind != Token::Kind::end; token = tokens.next()) {
      if (token.kind == Token::Kind::open) ++depth;
      if (token.kind == Token::Kind::close && --depth == 0) break;
      if (token.kind == Token::Kind::text)
        code += file.substr(token.extent.begin, token.extent.end - token.extent.begin);
    }
    at = tokens.at();
    constexpr std::string_view kBetween = " \"\t";
    for (std::size_t from = 0; (from = code.find_first_not_of(kBetween, from)) != std::string::npos;) {
      const std::size_t to = std::min(code.find_first_of(kBetween, from), code.size());
      names.insert(base::asciiLower(std::string_view(code).substr(from, to - from)));
      from = to;
    }
  }
  return names;
}

}  // namespace

std::string DepartedBookmarks::plain(std::string_view name) {
  const std::size_t from = std::min(name.find_first_not_of(" \r\n"), name.size());
  const std::size_t to = std::min(name.find_first_of("{}\\\r\n", from), name.size());
  return base::asciiLower(name.substr(from, to - from));
}

DepartedBookmarks::DepartedBookmarks(std::string_view file, const std::vector<TextMap::Bookmark>& bookmarks,
                                     const document::Dropped& dropped) {
  if (dropped.empty() || bookmarks.empty()) return;
  struct Pair {
    text::Position from = -1;
    text::Position to = -1;
    int ends = 0;
  };
  std::unordered_map<std::string, Pair> pairs;
  for (const TextMap::Bookmark& bookmark : bookmarks) {
    Pair& pair = pairs[plain(file.substr(bookmark.name.begin, bookmark.name.end - bookmark.name.begin))];
    (bookmark.isEnd ? pair.to : pair.from) = bookmark.position;
    ++pair.ends;
  }
  for (const auto& [name, pair] : pairs) {
    // One between two characters lay in the text when both of them go.
    const text::Position beside = pair.from == pair.to ? 1 : 0;
    const bool isPair = pair.ends == 2 && pair.from >= beside && pair.from <= pair.to;
    if (isPair && dropped.hold({pair.from - beside, pair.to + beside})) names_.insert(name);
  }
  if (names_.empty()) return;
  for (const std::string& named : namedInFields(file)) names_.erase(named);
}

}  // namespace pluvo::rtf
