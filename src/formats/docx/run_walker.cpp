#include "run_walker.h"

#include <algorithm>
#include <string>

namespace pluvo::docx {

using xml::Token;

namespace {

/// Whether the element that these bytes begin with has the name, without its prefix.
bool beginsWith(std::string_view bytes, std::string_view local) {
  const std::size_t tag = bytes.find('<');
  if (tag == std::string_view::npos) return false;
  const std::string_view name = bytes.substr(tag + 1, bytes.find_first_of(" \t\r\n/>", tag) - tag - 1);
  return name.ends_with(local) &&
         (name.size() == local.size() || name[name.size() - local.size() - 1] == ':');
}

}  // namespace

RunWalker::Enters RunWalker::take(Name name, Token token) {
  switch (name) {
    case Name::rPr:
      if (walk_.stack.back().tag.name == Name::r) {
        walk_.events->properties(name, properties_.read(name, token));
        return Enters::nothing;
      }
      break;
    case Name::t:
    case Name::delText:
      text(token);
      return Enters::nothing;
    case Name::instrText:
    case Name::delInstrText:
      if (walk_.fields.inCode()) {
        text(token);
        return Enters::nothing;
      }
      break;
    case Name::fldChar:
      fieldMark(token);
      return Enters::nothing;
    case Name::footnoteReference:
    case Name::endnoteReference:
      reference(text::kNoteReference, token, name);
      return Enters::nothing;
    case Name::commentReference:
      reference(text::kCommentReference, token, name);
      return Enters::nothing;
    case Name::ownMark: {
      const Offset begin = scanner_.begin();
      walk_.skip(token);
      walk_.events->ownMark({begin, scanner_.end()});
      return Enters::nothing;
    }
    case Name::alternateContent:
      return alternatives(token);
    case Name::ruby:
      return ruby(token);
    case Name::drawing:
    case Name::pict:
    case Name::object:
    case Name::contentPart:
      return picture(name, token);
    default:
      if (const Offset begin = scanner_.begin(); const char16_t unit = characterOf(scanner_, name, token)) {
        singleFrom(begin, unit, token, name, {});
        return Enters::nothing;
      }
      break;
  }
  walk_.skip(token);
  return Enters::nothing;
}

/// And the texts of the runs that follow, so far as the way to them is known.
void RunWalker::text(Token token) {
  if (textWays_) {
    textWays_->remember();
    tell(text_.read(token));
    return textWays_->goThrough(text_);
  }
  ways_.remember(properties_.last());
  tell(text_.read(token));
  while (const TextElement* const next = ways_.next(text_)) tell(*next);
}

void RunWalker::tell(const TextElement& element) {
  if (element.length() == 0) return;
  walk_.events->text(element);
  walk_.advance(element.length());
}

void RunWalker::reference(char16_t unit, Token token, Name name) {
  const std::string id = valueOf(scanner_, Name::id);
  single(unit, token, name, id);
}

void RunWalker::single(char16_t unit, Token token, Name name, std::string_view reference) {
  singleFrom(scanner_.begin(), unit, token, name, reference);
}

void RunWalker::singleFrom(Offset begin, char16_t unit, Token token, Name name, std::string_view reference) {
  walk_.skip(token);
  walk_.events->character(unit, {begin, scanner_.end()}, name, reference);
  walk_.advance(1);
}

void RunWalker::fieldMark(Token token) {
  const std::string type = valueOf(scanner_, Name::fldCharType);
  if (type == "begin") {
    single(text::kFieldBegin, token, Name::fldChar);
    walk_.fields.begin(false);
  } else if (type == "separate" && walk_.fields.takesSeparator()) {
    single(text::kFieldSeparator, token, Name::fldChar);
    walk_.fields.separate();
  } else if (type == "end" && walk_.fields.takesEnd()) {
    single(text::kFieldEnd, token, Name::fldChar);
    walk_.fields.end();
  } else {
    walk_.skip(token);
  }
}

RunWalker::Enters RunWalker::alternatives(Token token) {
  const Offset begin = scanner_.begin();
  walk_.events->aside(begin);
  if (token == Token::start) {
    const auto& [element, picture] = text_.readAlternatives();
    if (picture != 0) {
      walk_.events->character(picture, element.extent, Name::drawing, {});
      walk_.advance(1);
    } else if (element.length() > 0) {
      walk_.events->text(element);
      walk_.advance(element.length());
    }
  }
  if (!walk_.throughEveryStory()) return Enters::nothing;
  scanner_.resumeAt(begin);
  scanner_.next();
  return Enters::outside;
}

/// A picture, or another element that is one character, and then its contents.
RunWalker::Enters RunWalker::picture(Name name, Token token) {
  const Offset begin = scanner_.begin();
  walk_.events->aside(begin);
  if (!walk_.throughEveryStory()) {
    singleFrom(begin, characterOf(scanner_, name, token), token, name, {});
    return Enters::nothing;
  }
  const bool floats =
      name == Name::drawing && token == Token::start && beginsWith(scanner_.ahead(), "anchor");
  walk_.events->character(floats ? text::kFloatingPicture : text::kPicture, walk_.tokenExtent(), name, {});
  walk_.advance(1);
  return Enters::outside;
}

/// The base of text with a phonetic guide is text where its run holds nothing else; otherwise it is one
/// character.
RunWalker::Enters RunWalker::ruby(Token token) {
  walk_.events->aside(scanner_.begin());
  if (token == Token::start && rubyStandsAlone()) return Enters::guidedText;
  if (walk_.throughEveryStory()) {
    walk_.events->character(text::kPicture, walk_.tokenExtent(), Name::ruby, {});
    walk_.events->guide(text_.readGuide(token));
    walk_.advance(1);
  } else {
    single(text::kPicture, token, Name::ruby);
  }
  return Enters::nothing;
}

bool RunWalker::rubyStandsAlone() {
  const auto isRuby = [](const Walk::Open& open) { return open.tag.name == Name::ruby; };
  const Walk::Open& run = walk_.stack.back();
  if (run.tag.name != Name::r || run.from != walk_.position ||
      std::any_of(walk_.stack.begin(), walk_.stack.end(), isRuby))
    return false;
  const Offset begin = scanner_.begin();
  scanner_.skipElement();
  const std::string_view ahead = scanner_.ahead();
  const std::size_t next = std::min(ahead.find_first_not_of(" \t\r\n"), ahead.size());
  const bool alone = ahead.substr(next).starts_with("</");
  scanner_.resumeAt(begin);
  scanner_.next();
  return alone;
}

}  // namespace pluvo::docx
