#include "tables.h"

namespace pluvo::rtf {

bool Tables::header(const Token& token, std::size_t depth) {
  switch (token.word) {
    case Word::ansicpg:
      fonts.codePage(token.number);
      break;
    case Word::mac:
      fonts.codePage(10000);
      break;
    case Word::pc:
      fonts.codePage(437);
      break;
    case Word::pca:
      fonts.codePage(850);
      break;
    case Word::deff:
      fonts.standard(token.number);
      break;
    case Word::rtf:
    case Word::ansi:
    case Word::uc:
      break;
    default:
      return false;
  }
  const bool followsOthers =
      token.word == Word::rtf ? depth == 1 && coloursAt == 0 : coloursAt == token.extent.begin;
  if (followsOthers && !hasColours) coloursAt = token.extent.end;
  return true;
}

bool Tables::group(Word word, std::string_view bytes, Extent content, bool isBeforeText) {
  if (word == Word::fonttbl) {
    fonts.read(bytes, content);
    if (!hasColours && isBeforeText) coloursAt = content.end + 1;
    return true;
  }
  if (word == Word::colortbl) {
    colours.read(bytes, content);
    coloursAt = content.end;
    hasColours = true;
  }
  return false;
}

}  // namespace pluvo::rtf
