// How a walk goes through blocks and tables.
#include "base/ascii.h"
#include "document/content_builder.h"
#include "errors/document_error.h"
#include "walker.h"

namespace pluvo::formats::html {

namespace {

constexpr std::size_t kDeepest = 512;

bool isItem(Name name) { return name == Name::li || name == Name::dt || name == Name::dd; }
bool isHeading(Name name) { return (traitsOf(name) & kHeading) != 0; }

}  // namespace

void Walker::endParagraph(std::size_t at, bool endsBlock) {
  Block& inner = blocks_.back();
  const bool isOwned = (traitsOf(inner.name) & kExistsEmpty) != 0 && !inner.hasParagraph;
  Paragraph paragraph;
  paragraph.at = at;
  paragraph.hasMark = isOpen_ || (isOwned && endsBlock && !endedSection_);
  paragraph.isOwned = isOwned;
  paragraph.endsBlock = endsBlock;
  paragraph.isFirst = !inner.hasParagraph && !inner.hasBlock;
  if (paragraph.hasMark) {
    if (!isOpen_) endAt_ = kNowhere;
    inner.hasParagraph = true;
    if (!scopes_.empty()) scopes_.back().endsInParagraph = true;
  }
  if (endedSection_) inner.hasParagraph = true;
  const bool isTold = paragraph.hasMark || hadText_;
  isOpen_ = hadText_ = endedSection_ = false;
  folds_ = true;
  if (isTold) events_.paragraphEnds(paragraph);
  markState_ = {};
}

void Walker::pushBlock(const Token& token, const Style& style, const Attributes& attributes) {
  blocks_.back().hasBlock = true;
  const Block& around = blocks_.back();
  Block block;
  block.name = token.name;
  block.tag = token.extent;
  block.tagName = token.inside;
  block.inlineTop = inlines_.top();
  block.inlinesNumbered = inlines_.numbered();
  block.hidden = around.hidden || style.hidden();
  block.deleted = inlines_.state().deleted;
  block.preformatted =
      style.preformatted.value_or((traitsOf(token.name) & kPreformatted) != 0 || around.preformatted);
  block.align = style.align.value_or(token.name == Name::center ? Style::Align::centre : around.align);
  if (!style.align && !attributes.align.empty()) {
    const auto is = [&](std::string_view value) {
      return base::equalsIgnoringAsciiCase(attributes.align, value);
    };
    block.align = is("center") ? Style::Align::centre : is("right") ? Style::Align::end : Style::Align::start;
  }
  block.rightToLeft = style.rightToLeft.value_or(around.rightToLeft);
  if (!attributes.dir.empty()) block.rightToLeft = base::equalsIgnoringAsciiCase(attributes.dir, "rtl");
  const bool isList = token.name == Name::ul || token.name == Name::ol;
  constexpr std::uint8_t kMostLevels = 9;
  block.listLevel = around.listLevel;
  if (isList && block.listLevel < kMostLevels) ++block.listLevel;
  ++counts_[static_cast<std::size_t>(token.name)];
  blocks_.push_back(block);
  endAt_ = kNowhere;
}

void Walker::openBlock(const Token& token, const Style& style, const Attributes& attributes) {
  const std::size_t at = token.extent.begin;
  const unsigned traits = traitsOf(token.name);
  if (token.name == Name::body && hasOpen(Name::body)) return events_.aside(Aside::markup, token.extent);
  if (block().name == Name::p) closeBlock(at, {at, at});
  if (isItem(token.name)) closeItem(token.name, at);
  if (isHeading(token.name) && isHeading(block().name)) closeBlock(at, {at, at});
  endParagraph(at, false);
  if ((traits & kRaw) != 0) return rawBlock(token);
  if ((traits & kVoid) != 0 || blocks_.size() >= kDeepest) {
    blocks_.back().hasBlock = true;
    if ((traits & kVoid) == 0) ++flattened_[static_cast<std::size_t>(token.name)];
    return events_.divides(token.extent);
  }
  pushBlock(token, style, attributes);
  const bool dropsLineFeed = token.name == Name::pre || token.name == Name::listing;
  lineFeedAt_ = dropsLineFeed ? token.extent.end : kNowhere;
  events_.blockBegins(blocks_.back());
}

/// Text as it stands, up to its end tag.
void Walker::rawBlock(const Token& token) {
  pushBlock(token, {}, {});
  events_.blockBegins(blocks_.back());
  const Extent content = tokens_.skipRaw(token);
  endsWithin_ = content.end >= tokens_.end();
  rawText(content);
  Token end = tokens_.next();
  if (end.kind == Token::Kind::end) end.extent = {content.end, content.end};
  closeBlock(content.end, end.extent);
}

void Walker::popBlock() {
  const Block closed = blocks_.back();
  blocks_.pop_back();
  --counts_[static_cast<std::size_t>(closed.name)];
  blocks_.back().hasParagraph = blocks_.back().hasParagraph || closed.hasParagraph;
  inlines_.endBlock(closed.inlineTop, isCell(closed.name));
  if (!keepsInlines_) inlines_.forget(closed.inlinesNumbered);
  applyState();
}

void Walker::closeBlock(std::size_t at, Extent endTag) {
  endParagraph(at, true);
  const Block closed = blocks_.back();
  popBlock();
  events_.blockEnds(closed, endTag);
}

void Walker::closeTo(std::size_t count, std::size_t at) {
  while (blocks_.size() > count) closeBlock(at, {at, at});
}

/// A list's item ends where the next begins, unless a block of another kind lies between.
void Walker::closeItem(Name name, std::size_t at) {
  for (std::size_t i = blocks_.size(); --i > floor();) {
    const Name open = blocks_[i].name;
    const bool isSame = name == Name::li ? open == Name::li : open == Name::dt || open == Name::dd;
    if (isSame) return closeTo(i, at);
    if (open != Name::address && open != Name::div && open != Name::p) return;
  }
}

/// Whether an end tag ended anything.
bool Walker::closeNamed(Name name, const Token& token) {
  if (std::uint32_t& flat = flattened_[static_cast<std::size_t>(name)]; flat > 0) {
    --flat;
    endParagraph(token.extent.begin, false);
    events_.divides(token.extent);
    return true;
  }
  if (!hasOpen(name) && !isHeading(name)) return false;
  for (std::size_t i = blocks_.size(); --i > floor();) {
    if (blocks_[i].name != name && !(isHeading(name) && isHeading(blocks_[i].name))) continue;
    closeTo(i + 1, token.extent.begin);
    closeBlock(token.extent.begin, token.extent);
    return true;
  }
  return false;
}

// ---- Tables ----

void Walker::openTable(const Token& token, const Style& style, const Attributes& attributes) {
  const std::size_t at = token.extent.begin;
  if (block().name == Name::p) closeBlock(at, {at, at});
  endParagraph(at, false);
  if (isBetweenCells()) closeTable(at, {at, at});
  pushBlock(token, style, attributes);
  blocks_.back().align = Style::Align::start;
  scopes_.push_back({Name::table, blocks_.size() - 1});
  if (++tables_ > document::ContentBuilder::kDeepest)
    throw errors::DocumentError(errors::Problem::tooLarge,
                                "The page nests tables more than 1,000 deep; it cannot be worked on.");
  events_.blockBegins(blocks_.back());
}

void Walker::tablePart(const Token& token, const Style& style, const Attributes& attributes) {
  const std::size_t at = token.extent.begin;
  if (!hasTable()) return events_.aside(Aside::markup, token.extent);
  if (!isBetweenCells()) closeCell(at, {at, at});
  closeTo(scopes_.back().block + 1, at);
  endParagraph(at, false);
  Scope& table = scopes_.back();
  if (!isCell(token.name) && token.name != Name::caption) {
    if (token.name != Name::colgroup && token.name != Name::col) endRow();
    if (token.name == Name::tr && style.hidden() && !table.rowHidden) {
      table.rowHidden = true;
      ++hiddenRows_;
    }
    return events_.divides(token.extent);
  }
  if (isCell(token.name)) {
    if (!table.hasBegun) events_.tableBegins(blocks_[table.block], at);
    table.hasBegun = table.rowHasCells = true;
  } else if (table.hasBegun) {
    interruptTable();
  }
  pushBlock(token, style, attributes);
  scopes_.push_back({token.name, blocks_.size() - 1});
  events_.blockBegins(blocks_.back());
}

void Walker::endTablePart(const Token& token) {
  const std::size_t at = token.extent.begin;
  if (!hasTable()) return events_.aside(Aside::markup, token.extent);
  const Scope& inner = scopes_.back();
  if (isCell(token.name) || token.name == Name::caption) {
    if (inner.name != token.name) return events_.aside(Aside::markup, token.extent);
    return closeCell(at, token.extent);
  }
  if (token.name == Name::table) return closeTable(at, token.extent);
  if (inner.name == Name::caption || token.name == Name::colgroup)
    return events_.aside(Aside::markup, token.extent);
  if (inner.name != Name::table) closeCell(at, {at, at});
  closeTo(scopes_.back().block + 1, at);
  endParagraph(at, false);
  endRow();
  events_.divides(token.extent);
}

void Walker::closeCell(std::size_t at, Extent endTag) {
  closeTo(scopes_.back().block + 1, at);
  const State markState = markState_;
  endParagraph(at, true);
  const Scope cell = scopes_.back();
  if (isCell(cell.name) && !cell.endsInParagraph) {
    Paragraph paragraph;
    paragraph.at = at;
    paragraph.hasMark = paragraph.isCell = paragraph.endsBlock = true;
    blocks_.back().hasParagraph = true;
    markState_ = markState;
    events_.paragraphEnds(paragraph);
    markState_ = {};
  }
  const Block closed = blocks_.back();
  scopes_.pop_back();
  popBlock();
  events_.blockEnds(closed, endTag);
}

void Walker::endRow() {
  Scope& table = scopes_.back();
  if (table.rowHasCells) events_.rowEnds();
  table.rowHasCells = false;
  if (table.rowHidden) --hiddenRows_;
  table.rowHidden = false;
}

void Walker::closeTable(std::size_t at, Extent endTag) {
  if (!isBetweenCells()) closeCell(at, {at, at});
  closeTo(scopes_.back().block + 1, at);
  endParagraph(at, false);
  endRow();
  const Scope table = scopes_.back();
  if (table.hasBegun) events_.tableEnds(endTag, !table.wasBroken);
  const Block closed = blocks_.back();
  scopes_.pop_back();
  --tables_;
  popBlock();
  if (table.hasBegun && !scopes_.empty()) scopes_.back().endsInParagraph = false;
  events_.blockEnds(closed, endTag);
}

/// Text between two cells, or a caption: the table ends in front of it, and what follows is another one.
void Walker::interruptTable() {
  const Scope before = scopes_.back();
  endRow();
  Scope& table = scopes_.back();
  if (before.hasBegun) events_.tableEnds({}, false);
  table.hasBegun = false;
  table.wasBroken = true;
}

}  // namespace pluvo::formats::html
