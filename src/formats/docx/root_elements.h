#pragma once

#include "names.h"
#include "xml/encoding.h"
#include "xml/scanner.h"
#include "zip/archive.h"

#include <string>

namespace pluvo::docx {

/// Calls visit(scanner) for every element of this name directly in the root of a part.
template <class Visit>
void forEachInRoot(const zip::Archive& archive, const zip::Member& member, Name wanted, Visit visit) {
  using xml::Token;
  const std::string name(member.name);
  const xml::Utf8Part part = xml::toUtf8(archive.read(member), name);
  xml::Scanner scanner(part.utf8.view, vocabulary(), name);
  for (Token token = scanner.next(); token != Token::finish; token = scanner.next()) {
    if (token != Token::start && token != Token::empty) continue;
    const bool isChild = scanner.depth() == (token == Token::start ? 2U : 1U);
    if (isChild && nameOf(scanner) == wanted) visit(scanner);
  }
}

}  // namespace pluvo::docx
