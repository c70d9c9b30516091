#include "block_tags.h"

namespace pluvo::formats::html {

namespace {

constexpr std::size_t kDeepest = 512;

bool isItem(Name name) { return name == Name::li || name == Name::dt || name == Name::dd; }
bool isHeading(Name name) { return (traitsOf(name) & kHeading) != 0; }

}  // namespace

void BlockTags::endParagraph(std::size_t at) {
  if (walk_.blocks.inner().name == Name::p) close(at, {at, at});
  paragraphs_.end(at, false);
}

void BlockTags::makeRoomFor(const Token& token) {
  const std::size_t at = token.extent.begin;
  if (walk_.blocks.inner().name == Name::p) close(at, {at, at});
  if (isItem(token.name)) closeItem(token.name, at);
  if (isHeading(token.name) && isHeading(walk_.blocks.inner().name)) close(at, {at, at});
  paragraphs_.end(at, false);
}

void BlockTags::open(const Token& token, const Style& style, const Attributes& attributes) {
  if (token.name == Name::body && walk_.blocks.has(Name::body))
    return walk_.events.aside(Aside::markup, token.extent);
  makeRoomFor(token);
  const bool isVoid = (traitsOf(token.name) & kVoid) != 0;
  if (isVoid || walk_.blocks.size() >= kDeepest) {
    walk_.blocks.inner().hasBlock = true;
    if (!isVoid) ++flattened_[static_cast<std::size_t>(token.name)];
    return walk_.events.divides(token.extent);
  }
  // A paragraph without text between two cells ends the table, as text does.
  const bool isParagraph = (traitsOf(token.name) & kExistsEmpty) != 0;
  if (isParagraph && walk_.tables.isBetweenCells()) walk_.tables.interrupt();
  push(token, style, attributes);
  walk_.events.blockBegins(walk_.blocks.inner());
}

void BlockTags::push(const Token& token, const Style& style, const Attributes& attributes) {
  walk_.blocks.push(token, style, attributes, walk_.inlines);
  paragraphs_.goOn();
}

Block BlockTags::pop() {
  const Block closed = walk_.blocks.pop();
  walk_.inlines.endBlock(closed.inlineTop, isCell(closed.name));
  if (!walk_.keepsInlines) walk_.inlines.forget(closed.inlinesNumbered);
  walk_.applyState();
  return closed;
}

void BlockTags::close(std::size_t at, Extent endTag) {
  paragraphs_.end(at, true);
  walk_.events.blockEnds(pop(), endTag);
}

void BlockTags::closeTo(std::size_t count, std::size_t at) {
  while (walk_.blocks.size() > count) close(at, {at, at});
}

/// A list's item ends where the next begins, unless a block of another kind lies between.
void BlockTags::closeItem(Name name, std::size_t at) {
  for (std::size_t i = walk_.blocks.size(); --i > walk_.tables.floor();) {
    const Name open = walk_.blocks[i].name;
    const bool isSame = name == Name::li ? open == Name::li : open == Name::dt || open == Name::dd;
    if (isSame) return closeTo(i, at);
    if (open != Name::address && open != Name::div && open != Name::p) return;
  }
}

bool BlockTags::closeNamed(Name name, const Token& token) {
  if (std::uint32_t& flat = flattened_[static_cast<std::size_t>(name)]; flat > 0) {
    --flat;
    paragraphs_.end(token.extent.begin, false);
    walk_.events.divides(token.extent);
    return true;
  }
  if (!walk_.blocks.has(name) && !isHeading(name)) return false;
  for (std::size_t i = walk_.blocks.size(); --i > walk_.tables.floor();) {
    const Name open = walk_.blocks[i].name;
    if (open != name && !(isHeading(name) && isHeading(open))) continue;
    closeTo(i + 1, token.extent.begin);
    close(token.extent.begin, token.extent);
    return true;
  }
  return false;
}

}  // namespace pluvo::formats::html
