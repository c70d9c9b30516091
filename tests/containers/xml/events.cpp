#include "containers/xml/events.h"

#include "base/utf.h"
#include "xml/scanner.h"

#include <expat.h>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace pluvo::xml {

namespace {

/// Ends a namespace in the names that expat tells. No well-formed document holds it.
constexpr char kSeparator = '\x01';

constexpr KnownNamespace kKnown[] = {{"u", 2}, {"v", 3}, {"w", 4}};

std::string withLineFeeds(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\r') {
      out.push_back(text[i]);
    } else if (i + 1 == text.size() || text[i + 1] != '\n') {
      out.push_back('\n');
    }
  }
  return out;
}

/// Control characters would break the lines.
std::string shown(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if (c >= 0 && c < ' ') {
      out += "\\" + std::to_string(static_cast<int>(c));
    } else {
      out.push_back(c);
    }
  }
  return out;
}

class Events {
 public:
  void text(std::string_view part) { text_ += part; }
  void element(const std::string& name, std::vector<std::string> attributes) {
    std::sort(attributes.begin(), attributes.end());
    std::string line = "<" + name;
    for (const std::string& attribute : attributes) line += " " + attribute;
    add(line);
  }
  void end(const std::string& name) { add("/" + name); }
  void comment(std::string_view inner) { add("-" + shown(withLineFeeds(inner))); }
  void instruction(std::string_view target, std::string_view data) {
    add("?" + std::string(target) + " " + shown(withLineFeeds(data)));
  }
  std::string take() {
    flush();
    return std::move(lines_);
  }

 private:
  void flush() {
    if (!text_.empty()) lines_ += "\"" + shown(text_) + "\n";
    text_.clear();
  }
  void add(const std::string& line) {
    flush();
    lines_ += line + "\n";
  }
  std::string lines_;
  std::string text_;
};

/// A name as it is written after the number of its namespace.
std::string shownName(NamespaceId space, std::string_view qualified) {
  return std::to_string(space) + " " + std::string(qualified);
}

class ScannerEvents {
 public:
  explicit ScannerEvents(std::string_view utf8)
      : scanner_({reinterpret_cast<const std::uint8_t*>(utf8.data()), utf8.size()}, vocabulary_, "part") {}

  std::string run() {
    Offset last = 0;
    for (Token token = scanner_.next(); token != Token::finish; token = scanner_.next()) {
      if (scanner_.begin() != last || scanner_.end() <= last) return "tokens do not follow one another";
      last = scanner_.end();
      take(token);
    }
    return events_.take();
  }

 private:
  void take(Token token) {
    const std::string_view inner = scanner_.bytes(scanner_.innerBegin(), scanner_.innerEnd());
    if (token == Token::start || token == Token::empty) takeTag();
    if (token == Token::end || token == Token::empty)
      events_.end(shownName(scanner_.space(), scanner_.qualifiedName()));
    if (token == Token::text && scanner_.depth() > 0)
      events_.text(withLineFeeds(scanner_.bytes(scanner_.begin(), scanner_.end())));
    if (token == Token::reference) {
      const char32_t c = scanner_.codePoint();
      const char16_t units[] = {static_cast<char16_t>(c < 0x10000 ? c : 0xD7C0 + (c >> 10U)),
                                static_cast<char16_t>(0xDC00 + (c & 0x3FFU))};
      events_.text(base::utf8({units, c < 0x10000 ? 1U : 2U}));
    }
    if (token == Token::cdata) events_.text(withLineFeeds(inner));
    if (token == Token::comment) events_.comment(inner);
    if (token == Token::instruction) takeInstruction(inner);
  }

  void takeInstruction(std::string_view inner) {
    const std::size_t blank = std::min(inner.find_first_of(" \t\r\n"), inner.size());
    const std::string_view target = inner.substr(0, blank);
    if (target == "xml") return;
    const std::size_t data = std::min(inner.find_first_not_of(" \t\r\n", blank), inner.size());
    events_.instruction(target, inner.substr(data));
  }

