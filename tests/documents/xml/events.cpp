#include "documents/xml/events.h"

#include "xml/scanner.h"

#include <expat.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace pluvo::xml {

namespace {

constexpr char kSeparator = '#';

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

/// The scanner tells namespaces by number; the names themselves come from the declarations met on the way.
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
    switch (token) {
      case Token::start:
      case Token::empty:
        return takeTag(token == Token::empty);
      case Token::end:
        events_.end(names_.back());
        return leave();
      case Token::text:
        if (scanner_.depth() > 0)
          events_.text(withLineFeeds(scanner_.bytes(scanner_.begin(), scanner_.end())));
        return;
      case Token::reference: {
        std::string utf8;
        appendUtf8(utf8, scanner_.codePoint());
        return events_.text(utf8);
      }
      case Token::cdata:
        return events_.text(withLineFeeds(inner));
      case Token::comment:
        return events_.comment(inner);
      case Token::instruction:
        return takeInstruction(inner);
      case Token::finish:
        return;
    }
  }

  static void appendUtf8(std::string& out, char32_t c) {
    const unsigned tails = c < 0x80 ? 0 : c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
    static constexpr unsigned kLead[] = {0, 0xC0, 0xE0, 0xF0};
    out.push_back(static_cast<char>(kLead[tails] | c >> 6U * tails));
    for (unsigned i = tails; i-- > 0;) out.push_back(static_cast<char>(0x80U | (c >> 6U * i & 0x3FU)));
  }

  void takeInstruction(std::string_view inner) {
    const std::size_t blank = std::min(inner.find_first_of(" \t\r\n"), inner.size());
    const std::string_view target = inner.substr(0, blank);
    if (target == "xml") return;
    const std::size_t data = std::min(inner.find_first_not_of(" \t\r\n", blank), inner.size());
    events_.instruction(target, inner.substr(data));
  }

  void takeTag(bool empty) {
    scopes_.push_back(bindings_.size());
    std::vector<const Attribute*> plain;
    for (const Attribute& attribute : scanner_.attributes()) {
      const std::string_view name = scanner_.bytes(attribute.nameBegin, attribute.nameEnd);
      if (name == "xmlns" || name.starts_with("xmlns:")) {
        bindings_.emplace_back(name == "xmlns" ? "" : name.substr(6), scanner_.value(attribute));
      } else {
        plain.push_back(&attribute);
      }
    }
    std::vector<std::string> attributes;
    for (const Attribute* attribute : plain) {
      const std::string_view name = scanner_.bytes(attribute->nameBegin, attribute->nameEnd);
      attributes.push_back(expanded(name, false) + "=" + shown(scanner_.value(*attribute)));
    }
    names_.push_back(expanded(scanner_.qualifiedName(), true));
    events_.element(names_.back(), std::move(attributes));
    if (!empty) return;
    events_.end(names_.back());
    leave();
  }

  void leave() {
    names_.pop_back();
    bindings_.resize(scopes_.back());
    scopes_.pop_back();
  }

  std::string expanded(std::string_view name, bool isElement) const {
    const std::size_t colon = name.find(':');
    const std::string_view prefix = colon == std::string_view::npos ? "" : name.substr(0, colon);
    std::string local(colon == std::string_view::npos ? name : name.substr(colon + 1));
    if (prefix == "xml") return std::string("http://www.w3.org/XML/1998/namespace") + kSeparator + local;
    if (prefix.empty() && !isElement) return local;
    const auto binding = std::find_if(bindings_.rbegin(), bindings_.rend(),
                                      [&](const auto& candidate) { return candidate.first == prefix; });
    if (binding == bindings_.rend() || binding->second.empty()) return local;
    return binding->second + kSeparator + local;
  }

  const Vocabulary vocabulary_{{}, {}};
  Scanner scanner_;
  Events events_;
  std::vector<std::pair<std::string, std::string>> bindings_;
  std::vector<std::size_t> scopes_;
  std::vector<std::string> names_;
};

Events& eventsOf(void* user) { return *static_cast<Events*>(user); }

}  // namespace

std::optional<std::string> eventsOfScanner(std::string_view utf8) {
  try {
    return ScannerEvents(utf8).run();
  } catch (const files::DocumentError&) {
    return std::nullopt;
  }
}

std::optional<std::string> eventsOfExpat(std::string_view utf8) {
  const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(
      XML_ParserCreateNS("UTF-8", kSeparator), &XML_ParserFree);
  Events events;
  XML_SetUserData(parser.get(), &events);
  XML_SetElementHandler(
      parser.get(),
      [](void* user, const char* name, const char** pairs) {
        std::vector<std::string> attributes;
        for (; *pairs != nullptr; pairs += 2)
          attributes.push_back(std::string(pairs[0]) + "=" + shown(pairs[1]));
        eventsOf(user).element(name, std::move(attributes));
      },
      [](void* user, const char* name) { eventsOf(user).end(name); });
  XML_SetCharacterDataHandler(parser.get(), [](void* user, const char* text, int length) {
    eventsOf(user).text({text, static_cast<std::size_t>(length)});
  });
  XML_SetCommentHandler(parser.get(), [](void* user, const char* text) { eventsOf(user).comment(text); });
  XML_SetProcessingInstructionHandler(parser.get(), [](void* user, const char* target, const char* data) {
    eventsOf(user).instruction(target, data);
  });
  if (XML_Parse(parser.get(), utf8.data(), static_cast<int>(utf8.size()), XML_TRUE) != XML_STATUS_OK) {
    return std::nullopt;
  }
  return events.take();
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
