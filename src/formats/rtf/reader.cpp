#include "reader.h"

#include "damage.h"

#include <algorithm>
#include <utility>

namespace pluvo::rtf {

using document::ContentBuilder;
using document::Look;
using Kind = Character::Kind;

namespace {

constexpr std::size_t kMostExpected = std::size_t{32} << 20U;

bool isParagraphEnd(Kind kind) { return kind == Kind::paragraph || kind == Kind::cell || kind == Kind::row; }

}  // namespace

TextReader::TextReader(std::string_view bytes, const ReadFor& what) : bytes_(bytes), what_(what) {
  builder_.expect(std::min(what.size, kMostExpected));
  if (what.uncolouredTo == 0) return;
  colourless_ = builder_.addRestriction(
      {document::Restriction::Of::colour,
       "The document names its colours after this text, which can therefore not be highlighted; save the "
       "document in a word processor first."});
}

/// Of the character that begins there.
Look TextReader::lookAt(std::size_t begin) {
  const State& state = walker_->state();
  Look look{state.hidden, state.highlight, state.deleted};
  if (begin < what_.uncolouredTo) look.restriction = colourless_;
  if (length_ == 0) firstAt_ = begin;
  return look;
}

void TextReader::text(Extent bytes) {
  const Look now = lookAt(bytes.begin);
  const std::string_view ascii = bytes_.substr(bytes.begin, bytes.end - bytes.begin);
  count(ascii.size());
  add({}, now);
  units_.append(ascii.begin(), ascii.end());
  pieces_.back().count += ascii.size();
}

void TextReader::add(std::u16string_view units, const Look& look) {
  const bool goesOn =
      !pieces_.empty() && pieces_.back().kind == Kind::ordinary && !pieces_.back().bookmark &&
      pieces_.back().look.hidden == look.hidden && pieces_.back().look.highlight == look.highlight &&
      pieces_.back().look.deleted == look.deleted && pieces_.back().look.restriction == look.restriction;
  if (!goesOn) pieces_.push_back({Kind::ordinary, look, 0, units_.size(), 0, std::nullopt});
  units_ += units;
  pieces_.back().count += units.size();
  count(units.size());
}

void TextReader::addPiece(const Character& character) {
  // The end of a row is nothing that has a look.
  const bool isRow = character.kind == Kind::row;
  const std::size_t place = character.bytes.begin;
  pieces_.push_back(
      {character.kind, isRow ? Look{} : lookAt(place), character.depth, place, 0, std::nullopt});
  count(1);
}

void TextReader::count(std::size_t units) {
  constexpr std::size_t kMost = static_cast<std::size_t>(text::kMaxLength) / 2;
  length_ += units;
  if (length_ <= kMost) return;
  throw errors::DocumentError(errors::Problem::tooLarge,
                              "The document has more than 1,073,741,823 characters; divide it.");
}

void TextReader::character(const Character& character) {
  if (character.kind == Kind::ordinary) {
    Look now = lookAt(character.bytes.begin);
    // A comment's anchor is not visible, so a text is found across it.
    if (character.unit == text::kCommentReference && character.group == Word::annotation) {
      now.hidden = true;
      if (character.comment) waiting_.push_back({units_.size(), character.comment});
    }
    if (character.fillsStory) {
      now.restriction = lockFor(fillsStory_,
                                "A picture without a group of its own takes all that comes here. Open the "
                                "document in a word processor and save it again, or leave this place out.");
    }
    const char16_t units[] = {character.unit, character.second};
    return add({units, static_cast<std::size_t>(character.units())}, now);
  }
  addPiece(character);
  switch (character.kind) {
    case Kind::paragraph:
      if (character.depth == 0) handOn();
      break;
    case Kind::section:
      handOn();
      break;
    case Kind::row:
      if (character.depth == 1) handOn();
      break;
    default:
      break;
  }
}

/// Hands on the kept text.
void TextReader::handOn() {
  decideMarks();
  play();
}

/// From the end to the front: a paragraph lies in the deepest table of which a row ends after it. Cells of
/// which no row ends are paragraphs. Depths in which none ends are passed over. New text there could not say
/// in which table it lies.
void TextReader::decideMarks() {
  std::vector<std::uint16_t> ending;
  bool isGapped = false;
  for (auto piece = pieces_.rbegin(); piece != pieces_.rend(); ++piece) {
    if (!isParagraphEnd(piece->kind)) continue;
    while (!ending.empty() && ending.back() > piece->depth) ending.pop_back();
    if (piece->kind == Kind::row) {
      const int around = ending.empty() ? 0 : ending.back();
      isGapped = isGapped || piece->depth > around + 1;
      if (around < piece->depth) ending.push_back(piece->depth);
    } else if (ending.empty() || ending.back() != piece->depth) {
      piece->kind = Kind::paragraph;
    }
    piece->depth = static_cast<std::uint16_t>(ending.size());
  }
  if (isGapped) lock();
}

/// Lets nothing be edited in the kept text.
void TextReader::lock() {
  const std::int8_t restriction =
      lockFor(rows_,
              "The rows of a table lie here in a row that the document does not have. Open it in a word "
              "processor and save it again, or leave this place out.");
  for (Piece& piece : pieces_) piece.look.restriction = restriction;
}

std::int8_t TextReader::lockFor(std::int8_t& restriction, const char* sentence) {
  if (restriction == document::kNone)
    restriction = builder_.addRestriction({document::Restriction::Of::change, sentence});
  return restriction;
}

/// Text goes where its paragraph's end goes.
void TextReader::play() {
  std::size_t from = 0;
  for (std::size_t i = 0; i < pieces_.size(); ++i) {
    const Piece& last = pieces_[i];
    if (!isParagraphEnd(last.kind) && last.kind != Kind::section) continue;
    const bool isEmptyRowEnd =
        last.kind == Kind::row && std::all_of(pieces_.begin() + static_cast<std::ptrdiff_t>(from),
                                              pieces_.begin() + static_cast<std::ptrdiff_t>(i),
                                              [](const Piece& piece) { return piece.bookmark.has_value(); });
    if (!isEmptyRowEnd) goToDepth(last.kind == Kind::section ? 0 : last.depth);
    for (; from < i; ++from) play(pieces_[from]);
    playMark(last);
    from = i + 1;
  }
  if (from < pieces_.size()) goToDepth(0);
  for (; from < pieces_.size(); ++from) play(pieces_[from]);
  pieces_.clear();
  units_.clear();
  waiting_.clear();
  nextWaiting_ = 0;
}

void TextReader::goToDepth(std::size_t depth) {
  while (levels_.size() > depth) {
    builder_.endTable();
    levels_.pop_back();
  }
  while (levels_.size() < depth) {
    if (levels_.size() == ContentBuilder::kDeepest) throw damaged("nests tables more than 1,000 deep");
    if (!levels_.empty()) levels_.back().hasContent = true;
    builder_.beginTable();
    levels_.push_back({builder_.length(), false, false});
  }
}

void TextReader::play(const Piece& piece) {
  if (piece.bookmark) {
    map_.bookmarks[*piece.bookmark].position = builder_.length();
    return;
  }
  endsInMark_ = false;
  switch (piece.kind) {
    case Kind::fieldBegin:
      return builder_.beginField(piece.look);
    case Kind::fieldSeparator:
      builder_.separateField(piece.look);
      break;
    case Kind::fieldEnd:
      builder_.endField(piece.look);
      break;
    default:
      for (; nextWaiting_ < waiting_.size() && waiting_[nextWaiting_].unit < piece.from + piece.count;
           ++nextWaiting_) {
        const Waiting& waiting = waiting_[nextWaiting_];
        const auto offset = static_cast<text::Position>(waiting.unit - piece.from);
        const text::Position position = builder_.length() + offset;
        if (waiting.comment) {
          map_.comments.emplace(position, *waiting.comment);
        } else {
          groups_[waiting.group].anchor = position;
        }
      }
      builder_.append(std::u16string_view(units_).substr(piece.from, piece.count), piece.look);
  }
  if (!levels_.empty()) levels_.back().hasContent = true;
}

void TextReader::playMark(const Piece& piece) {
  if (piece.kind != Kind::row) endsInMark_ = false;
  switch (piece.kind) {
    case Kind::section:
      goToDepth(0);
      builder_.sectionMark(piece.look);
      break;
    case Kind::cell:
      builder_.cellMark(piece.look);
      levels_.back().hasCell = true;
      levels_.back().hasContent = false;
      break;
    case Kind::row:
      playRowMark(piece);
      break;
    default:
      builder_.append(text::kParagraphMark, piece.look);
      endsInMark_ = levels_.empty();
      if (!levels_.empty()) levels_.back().hasContent = true;
  }
}

void TextReader::playRowMark(const Piece& piece) {
  if (levels_.size() > piece.depth) goToDepth(piece.depth);
  const bool isOpen = levels_.size() == piece.depth;
  const bool endsCell = isOpen && levels_.back().hasContent;
  if (!isOpen || (!endsCell && !levels_.back().hasCell)) {
    map_.oddities.push_back({piece.from, Oddity::Kind::noRow});
    return;
  }
  endsInMark_ = false;
  if (endsCell) {
    map_.oddities.push_back({piece.from, Oddity::Kind::cellEnds});
    builder_.cellMark(piece.look);
  }
  builder_.rowMark(piece.look);
  map_.rows.push_back({levels_.back().rowFrom, builder_.length()});
  levels_.back() = {builder_.length(), false, false};
}

void TextReader::end(std::size_t at) {
  handOn();
  goToDepth(0);
  if (endsInMark_) return;
  Look look = lookAt(at);
  if (fillsStory_ != document::kNone) look.restriction = fillsStory_;
  builder_.append(text::kParagraphMark, look);
  map_.endsWithoutBytes = true;
}

void TextReader::word(const Token& token) {
  if (isBetween(token.word, Word::formprot, Word::enforceprot)) protection_.word(token);
}

void TextReader::group(const SkippedGroup& group) {
  protection_.group(group);
  if (group.word == Word::bkmkstart || group.word == Word::bkmkend) {
    pieces_.push_back({Kind::ordinary, Look{}, 0, units_.size(), 0, map_.bookmarks.size()});
    map_.bookmarks.push_back({group.word == Word::bkmkend, 0, {group.inside, group.bytes.end}});
  }
  if (!isTold(group.word)) return;
  if (groups_.size() == kMostGroups) {
    hasMoreGroups_ = hasMoreGroups_ || !isOpaque(group.word);
    return;
  }
  if (isOneCharacter(group.word)) waiting_.push_back({units_.size() - 1, std::nullopt, groups_.size()});
  groups_.push_back({group, walker_->state().fallback});
}

bool TextReader::isTold(Word group) {
  if (group == Word::object) return !std::exchange(hasObject_, true);
  switch (group) {
    case Word::pict:
    case Word::shppict:
    case Word::mmath:
    case Word::info:
    case Word::docvar:
    case Word::indexEntry:
    case Word::revtbl:
    case Word::userprops:
      return true;
    case Word::formfield:
    case Word::unknown:
      return ++minorGroups_ <= kMostMinorGroups;
    default:
      return holdsStories(group);
  }
}

}  // namespace pluvo::rtf
