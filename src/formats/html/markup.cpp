#include "markup.h"

#include "errors/document_error.h"
#include "new_text.h"

#include <algorithm>

namespace pluvo::formats::html {

void Markup::begin(std::size_t at, std::int32_t number, bool keepsBlanks) {
  copyTo(at);
  keepsBlanks_ = keepsBlanks;
  begin_ = at;
  sizeAtBegin_ = out_.text().size();
  isAsBefore_ = true;
  number_ = number;
  open_.clear();
  opened_.clear();
}

void Markup::copyTo(std::size_t to) {
  constexpr std::size_t kWorthAPiece = 1024;
  if (to <= out_.copied()) return;
  if (to - out_.copied() >= kWorthAPiece) {
    out_.commitTo(to);
  } else {
    out_.copyTo(to);
  }
}

void Markup::copyWithTags(std::size_t to, std::int32_t number) {
  copyTo(to);
  number_ = number;
}

void Markup::materialise() {
  if (!isAsBefore_) return;
  open_.clear();
  for (const std::int32_t number : walker_.inlines().chainOf(number_)) {
    open_.push_back({Wrap::Kind::old, number, 0, false});
    opened_.insert(walker_.inlines()[number].tag.begin);
  }
  isAsBefore_ = false;
}

/// The colour of a span of nothing but a highlight, old or new; 0 where it is none.
std::uint8_t Markup::oursOf(const Wrap& wrap) const {
  if (wrap.kind == Wrap::Kind::colour) return wrap.colour;
  if (wrap.kind == Wrap::Kind::stripped) return 0;
  const Inline& element = walker_.inlines()[wrap.number];
  return element.isOurs ? element.state.colour : 0;
}

bool Markup::isSame(const Wrap& a, const Wrap& b) const {
  const std::uint8_t colour = oursOf(a);
  if (colour != 0 || oursOf(b) != 0) return colour == oursOf(b);
  return a.kind == b.kind && walker_.inlines()[a.number].tag.begin == walker_.inlines()[b.number].tag.begin;
}

Markup::Wraps Markup::wrapsFor(std::int32_t number, std::uint8_t colour) const {
  const InlineStack& inlines = walker_.inlines();
  const std::vector<std::int32_t> chain = inlines.chainOf(number);
  const std::uint8_t natural = chain.empty() ? 0 : inlines[number].state.colour;
  Wraps wraps;
  std::uint8_t shown = 0;
  for (const std::int32_t each : chain) {
    const Inline& element = inlines[each];
    if (natural == colour || !element.carriesColour) {
      wraps.push_back({Wrap::Kind::old, each, 0, false});
    } else if (!element.isOurs && colour != 0) {
      wraps.push_back({Wrap::Kind::old, each, 0, false});
      shown = element.state.colour;
    } else if (!element.isOurs && element.name != Name::mark) {
      wraps.push_back({Wrap::Kind::stripped, each, 0, false});
    }
  }
  if (natural != colour && colour != 0 && shown != colour)
    wraps.push_back({Wrap::Kind::colour, -1, colour, false});
  return wraps;
}

bool Markup::addsTo(std::int32_t number, std::uint8_t colour) const {
  if (colour == (number < 0 ? 0 : walker_.inlines()[number].state.colour)) return true;
  const Wraps wraps = wrapsFor(number, colour);
  const std::vector<std::int32_t> chain = walker_.inlines().chainOf(number);
  if (wraps.size() != chain.size() + 1) return false;
  for (std::size_t i = 0; i < chain.size(); ++i)
    if (wraps[i].kind != Wrap::Kind::old || wraps[i].number != chain[i]) return false;
  // A highlight that is open goes on.
  return number_ < 0 || walker_.inlines()[number_].state.colour != colour;
}

void Markup::lead(const Wraps& wanted) {
  materialise();
  const std::size_t common = std::min(open_.size(), wanted.size());
  std::size_t same = 0;
  while (same < common && isSame(open_[same], wanted[same])) ++same;
  while (open_.size() > same) close();
  tagBytes_ = 0;
  for (; same < wanted.size(); ++same) open(wanted[same]);
}

void Markup::leadTo(std::int32_t number, std::uint8_t colour) {
  if (isAsBefore_ && number == number_ && colour == (number < 0 ? 0 : walker_.inlines()[number].state.colour))
    return;
  lead(wrapsFor(number, colour));
}

void Markup::leadBack(std::int32_t number) {
  leadTo(number, number < 0 ? 0 : walker_.inlines()[number].state.colour);
  isAsBefore_ = true;
  number_ = number;
}

void Markup::closeTo(std::int32_t number) {
  materialise();
  const Wraps around = wrapsFor(number, number < 0 ? 0 : walker_.inlines()[number].state.colour);
  std::size_t same = 0;
  while (same < std::min(open_.size(), around.size()) && isSame(open_[same], around[same])) ++same;
  while (open_.size() > same) close();
}

bool Markup::isByRule(const Inline& element) const {
  Attributes attributes = attributesOf(old(element.tag));
  attributes.style = {};
  return walker_.sheet().styleOf(old(element.tagName), attributes).colour().value_or(0) != 0;
}

void Markup::open(Wrap wrap) {
  std::string tag;
  if (wrap.kind == Wrap::Kind::colour) {
    tag = highlightTag(wrap.colour, against());
  } else {
    const Inline& element = walker_.inlines()[wrap.number];
    const bool isSecond = !opened_.insert(element.tag.begin).second;
    tag = old(element.tag);
    if (wrap.kind == Wrap::Kind::stripped)
      tag = withoutHighlight(tag, old(element.tagName), isByRule(element));
    wrap.isSilent = tag.empty();
    if (isSecond && element.stands) {
      const Attributes attributes = attributesOf(tag);
      wrap.isSilent = element.name == Name::a && !attributes.hasHref;
      tag = wrap.isSilent ? std::string() : copyOf(tag);
    }
    constexpr std::size_t kMostTags = std::size_t{64} << 10U;
    if (isSecond) tagBytes_ += tag.size();
    if (tagBytes_ > kMostTags)
      throw errors::DocumentError(errors::Problem::unsupported,
                                  "The text lies in so many elements that dividing them would copy more than "
                                  "64 KB of tags; save the page in a word processor first.");
  }
  put(tag);
  open_.push_back(wrap);
}

void Markup::close() {
  const Wrap wrap = open_.back();
  open_.pop_back();
  if (wrap.isSilent) return;
  if (wrap.kind == Wrap::Kind::colour) return put("</span>");
  const Inline& element = walker_.inlines()[wrap.number];
  if (element.name == Name::conditional) return put("<![endif]-->");
  put("</" + std::string(old(element.tagName)) + ">");
}

std::string Markup::against() {
  const Style* const rule = walker_.sheet().ofSpan();
  if (rule == nullptr) return {};
  std::string more;
  if (rule->preformatted) {
    materialise();
    State::Blanks blanks = State::Blanks::asAround;
    for (const Wrap& wrap : open_)
      if (wrap.number >= 0) blanks = walker_.inlines()[wrap.number].state.blanks;
    const bool keeps = blanks == State::Blanks::asAround ? keepsBlanks_ : blanks == State::Blanks::count;
    if (keeps != *rule->preformatted) more += keeps ? ";white-space:pre" : ";white-space:normal";
  }
  if (rule->hidden()) more += ";display:inline;mso-hide:none";
  return more;
}

}  // namespace pluvo::formats::html
