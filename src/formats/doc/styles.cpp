#include "styles.h"

#include "base/little_endian.h"

namespace pluvo::doc {

using base::get16;

namespace {

constexpr std::uint16_t kParagraph = 1;
constexpr std::uint16_t kCharacter = 2;
constexpr int kDeepest = 64;

/// The next of a style's groups of properties, each with its size in front; they begin at even places.
base::ByteSpan nextGroup(base::ByteSpan style, std::size_t& at) {
  at += at % 2;
  if (at + 2 > style.size()) return {};
  const std::size_t size = get16(style, at);
  at += 2;
  if (size > style.size() - at) return {};
  at += size;
  return style.subspan(at - size, size);
}

}  // namespace

Styles::Style Styles::readStyle(base::ByteSpan bytes, std::size_t baseSize) {
  Style style;
  if (baseSize < 8 || bytes.size() < baseSize + 2) return style;
  const std::uint16_t number = get16(bytes, 0) & 0x0FFFU;
  const std::uint16_t kind = get16(bytes, 2) & 0xFU;
  style.base = static_cast<std::uint16_t>(get16(bytes, 2) >> 4U);
  if (number >= 1 && number <= 9) style.heading = static_cast<std::uint8_t>(number);
  std::size_t at = baseSize + 2 + (get16(bytes, baseSize) + std::size_t{1}) * 2;
  if (kind == kParagraph) {
    style.isOfParagraphs = true;
    const base::ByteSpan group = nextGroup(bytes, at);
    // Its own number comes first.
    if (group.size() > 2) style.ofParagraph = group.subspan(2);
  }
  if (kind == kParagraph || kind == kCharacter) style.ofCharacters = nextGroup(bytes, at);
  return style;
}

Styles Styles::read(base::ByteSpan sheet, base::ByteSpan data) {
  Styles styles;
  if (sheet.size() < 8) return styles;
  const std::size_t baseSize = get16(sheet, 4);
  std::size_t at = 2 + std::size_t{get16(sheet, 0)};
  while (at + 2 <= sheet.size() && styles.styles_.size() < kNone) {
    const std::size_t size = get16(sheet, at);
    at += 2;
    if (size > sheet.size() - at) break;
    styles.styles_.push_back(readStyle(sheet.subspan(at, size), baseSize));
    at += size;
    at += at % 2;
  }
  for (std::size_t i = 0; i < styles.styles_.size(); ++i) {
    styles.makeReady(i, data, 0);
    CharacterLook own;
    apply(styles.styles_[i].ofCharacters, own);
    styles.haveHighlight_ = styles.haveHighlight_ || own.highlight != 0;
  }
  return styles;
}

void Styles::makeReady(std::size_t number, base::ByteSpan data, int depth) {
  Style& style = styles_[number];
  if (style.isReady || depth == kDeepest) return;
  if (style.base < styles_.size() && style.isOfParagraphs) {
    makeReady(style.base, data, depth + 1);
    style.character = styles_[style.base].character;
    style.paragraph = styles_[style.base].paragraph;
  }
  style.isReady = true;
  if (!style.isOfParagraphs) return;
  apply(style.ofCharacters, style.character);
  apply(style.ofParagraph, data, style.paragraph);
  if (style.heading > 0 && style.paragraph.outlineLevel == ParagraphLook::kNoOutline)
    style.paragraph.outlineLevel = static_cast<std::uint8_t>(style.heading - 1);
}

CharacterLook Styles::withCharacterStyle(CharacterLook look, std::uint16_t style) const {
  std::vector<const Style*> chain;
  for (; style < styles_.size() && chain.size() < kDeepest; style = styles_[style].base) {
    if (styles_[style].isOfParagraphs) break;
    chain.push_back(&styles_[style]);
  }
  while (!chain.empty()) {
    apply(chain.back()->ofCharacters, look);
    chain.pop_back();
  }
  return look;
}

}  // namespace pluvo::doc
