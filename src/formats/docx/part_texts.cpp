#include "part_texts.h"

#include "body_walker.h"
#include "names.h"
#include "text_decoding.h"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace pluvo::docx {

using xml::Token;

namespace {

using namespace std::string_view_literals;

std::string_view localName(const xml::Scanner& scanner) {
  const std::string_view name = scanner.qualifiedName();
  return name.substr(name.find(':') + 1);
}

template <std::size_t kSize>
bool isAmong(std::string_view name, const std::array<std::string_view, kSize>& names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// The characters of a token, where it has any.
void addCharacters(const xml::Scanner& scanner, Token token, std::u16string& units) {
  if (token == Token::text) appendUtf8(units, scanner.bytes(scanner.begin(), scanner.end()));
  if (token == Token::cdata) appendUtf8(units, scanner.bytes(scanner.innerBegin(), scanner.innerEnd()));
  if (token == Token::reference) appendCodePoint(units, scanner.codePoint());
}

/// A cell's value that is the number of a text.
bool isTextNumber(const xml::Scanner& scanner) {
  return std::any_of(scanner.attributes().begin(), scanner.attributes().end(),
                     [&](const xml::Attribute& attribute) {
                       return scanner.bytes(attribute.nameBegin, attribute.nameEnd) == "t" &&
                              scanner.rawValue(attribute) == "s";
                     });
}

void addAttributes(const xml::Scanner& scanner, std::initializer_list<Name> names, Pieces& pieces) {
  for (const Name name : names) {
    appendUtf8(pieces.units(), valueOf(scanner, name));
    pieces.end();
  }
}

}  // namespace

void addRuns(base::ByteSpan part, const std::string& partName, Pieces& pieces) {
  constexpr std::array kHolders = {"t"sv, "v"sv, "pt"sv, "delText"sv, "instrText"sv};
  constexpr std::array kEnds = {"p"sv, "si"sv, "is"sv, "v"sv, "pt"sv, "br"sv, "tab"sv};
  xml::Scanner scanner(part, vocabulary(), partName);
  std::size_t held = 0;  // the depth of the innermost element that holds text
  bool isNumber = false;
  for (Token token = scanner.next(); token != Token::finish; token = scanner.next()) {
    if (opens(token)) {
      const std::string_view name = localName(scanner);
      if (name == "sheet") {
        for (const xml::Attribute& attribute : scanner.attributes())
          if (scanner.bytes(attribute.nameBegin, attribute.nameEnd) == "name")
            appendUtf8(pieces.units(), scanner.value(attribute));
        pieces.end();
      }
      if (name == "c") isNumber = isTextNumber(scanner);
      const bool holds = isAmong(name, kHolders) && !(name == "v" && isNumber);
      held = token == Token::start && holds ? scanner.depth() : 0;
      if (token == Token::empty && isAmong(name, kEnds)) pieces.end();
    } else if (token == Token::end) {
      held = 0;
      if (isAmong(localName(scanner), kEnds)) pieces.end();
    } else if (held != 0) {
      addCharacters(scanner, token, pieces.units());
    }
  }
  pieces.end();
}

void addValues(base::ByteSpan part, const std::string& partName, Pieces& pieces) {
  // What programs write of themselves into the properties of each document.
  constexpr std::array kOfPrograms = {"Application"sv, "AppVersion"sv, "HeadingPairs"sv};
  xml::Scanner scanner(part, vocabulary(), partName);
  for (Token token = scanner.next(); token != Token::finish; token = scanner.next()) {
    if (token == Token::end) pieces.end();
    addCharacters(scanner, token, pieces.units());
    if (!opens(token)) continue;
    pieces.end();
    if (token == Token::start && isAmong(localName(scanner), kOfPrograms)) {
      scanner.skipElement();
      continue;
    }
    for (const xml::Attribute& attribute : scanner.attributes()) {
      if (scanner.bytes(attribute.nameBegin, attribute.nameEnd).starts_with("xmlns")) continue;
      appendUtf8(pieces.units(), scanner.value(attribute));
      pieces.end();
    }
  }
  pieces.end();
}

void addVariables(base::ByteSpan part, const std::string& partName, Pieces& pieces) {
  const std::string_view all(reinterpret_cast<const char*>(part.data()), part.size());
  if (all.find("docVar") == std::string_view::npos) return;
  xml::Scanner scanner(part, vocabulary(), partName);
  for (Token token = scanner.next(); token != Token::finish; token = scanner.next()) {
    if (opens(token) && nameOf(scanner) == Name::docVar)
      addAttributes(scanner, {Name::name, Name::val}, pieces);
  }
}

void addPeople(base::ByteSpan part, const std::string& partName, Pieces& pieces) {
  xml::Scanner scanner(part, vocabulary(), partName);
  for (Token token = scanner.next(); token != Token::finish; token = scanner.next()) {
    if (opens(token)) addAttributes(scanner, {Name::personAuthor, Name::userId}, pieces);
  }
}

}  // namespace pluvo::docx