  void takeTag() {
    std::vector<std::string> attributes;
    for (const Attribute& attribute : scanner_.attributes()) {
      const std::string_view name = scanner_.bytes(attribute.nameBegin, attribute.nameEnd);
      const bool declares = name == "xmlns" || name.starts_with("xmlns:");
      attributes.push_back((declares ? std::string(name) : shownName(attribute.space, name)) + "=" +
                           shown(scanner_.value(attribute)));
    }
    events_.element(shownName(scanner_.space(), scanner_.qualifiedName()), std::move(attributes));
  }

  const Vocabulary vocabulary_{kKnown, {}};
  Scanner scanner_;
  Events events_;
};

/// What expat tells, of names in three parts: namespace, name, prefix.
struct ExpatEvents {
  static std::string nameOf(const std::string& triplet) {
    const std::size_t local = triplet.find(kSeparator) + 1;
    if (local == 0) return shownName(kNoNamespace, triplet);
    const std::string uri = triplet.substr(0, local - 1);
    NamespaceId space = uri == "http://www.w3.org/XML/1998/namespace" ? kXmlNamespace : kOtherNamespace;
    for (const KnownNamespace& known : kKnown) {
      if (known.uri == uri) space = known.id;
    }
    const std::size_t prefix = triplet.find(kSeparator, local) + 1;
    if (prefix == 0) return shownName(space, triplet.substr(local));
    return shownName(space, triplet.substr(prefix) + ":" + triplet.substr(local, prefix - 1 - local));
  }

  Events events;
  std::vector<std::string> declared;  ///< on the element to come
};

ExpatEvents& toldTo(void* user) { return *static_cast<ExpatEvents*>(user); }

}  // namespace

std::optional<std::string> eventsOfScanner(std::string_view utf8) {
  try {
    return ScannerEvents(utf8).run();
  } catch (const errors::DocumentError&) {
    return std::nullopt;
  }
}

std::optional<std::string> eventsOfExpat(std::string_view utf8) {
  const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(
      XML_ParserCreateNS("UTF-8", kSeparator), &XML_ParserFree);
  ExpatEvents told;
  XML_SetUserData(parser.get(), &told);
  XML_SetReturnNSTriplet(parser.get(), 1);
  XML_SetStartNamespaceDeclHandler(parser.get(), [](void* user, const char* prefix, const char* uri) {
    const std::string name = prefix == nullptr ? "xmlns" : std::string("xmlns:") + prefix;
    toldTo(user).declared.push_back(name + "=" + shown(uri == nullptr ? "" : uri));
  });
  XML_SetElementHandler(
      parser.get(),
      [](void* user, const char* name, const char** pairs) {
        std::vector<std::string> attributes = std::exchange(toldTo(user).declared, {});
        for (; *pairs != nullptr; pairs += 2)
          attributes.push_back(ExpatEvents::nameOf(pairs[0]) + "=" + shown(pairs[1]));
        toldTo(user).events.element(ExpatEvents::nameOf(name), std::move(attributes));
      },
      [](void* user, const char* name) { toldTo(user).events.end(ExpatEvents::nameOf(name)); });
  XML_SetCharacterDataHandler(parser.get(), [](void* user, const char* text, int length) {
    toldTo(user).events.text({text, static_cast<std::size_t>(length)});
  });
  XML_SetCommentHandler(parser.get(),
                        [](void* user, const char* text) { toldTo(user).events.comment(text); });
  XML_SetProcessingInstructionHandler(parser.get(), [](void* user, const char* target, const char* data) {
    toldTo(user).events.instruction(target, data);
  });
  if (XML_Parse(parser.get(), utf8.data(), static_cast<int>(utf8.size()), XML_TRUE) != XML_STATUS_OK) {
    return std::nullopt;
  }
  return told.events.take();
}

bool mayDiffer(std::string_view utf8) {
  const bool oddDeclaration =
      utf8.starts_with("<?xml") && !utf8.starts_with("<?xml version=\"1.0\"?>") &&
      !utf8.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>");
  return oddDeclaration || utf8.find("<!DOCTYPE") != std::string_view::npos ||
         std::any_of(utf8.begin(), utf8.end(),
                     [](char c) { return (static_cast<unsigned char>(c) & 0x80U) != 0; });
}

}  // namespace pluvo::xml
