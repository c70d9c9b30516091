#include "open_blocks.h"

#include "base/ascii.h"

namespace pluvo::formats::html {

namespace {

Style::Align alignNamed(std::string_view value) {
  if (base::equalsIgnoringAsciiCase(value, "center")) return Style::Align::centre;
  return base::equalsIgnoringAsciiCase(value, "right") ? Style::Align::end : Style::Align::start;
}

}  // namespace

OpenBlocks::OpenBlocks() {
  blocks_.emplace_back();
  blocks_.back().name = Name::html;
}

void OpenBlocks::push(const Token& token, const Style& style, const Attributes& attributes,
                      const InlineStack& inlines) {
  blocks_.back().hasBlock = true;
  const Block& around = blocks_.back();
  Block block;
  block.name = token.name;
  block.tag = token.extent;
  block.tagName = token.inside;
  block.inlineTop = inlines.top();
  block.inlinesNumbered = inlines.numbered();
  block.hidden = around.hidden || style.hidden();
  block.deleted = inlines.state().deleted;
  block.preformatted =
      style.preformatted.value_or((traitsOf(token.name) & kPreformatted) != 0 || around.preformatted);
  block.align = style.align.value_or(token.name == Name::center ? Style::Align::centre : around.align);
  if (!style.align && !attributes.align.empty()) block.align = alignNamed(attributes.align);
  block.rightToLeft = style.rightToLeft.value_or(around.rightToLeft);
  if (!attributes.dir.empty()) block.rightToLeft = base::equalsIgnoringAsciiCase(attributes.dir, "rtl");
  const bool isList = token.name == Name::ul || token.name == Name::ol;
  constexpr std::uint8_t kMostLevels = 9;
  block.listLevel = around.listLevel;
  if (isList && block.listLevel < kMostLevels) ++block.listLevel;
  ++counts_[static_cast<std::size_t>(token.name)];
  blocks_.push_back(block);
}

Block OpenBlocks::pop() {
  const Block closed = blocks_.back();
  blocks_.pop_back();
  --counts_[static_cast<std::size_t>(closed.name)];
  blocks_.back().hasParagraph = blocks_.back().hasParagraph || closed.hasParagraph;
  return closed;
}

}  // namespace pluvo::formats::html
