// From run to run, where the bytes between their texts are known.
#include "body_walker.h"
#include "text_decoding.h"

namespace pluvo::docx {

using xml::Token;

/// Before a token is taken: whether it is the next on the way to the text of another run. What is neither a
/// start nor an end stands on any way.
void BodyWalker::follow(Token token) {
  const auto isStart = [&](Name name) { return token == Token::start && nameOf(scanner_) == name; };
  if (token != Token::end && !opens(token)) return;
  switch (followed_) {
    case Followed::text:
      way_.endTag = tokenExtent();
      followed_ = token == Token::end ? Followed::runClosed : Followed::none;
      break;
    case Followed::runClosed:
      way_.run = tokenExtent();
      followed_ = isStart(Name::r) ? Followed::runOpen : Followed::none;
      break;
    case Followed::runOpen:
      if (opens(token) && nameOf(scanner_) == Name::rPr) {
        followed_ = Followed::properties;
        break;
      }
      [[fallthrough]];
    default:
      if (!isStart(Name::t) && !isStart(Name::delText)) followed_ = Followed::none;
  }
}

/// Called where a text begins.
void BodyWalker::rememberWay() {
  const bool isWhole = followed_ == Followed::runOpen || followed_ == Followed::properties;
  if (!isWhole || scanner_.scope() != way_.scope || stack_.size() < 2) return;
  const Offset begin = way_.text.begin;
  const auto shifted = [begin](Extent extent) { return Extent{extent.begin - begin, extent.end - begin}; };
  Way way;
  way.bytes = scanner_.bytes(begin, scanner_.end());
  way.scope = way_.scope;
  way.preservesAround = stack_[stack_.size() - 2].preserves;
  way.preservesInRun = stack_.back().preserves;
  way.preserves = preserves();
  way.hasProperties = followed_ == Followed::properties;
  way.endTag = shifted(way_.endTag);
  way.run = shifted(way_.run);
  way.text = shifted(tokenExtent());
  way.textName = scanner_.qualifiedName();
  if (way.hasProperties) {
    way.properties = properties_;
    way.whole = shifted(properties_.whole);
  }
  ways_.remember(std::move(way));
}

/// Behind a text.
bool BodyWalker::passToNextRun() {
  followed_ = Followed::text;
  const Offset begin = way_.text.begin = scanner_.end();
  way_.scope = scanner_.scope();
  Way* const way = ways_.recall(scanner_.ahead(), way_.scope);
  Open& run = stack_.back();
  if (way == nullptr || run.tag.name != Name::r ||
      stack_[stack_.size() - 2].preserves != way->preservesAround)
    return false;
  const auto placed = [begin](Extent extent) { return Extent{extent.begin + begin, extent.end + begin}; };
  const Tag left = run.tag;
  run.tag.extent = placed(way->run);
  run.preserves = way->preservesInRun;
  run.from = position_;
  const Tag tag = run.tag;
  way->properties.whole = placed(way->whole);
  events_->nextRun(left, placed(way->endTag), tag, way->hasProperties ? &way->properties : nullptr);

  const Extent start = placed(way->text);
  const std::string_view ahead = scanner_.ahead().substr(way->bytes.size());
  const std::string_view text = ahead.substr(0, ahead.find('<'));
  const std::string_view end = ahead.substr(text.size());
  const std::size_t name = way->textName.size();
  const bool isPlain = end.size() > name + 2 && end[1] == '/' && end[name + 2] == '>' &&
                       end.substr(2, name) == way->textName && isPlainAscii(text);
  if (!isPlain) {
    scanner_.resumeAt(start.begin);
    readText(scanner_.next());
    return true;
  }
  const Offset textEnd = start.end + static_cast<Offset>(text.size());
  TextElement element;
  element.tag = way->textName;
  element.bytes = way->preserves ? text : withoutOuterBlanks(text);
  element.extent = {start.begin, textEnd + static_cast<Offset>(name) + 3};
  scanner_.resumeAt(element.extent.end);
  tellText(element, way->preserves, text);
  return true;
}

}  // namespace pluvo::docx
