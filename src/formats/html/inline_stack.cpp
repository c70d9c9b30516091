#include "inline_stack.h"

#include "base/ascii.h"

#include <algorithm>

namespace pluvo::formats::html {

bool InlineStack::push(Inline element) {
  if (open_.size() >= kDeepest || all_.size() >= kMostNumbered) return false;
  element.parent = top();
  ++counts_[static_cast<std::size_t>(element.name)];
  open_.push_back(static_cast<std::int32_t>(all_.size()));
  all_.push_back(element);
  return true;
}

bool InlineStack::isSame(std::int32_t number, Name name, std::string_view tagName) const {
  const Inline& element = (*this)[number];
  if (element.name != name) return false;
  return name != Name::unknown || base::equalsIgnoringAsciiCase(nameIn(element), tagName);
}

void InlineStack::pop() {
  --counts_[static_cast<std::size_t>((*this)[top()].name)];
  open_.pop_back();
}

/// With its own effect on the text, around which others lie now.
void InlineStack::reopen(std::int32_t number) {
  Inline element = (*this)[number];
  const State around = element.parent < 0 ? State{} : (*this)[element.parent].state;
  const State now = state();
  State& its = element.state;
  const auto keep = [](bool value, bool before, bool here) { return value != before ? value : here; };
  its.hidden = keep(its.hidden, around.hidden, now.hidden);
  its.silent = keep(its.silent, around.silent, now.silent);
  its.deleted = keep(its.deleted, around.deleted, now.deleted);
  its.inserted = keep(its.inserted, around.inserted, now.inserted);
  its.bold = keep(its.bold, around.bold, now.bold);
  its.italic = keep(its.italic, around.italic, now.italic);
  its.underlined = keep(its.underlined, around.underlined, now.underlined);
  its.struck = keep(its.struck, around.struck, now.struck);
  its.spaceRun = keep(its.spaceRun, around.spaceRun, now.spaceRun);
  if (its.blanks == around.blanks) its.blanks = now.blanks;
  if (!element.carriesColour) its.colour = now.colour;
  push(element);
}

bool InlineStack::close(Name name, std::string_view tagName) {
  if (!has(name)) return false;
  const auto found = std::ranges::find_if(open_.rbegin(), open_.rend(),
                                          [&](std::int32_t number) { return isSame(number, name, tagName); });
  if (found == open_.rend()) return false;
  const auto above = static_cast<std::size_t>(found - open_.rbegin());
  if (above > kMostReopened) return false;
  const std::vector<std::int32_t> within(open_.end() - static_cast<std::ptrdiff_t>(above), open_.end());
  for (std::size_t i = 0; i <= above; ++i) pop();
  for (const std::int32_t number : within) reopen(number);
  return true;
}

void InlineStack::closeThrough(Name name) {
  if (!has(name)) return;
  while ((*this)[top()].name != name) pop();
  pop();
}

void InlineStack::endBlock(std::int32_t topAtBegin, bool isCell) {
  if (top() == topAtBegin) return;
  const auto isFormatting = [&](const Inline& element) {
    return element.name == Name::conditional || (!isCell && (traitsOf(element.name) & kFormatting) != 0);
  };
  // As a rule the elements open at the block's beginning still are.
  const auto around = std::find(open_.rbegin(), open_.rend(), topAtBegin);
  const bool isOpen = around != open_.rend() || topAtBegin < 0;
  std::vector<std::size_t> before;
  if (!isOpen) {
    for (std::int32_t at = topAtBegin; at >= 0; at = (*this)[at].parent)
      before.push_back((*this)[at].tag.begin);
    std::ranges::sort(before);
  }
  const auto stays = [&](std::int32_t number) {
    const Inline& element = (*this)[number];
    return isFormatting(element) || std::ranges::binary_search(before, element.tag.begin);
  };
  const auto from = isOpen ? around.base() : open_.begin();
  const std::vector<std::int32_t> rest(std::find_if_not(from, open_.end(), stays), open_.end());
  for (std::size_t i = 0; i < rest.size(); ++i) pop();
  for (const std::int32_t number : rest)
    if (stays(number)) reopen(number);
}

void InlineStack::forget(std::size_t from) {
  const std::size_t needed = open_.empty() ? 0 : static_cast<std::size_t>(open_.back()) + 1;
  const std::size_t kept = std::max(from, needed);
  if (kept < all_.size()) all_.resize(kept);
}

std::vector<std::int32_t> InlineStack::chainOf(std::int32_t number) const {
  std::vector<std::int32_t> chain;
  for (; number >= 0; number = (*this)[number].parent) chain.push_back(number);
  std::ranges::reverse(chain);
  return chain;
}

}  // namespace pluvo::formats::html
