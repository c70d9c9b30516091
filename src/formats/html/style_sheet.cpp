#include "style_sheet.h"

#include "base/ascii.h"

#include <algorithm>

namespace pluvo::formats::html {

namespace {

constexpr std::size_t kMostRules = 10'000;
constexpr std::size_t kMostBytes = std::size_t{1} << 20U;
constexpr std::size_t kMostKnown = 4096;
constexpr std::size_t kLongestKnown = 1024;

/// Without comments, and without the marks that hid rules from old browsers.
std::string withoutComments(std::string_view text) {
  std::string clean;
  for (std::size_t at = 0; at < text.size();) {
    if (text.substr(at, 2) == "/*") {
      const std::size_t end = text.find("*/", at + 2);
      at = end == text.npos ? text.size() : end + 2;
      clean += ' ';
    } else if (text.substr(at, 4) == "<!--") {
      at += 4;
    } else if (text.substr(at, 3) == "-->") {
      at += 3;
    } else {
      clean += text[at++];
    }
  }
  return clean;
}

bool isPartOfName(char c) {
  return isLetter(c) || isDigit(c) || c == '-' || c == '_' || c == ':' || c == '\\' ||
         static_cast<unsigned char>(c) >= 0x80;
}

/// The selector as a key: small letters in the element's name. Empty where it is none of the simple kinds.
std::string simple(std::string_view selector) {
  const std::size_t sign = selector.find_first_of(".#");
  const std::string_view element = selector.substr(0, sign);
  std::string key = base::asciiLower(element);
  for (char& c : key)
    if (c == '\\') c = ' ';
  std::erase(key, ' ');
  if (sign != selector.npos) key += selector.substr(sign);
  const std::string_view rest = sign == selector.npos ? std::string_view() : selector.substr(sign + 1);
  const bool isSound = std::ranges::all_of(element, isPartOfName) && std::ranges::all_of(rest, isPartOfName);
  const bool isState = sign == selector.npos ? element.find(':') != element.npos && element != "o\\:p"
                                             : rest.find(':') != rest.npos;
  return isSound && !isState ? key : std::string();
}

/// Goes past the block, or the statement, of an at-rule.
std::size_t endOfAtRule(std::string_view text, std::size_t at) {
  int depth = 0;
  for (; at < text.size(); ++at) {
    if (text[at] == ';' && depth == 0) return at + 1;
    if (text[at] == '{') ++depth;
    if (text[at] == '}' && --depth <= 0) return at + 1;
  }
  return at;
}

}  // namespace

void StyleSheet::add(std::string_view text) {
  known_.clear();
  const std::size_t room = kMostBytes - std::min(kMostBytes, taken_);
  taken_ += text.size();
  const std::string clean = withoutComments(text.substr(0, room));
  const std::string_view rules = clean;
  for (std::size_t at = 0; at < rules.size() && rules_.size() < kMostRules;) {
    if (isBlank(rules[at])) {
      ++at;
    } else if (rules[at] == '@') {
      at = endOfAtRule(rules, at);
    } else {
      const std::size_t open = rules.find('{', at);
      if (open == rules.npos) return;
      const std::size_t close = std::min(rules.find('}', open), rules.size());
      addRule(rules.substr(at, open - at), rules.substr(open + 1, close - open - 1));
      at = std::min(close + 1, rules.size());
    }
  }
}

void StyleSheet::addRule(std::string_view selectors, std::string_view declarations) {
  const Style style = html::styleOf(declarations);
  if (style.saysNothing()) return;
  for (std::size_t at = 0; at <= selectors.size() && rules_.size() < kMostRules;) {
    const std::size_t comma = std::min(selectors.find(',', at), selectors.size());
    const std::string key = simple(withoutBlanks(selectors.substr(at, comma - at)));
    if (!key.empty()) rules_[key].takeOver(style);
    at = comma + 1;
  }
}

void StyleSheet::takeOver(Style& style, std::string_view selector) const {
  const auto found = rules_.find(selector);
  if (found != rules_.end()) style.takeOver(found->second);
}

const Style* StyleSheet::ofSpan() const {
  const auto found = rules_.find(std::string_view("span"));
  return found == rules_.end() ? nullptr : &found->second;
}

Style StyleSheet::cascade(std::string_view name, const Attributes& attributes) const {
  Style style;
  if (!rules_.empty()) {
    const std::string element = base::asciiLower(name);
    takeOver(style, element);
    const std::string_view classes = attributes.cssClass.substr(0, kLongestKnown);
    for (std::size_t at = 0; at < classes.size();) {
      while (at < classes.size() && isBlank(classes[at])) ++at;
      const std::size_t begin = at;
      while (at < classes.size() && !isBlank(classes[at])) ++at;
      if (at == begin) break;
      const std::string one = "." + std::string(classes.substr(begin, at - begin));
      takeOver(style, one);
      takeOver(style, element + one);
    }
    if (attributes.hasId) takeOver(style, "#" + std::string(attributes.id));
  }
  if (!attributes.style.empty()) style.takeOver(html::styleOf(attributes.style));
  return style;
}

const Style& StyleSheet::styleOf(std::string_view name, const Attributes& attributes) {
  static const Style kNothing;
  if (rules_.empty() && attributes.style.empty()) return kNothing;
  key_.assign(name);
  key_ += '\n';
  if (!rules_.empty()) {
    key_ += attributes.cssClass;
    key_ += '\n';
    key_ += attributes.id;
    key_ += '\n';
  }
  key_ += attributes.style;
  const auto found = known_.find(std::string_view(key_));
  if (found != known_.end()) return found->second;
  const bool isWorthKeeping = key_.size() <= kLongestKnown;
  if (known_.size() >= kMostKnown) known_.clear();
  return known_[isWorthKeeping ? key_ : std::string()] = cascade(name, attributes);
}

}  // namespace pluvo::formats::html
