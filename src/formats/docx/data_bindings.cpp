#include "data_bindings.h"

#include "fragment.h"
#include "text_decoding.h"

#include <algorithm>
#include <optional>

namespace pluvo::docx {

using xml::Token;

namespace {

/// No data lie deeper than this.
constexpr std::size_t kDeepest = 32;

std::string capitals(std::string_view id) {
  std::string result(id);
  for (char& c : result) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
  return result;
}

/// A name as a path has it here.
std::string expanded(std::string_view uri, std::string_view local) {
  return "{" + std::string(uri) + "}" + std::string(local);
}

std::string_view localOf(std::string_view name) { return name.substr(name.find(':') + 1); }
std::string_view prefixOf(std::string_view name) {
  return name.substr(0, std::min(name.find(':'), name.size()) == name.size() ? 0 : name.find(':'));
}

using Prefixes = std::map<std::string, std::string, std::less<>>;

Prefixes prefixesIn(std::string_view declarations) {
  constexpr std::string_view kDeclares = "xmlns:";
  Prefixes prefixes;
  forEachAttribute("a " + std::string(declarations),
                   [&](std::string_view name, std::string_view value, std::size_t, std::size_t) {
                     if (name.starts_with(kDeclares))
                       prefixes[std::string(name.substr(kDeclares.size()))] = value;
                   });
  return prefixes;
}

/// One step of a path, without its slash: "a:name[2]", "@name". Nothing for one that is not understood.
std::optional<std::string> stepOf(std::string_view step, const Prefixes& prefixes) {
  const bool isAttribute = step.starts_with('@');
  if (isAttribute) step.remove_prefix(1);
  std::string number = "1";
  if (const std::size_t bracket = step.find('['); bracket != std::string_view::npos) {
    if (!step.ends_with(']') || isAttribute) return std::nullopt;
    number = step.substr(bracket + 1, step.size() - bracket - 2);
    step = step.substr(0, bracket);
  }
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  if (step.empty() || number.empty() || !std::all_of(number.begin(), number.end(), isDigit) ||
      step.find_first_of("*().=' ") == 0)
    return std::nullopt;
  std::string uri;
  if (const std::string_view prefix = prefixOf(step); !prefix.empty()) {
    const auto found = prefixes.find(prefix);
    if (found == prefixes.end()) return std::nullopt;
    uri = found->second;
  }
  const std::string name = expanded(uri, localOf(step));
  return isAttribute ? "/@" + name : "/" + name + "[" + number + "]";
}

/// For a comparison that sees no difference between kinds of line ends.
std::u16string comparable(std::u16string_view text) {
  std::u16string result;
  for (const char16_t unit : text) {
    if (unit == text::kCommentReference) continue;
    result.push_back(unit == text::kLineBreak || unit == text::kParagraphMark || unit == u'\n' ? u' ' : unit);
  }
  while (!result.empty() && result.back() == u' ') result.pop_back();
  return result;
}

}  // namespace

void DataBindings::add(const Binding& binding, std::u16string_view text) {
  if (binding.formatted || !binding.path.starts_with('/')) return;
  const Prefixes prefixes = prefixesIn(binding.prefixes);
  std::vector<std::string> ways;
  std::string path;
  std::string_view left = binding.path;
  while (!left.empty()) {
    left.remove_prefix(1);
    const std::string_view step = left.substr(0, left.find('/'));
    left.remove_prefix(step.size());
    if (step == "text()") break;
    const std::optional<std::string> understood = stepOf(step, prefixes);
    if (!understood || ways.size() == kDeepest) return;
    ways.push_back(path);
    path += *understood;
  }
  Store& store = stores_[capitals(binding.store)];
  store.ways.insert(ways.begin(), ways.end());
  store.bound.emplace(path, Bound{std::u16string(text), binding.items});
}

/// One walk through a part, along the ways of its store.
class DataBindings::Reading {
 public:
  Reading(const Store& store, formats::OtherTexts& texts) : store_(store), texts_(texts) {}

