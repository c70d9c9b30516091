#include "new_text_writer.h"

#include "new_text.h"

#include <algorithm>
#include <utility>

namespace pluvo::rtf {

using document::Step;
using text::Position;

namespace {

/// A part of new text.
Step partOf(const Step& text, std::size_t from, std::size_t to) {
  Step part = text;
  part.units = text.units.substr(from, to - from);
  part.at = text.at + static_cast<Position>(from);
  part.length = static_cast<Position>(to - from);
  return part;
}

/// How much of it is whole paragraphs.
std::size_t paragraphsOf(const Step& text) { return text.units.rfind(text::kParagraphMark) + 1; }

}  // namespace

Place NewTextWriter::inFrontOf(std::size_t begin, const Step& text) const {
  const document::Structure structure = splicer_.story().structure().valueAt(text.at);
  Place place = here(begin);
  if (!place.state.deleted || structure.deleted) return place;
  const auto& levels = splicer_.levels();
  std::size_t level = splicer_.depth();
  while (level > 0 && levels[level].before.deleted) --level;
  const bool isFirst = level > 0 && levels[level].position == text.original;
  const NewDocument& out = splicer_.out();
  const bool isReached = out.copied() > levels[level].begin || out.endsInNew();
  if (isFirst && !isReached) return {levels[level].begin, levels[level].before, level - 1};
  return place;
}

void NewTextWriter::waitForLiving(const Step& text) {
  waitsForLiving_ = true;
  waiting_.push_back(text);
}

std::vector<Step> NewTextWriter::takeWaiting() {
  waitsForLiving_ = false;
  return std::exchange(waiting_, {});
}

void NewTextWriter::flushAt(const Place& place) {
  for (const Step& text : takeWaiting()) write(text, place);
}

void NewTextWriter::writeAfterMark(const Step& text, const Place& place) {
  const std::size_t own = paragraphsOf(text);
  if (own > 0) {
    flushAt(place);  // the text before it is of its first paragraph
    write(partOf(text, 0, own), place);
  }
  if (own < text.units.size()) waiting_.push_back(partOf(text, own, text.units.size()));
}

void NewTextWriter::writeAtEnd(const Step& text, std::size_t at) {
  const std::size_t own = paragraphsOf(text);
  if (own > 0) write(partOf(text, 0, own), here(at));
  if (own == text.units.size()) return;
  splicer_.copyTo(at);
  Place place = here(at);
  if (place.state.tableDepth() > 0) splicer_.out().put("\\pard ");
  place.state.inTable = false;
  place.state.depth = 0;
  write(partOf(text, own, text.units.size()), place);
}

std::uint16_t NewTextWriter::depthOf(Position at) const {
  const document::Story& story = splicer_.story();
  std::uint16_t depth = 0;
  for (std::int32_t table = story.structure().valueAt(at).table; table != document::kNone;
       table = story.tables()[static_cast<std::size_t>(table)].parent)
    ++depth;
  return depth;
}

/// Whether a character that no view shows is so by its own look, and not by the field it lies in.
bool NewTextWriter::hidesItself(Position at) const {
  const document::Story& story = splicer_.story();
  const std::int32_t field = story.structure().valueAt(at).field;
  return field == document::kNone ||
         story.fields()[static_cast<std::size_t>(field)].around == text::kEverywhere;
}

/// Paragraphs that do not lie in the table they are put beside go in front of its row.
void NewTextWriter::write(const Step& text, const Place& place) {
  const std::uint16_t depth = depthOf(text.at);
  const std::size_t own = paragraphsOf(text);
  const bool isElsewhere = own > 0 && depth != place.state.tableDepth();
  const bool isBeforeRow = isElsewhere && rows_.standBefore(text.original) && !text.after &&
                           splicer_.out().copied() <= rows_.begin() && depth < place.state.tableDepth();
  splicer_.copyTo(isBeforeRow ? rows_.begin() : place.at);
  splicer_.fillFallback(place.at);

  std::vector<Splicer::Level> inner = splicer_.setAside(place.level);
  if (isElsewhere) {
    std::string words = "\\pard";
    if (depth > 0) words += "\\intbl";
    if (depth > 1) words += "\\itap" + std::to_string(depth);
    splicer_.openNew(words);
    if (isBeforeRow) splicer_.level().highlight = rows_.highlight();
    writeRuns(text, 0, own, place.state);
    splicer_.closeNew();
    if (isBeforeRow) splicer_.copyTo(place.at);
  }
  const std::uint8_t colour = splicer_.level().highlight;
  writeRuns(text, isElsewhere ? own : 0, text.units.size(), place.state);
  // Groups that begin after the text have inherited the colour before it.
  if (!inner.empty() && inner.back().begin >= place.at) splicer_.highlightTo(colour);
  splicer_.giveBack(inner);
  written_ = text.at + text.length;
}

/// The control words that make text look as it should where the state says otherwise.
std::string NewTextWriter::wordsFor(Position first, const State& state) const {
  const document::Story& story = splicer_.story();
  const bool isHidden = story.visibility().valueAt(first) == text::kNowhere;
  const bool isDeleted = story.structure().valueAt(first).deleted;
  std::string words;
  if (isHidden != state.hidden && (state.hidden || hidesItself(first))) words += isHidden ? "\\v" : "\\v0";
  if (isDeleted != state.deleted) words += isDeleted ? "\\deleted" : "\\deleted0";
  const Fonts& fonts = splicer_.walker().tables().fonts;
  if (!state.inCode && fonts.decoder(state.decoder).kind == Decoder::Kind::symbol) {
    if (const auto font = fonts.forLetters()) words += "\\f" + std::to_string(*font);
  }
  return words;
}

/// Text with its colours, in a group where it would look otherwise than it should.
void NewTextWriter::writeRuns(const Step& text, std::size_t from, std::size_t to, const State& state) {
  if (from >= to) return;
  const std::string words = wordsFor(text.at + static_cast<Position>(from), state);
  if (!words.empty()) splicer_.openNew(words);
  std::string bytes;
  for (std::size_t at = from; at < to;) {
    const std::uint8_t colour = splicer_.wanted(text.at + static_cast<Position>(at));
    const std::size_t end = std::min(to, static_cast<std::size_t>(splicer_.wantedTo() - text.at));
    splicer_.highlightTo(colour);
    bytes.clear();
    appendEncoded(bytes, text.units.substr(at, end - at), state.fallback);
    splicer_.out().put(bytes);
    at = end;
  }
  if (!words.empty()) splicer_.closeNew();
}

}  // namespace pluvo::rtf
