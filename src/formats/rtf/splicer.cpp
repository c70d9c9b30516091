#include "splicer.h"

namespace pluvo::rtf {

void Splicer::copyTo(std::size_t at) {
  for (Alternative& alternative : alternatives_) {
    if (at <= alternative.bytes.end || out_.copied() >= alternative.bytes.end) continue;
    out_.copyTo(alternative.bytes.begin, walker_);
    out_.leaveOutTo(alternative.bytes.end);
  }
  out_.copyTo(at, walker_);
}

void Splicer::leaveOut(Extent bytes) {
  copyTo(bytes.begin);
  out_.leaveOutTo(bytes.end);
}

void Splicer::open(std::size_t begin, text::Position position) {
  levels_.push_back({begin, position, walker_.state(), levels_.back().highlight});
}

Splicer::Level Splicer::close() {
  const Level closed = levels_.back();
  levels_.pop_back();
  while (!alternatives_.empty() && alternatives_.back().depth > levels_.size()) alternatives_.pop_back();
  return closed;
}

std::vector<Splicer::Level> Splicer::setAside(std::size_t depth) {
  std::vector<Level> inner;
  while (levels_.size() > depth + 1) {
    inner.push_back(levels_.back());
    levels_.pop_back();
  }
  return inner;
}

void Splicer::giveBack(std::vector<Level>& inner) {
  while (!inner.empty()) {
    levels_.push_back(inner.back());
    inner.pop_back();
  }
}

void Splicer::openNew(std::string_view words) {
  out_.put("{" + std::string(words) + " ");
  levels_.push_back(levels_.back());
}

void Splicer::closeNew() {
  out_.put("}");
  levels_.pop_back();
}

std::uint8_t Splicer::wanted(text::Position at) {
  if (at < wanted_.from || at >= wanted_.to) wanted_ = story_.highlight().runAt(at);
  return wanted_.value;
}

void Splicer::highlightTo(std::uint8_t colour) {
  std::uint8_t& now = levels_.back().highlight;
  if (now == colour) return;
  out_.putHighlight(colour);
  now = colour;
}

void Splicer::highlightTo(std::uint8_t colour, std::size_t at) {
  if (colour == levels_.back().highlight) return;
  copyTo(at);
  highlightTo(colour);
}

void Splicer::lacksFallback(std::uint16_t count, Extent at) {
  missingFallback_ = count;
  missingAt_ = at;
}

void Splicer::fillFallback(std::size_t at) {
  if (missingFallback_ > 0 && missingAt_.begin <= at && at <= missingAt_.end)
    out_.put(std::string(missingFallback_, '?'));
  missingFallback_ = 0;
}

}  // namespace pluvo::rtf