  void read(base::ByteSpan part, const std::string& partName) {
    xml::Scanner scanner(part, vocabulary(), partName);
    levels_.push_back({});
    for (Token token = scanner.next(); token != Token::finish; token = scanner.next()) {
      if (token == Token::end) leave();
      if (token == Token::text) collect(scanner.bytes(scanner.begin(), scanner.end()));
      if (token == Token::cdata) collect(scanner.bytes(scanner.innerBegin(), scanner.innerEnd()));
      if (token == Token::reference) {
        if (isCollecting()) appendCodePoint(text_, scanner.codePoint());
      }
      if (!opens(token)) continue;
      enter(scanner);
      if (token == Token::empty) leave();
      if (token == Token::start && levels_.back().isOffTheWay && !isCollecting()) {
        scanner.skipElement();
        leave();
      }
    }
  }

 private:
  struct Level {
    std::size_t pathLength = 0;
    bool isOffTheWay = false;
    std::optional<std::size_t> collectsFrom = std::nullopt;  ///< where its text begins in text_
    std::unordered_map<std::string, int> children = {};
  };

  bool isCollecting() const { return collecting_ > 0; }
  void collect(std::string_view bytes) {
    if (isCollecting()) appendUtf8(text_, bytes);
  }

  void enter(const xml::Scanner& scanner) {
    const bool lost = levels_.back().isOffTheWay;
    const std::size_t outside = path_.size();
    if (!lost) {
      const std::string_view name = scanner.qualifiedName();
      const std::string step = expanded(scanner.uriOf(prefixOf(name)), localOf(name));
      path_ += "/" + step + "[" + std::to_string(++levels_.back().children[step]) + "]";
    }
    levels_.push_back({outside, lost || !store_.ways.contains(path_)});
    if (lost) return;
    if (store_.bound.contains(path_)) {
      levels_.back().collectsFrom = text_.size();
      ++collecting_;
    }
    if (levels_.back().isOffTheWay) return;
    for (const xml::Attribute& attribute : scanner.attributes()) readAttribute(scanner, attribute);
  }

  void readAttribute(const xml::Scanner& scanner, const xml::Attribute& attribute) {
    const std::string_view name = scanner.bytes(attribute.nameBegin, attribute.nameEnd);
    const std::string_view prefix = prefixOf(name);
    const std::string uri(prefix.empty() ? std::string_view() : scanner.uriOf(prefix));
    const auto [from, to] = store_.bound.equal_range(path_ + "/@" + expanded(uri, localOf(name)));
    if (from == to) return;
    std::u16string value;
    appendUtf8(value, scanner.value(attribute));
    for (auto bound = from; bound != to; ++bound) compare(bound->second, value);
  }

  void leave() {
    const Level& level = levels_.back();
    if (level.collectsFrom) {
      const std::u16string_view value = std::u16string_view(text_).substr(*level.collectsFrom);
      const auto [from, to] = store_.bound.equal_range(path_);
      for (auto bound = from; bound != to; ++bound) compare(bound->second, value);
      if (--collecting_ == 0) text_.clear();
    }
    path_.resize(level.pathLength);
    levels_.pop_back();
  }

  void compare(const Bound& bound, std::u16string_view value) {
    // Many controls may show one value.
    constexpr std::size_t kLongest = std::size_t{1} << 14U;
    if (value.size() > kLongest) return;
    // Formatted text stands in the data as a document of its own.
    if (value.starts_with(u"<?xml") || value.starts_with(u"<pkg:")) return;
    std::u16string shown(value);
    for (const auto& [stored, display] : bound.items) {
      std::u16string wide;
      appendUtf8(wide, stored);
      if (wide != value || display.empty()) continue;
      shown.clear();
      appendUtf8(shown, display);
      break;
    }
    if (comparable(shown) != comparable(bound.text)) texts_.unreached(formats::Unreached::computed, shown);
  }

  const Store& store_;
  formats::OtherTexts& texts_;
  std::string path_;
  std::vector<Level> levels_;
  std::u16string text_;
  int collecting_ = 0;
};

void DataBindings::tellOtherwise(base::ByteSpan part, const std::string& partName, std::string_view store,
                                 formats::OtherTexts& texts) const {
  for (const std::string& id : {capitals(store), std::string()}) {
    const auto found = stores_.find(id);
    if (found != stores_.end()) Reading(found->second, texts).read(part, partName);
  }
}

}  // namespace pluvo::docx
