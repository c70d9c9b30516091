#include "run_ways.h"

#include "text_decoding.h"

#include <utility>

namespace pluvo::docx {

using xml::Token;

/// A tag that is neither a start nor an end fits every way.
void RunWays::step(Token token) {
  const auto isStart = [&](Name name) { return token == Token::start && nameOf(scanner_) == name; };
  if (token != Token::end && !opens(token)) return;
  switch (followed_) {
    case Followed::text:
      way_.endTag = walk_.tokenExtent();
      followed_ = token == Token::end ? Followed::runClosed : Followed::none;
      break;
    case Followed::runClosed:
      way_.run = walk_.tokenExtent();
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

void RunWays::remember(const Properties& properties) {
  const std::vector<Walk::Open>& stack = walk_.stack;
  const bool isWhole = followed_ == Followed::runOpen || followed_ == Followed::properties;
  if (!isWhole || scanner_.scope() != way_.scope || stack.size() < 2) return;
  const Offset begin = way_.text.begin;
  const auto shifted = [begin](Extent extent) { return Extent{extent.begin - begin, extent.end - begin}; };
  Way way;
  way.bytes = scanner_.bytes(begin, scanner_.end());
  way.scope = way_.scope;
  way.preservesAround = stack[stack.size() - 2].preserves;
  way.preservesInRun = stack.back().preserves;
  way.preserves = walk_.preserves();
  way.hasProperties = followed_ == Followed::properties;
  way.endTag = shifted(way_.endTag);
  way.run = shifted(way_.run);
  way.text = shifted(walk_.tokenExtent());
  way.textName = scanner_.qualifiedName();
  if (way.hasProperties) {
    way.properties = properties;
    way.whole = shifted(properties.whole);
  }
  ways_.remember(std::move(way));
}

const TextElement* RunWays::next(TextReader& reader) {
  followed_ = Followed::text;
  const Offset begin = way_.text.begin = scanner_.end();
  way_.scope = scanner_.scope();
  Way* const way = ways_.recall(scanner_.ahead(), way_.scope);
  const std::vector<Walk::Open>& stack = walk_.stack;
  if (way == nullptr || stack.back().tag.name != Name::r ||
      stack[stack.size() - 2].preserves != way->preservesAround)
    return nullptr;
  enterRun(*way, begin);

  const Extent start{way->text.begin + begin, way->text.end + begin};
  const std::string_view ahead = scanner_.ahead().substr(way->bytes.size());
  const std::string_view text = ahead.substr(0, ahead.find('<'));
  const std::string_view end = ahead.substr(text.size());
  const std::size_t name = way->textName.size();
  const bool isKnown =
      end.size() > name + 2 && end[1] == '/' && end[name + 2] == '>' && end.substr(2, name) == way->textName;
  const Plainness plainness = isKnown ? plainnessOf(text) : Plainness::none;
  if (plainness == Plainness::none) {
    scanner_.resumeAt(start.begin);
    return &reader.read(scanner_.next());
  }
  const Offset textEnd = start.end + static_cast<Offset>(text.size());
  element_ = {};
  element_.tag = way->textName;
  reader.tell(element_, text, plainness, way->preserves);
  element_.extent = {start.begin, textEnd + static_cast<Offset>(name) + 3};
  scanner_.resumeAt(element_.extent.end);
  if (element_.length() > 0 && !way->preserves && !stack.back().preserves)
    outerBlanks(text, element_.leading, element_.trailing);
  return &element_;
}

void RunWays::enterRun(Way& way, Offset begin) {
  const auto placed = [begin](Extent extent) { return Extent{extent.begin + begin, extent.end + begin}; };
  Walk::Open& run = walk_.stack.back();
  const Tag left = run.tag;
  run.tag.extent = placed(way.run);
  run.preserves = way.preservesInRun;
  run.from = walk_.position;
  const Tag tag = run.tag;
  way.properties.whole = placed(way.whole);
  walk_.events->nextRun(left, placed(way.endTag), tag, way.hasProperties ? &way.properties : nullptr);
}

}  // namespace pluvo::docx
