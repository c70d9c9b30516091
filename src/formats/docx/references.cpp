#include "references.h"

#include "base/ascii.h"
#include "xml/encoding.h"

#include <algorithm>

namespace pluvo::docx {

using xml::Token;

namespace {

bool belongsToName(char c) {
  return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

}  // namespace

BookmarkReferences::BookmarkReferences(const Package& package, base::ByteSpan mainPart) {
  addPart(mainPart, package.mainPart);
  for (const std::string& story : package.stories) {
    const zip::Member* const member = package.archive.find(story);
    if (member != nullptr) addPart(xml::toUtf8(package.archive.read(*member), story).utf8.view, story);
  }
}

bool BookmarkReferences::contain(std::string_view bookmark) const {
  return names_.contains(base::asciiLower(bookmark));
}

void BookmarkReferences::addPart(base::ByteSpan part, const std::string& name) {
  xml::Scanner scanner(part, vocabulary(), name);
  std::string instruction;
  bool inInstruction = false;
  for (Token token = scanner.next(); token != Token::finish; token = scanner.next()) {
    if (token == Token::text && inInstruction) instruction += scanner.bytes(scanner.begin(), scanner.end());
    if (token == Token::end) inInstruction = false;
    if (token != Token::start && token != Token::empty) continue;
    switch (nameOf(scanner)) {
      case Name::instrText:
        inInstruction = token == Token::start;
        break;
      case Name::fldChar:
        addWords(instruction);
        instruction.clear();
        break;
      case Name::fldSimple:
        addWords(valueOf(scanner, Name::instr));
        break;
      case Name::hyperlink:
        names_.insert(base::asciiLower(valueOf(scanner, Name::anchor)));
        break;
      default:
        break;
    }
  }
}

/// Any word of a field's instruction may be a bookmark's name.
void BookmarkReferences::addWords(std::string_view instruction) {
  std::string word;
  for (const char c : base::asciiLower(instruction) + " ") {
    if (belongsToName(c)) {
      word += c;
    } else if (!word.empty()) {
      names_.insert(std::move(word));
      word.clear();
    }
  }
}

}  // namespace pluvo::docx
