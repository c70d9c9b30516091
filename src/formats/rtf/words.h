#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace pluvo::rtf {

/// The control words, by their meaning to this program. Those between two of the comments are told apart by
/// order.
enum class Word : std::uint8_t {
  unknown,
  character,  ///< stands for the unit that its entry has
  // Marks and breaks.
  par,
  cell,
  nestcell,
  row,
  nestrow,
  sect,
  lbr,
  u,
  chftn,
  // Groups of main text.
  field,
  fldinst,
  fldrslt,
  fieldFlag,
  upr,
  ud,
  nesttableprops,
  // Groups that are one character.
  pict,
  shppict,
  object,
  mmath,
  shp,
  footnote,
  annotation,
  // Groups that are skipped.
  skipped,
  fonttbl,
  colortbl,
  stylesheet,
  info,
  header,
  headerLeft,
  headerFirst,
  footer,
  footerLeft,
  footerFirst,
  atnid,
  atnauthor,
  bkmkstart,
  bkmkend,
  atrfstart,
  atrfend,
  label,  ///< of an item in a list
  nonesttables,
  nonshppict,
  passwordhash,
  indexEntry,  ///< a text for an index or a table of contents
  revtbl,
  docvar,
  userprops,
  formfield,
  lastGroup = formfield,
  // The look of characters.
  f,
  plain,
  v,
  deleted,
  revised,
  highlight,
  b,
  i,
  strike,
  ul,
  ulnone,
  rtlch,
  ltrch,
  uc,
  // Properties of paragraphs and tables.
  pard,
  intbl,
  itap,
  ql,
  qc,
  qr,
  qj,
  rtlpar,
  ltrpar,
  outlinelevel,
  s,
  ls,
  ilvl,
  trowd,
  cellx,
  trleft,
  // The document's.
  rtf,
  ansi,
  mac,
  pc,
  pca,
  ansicpg,
  deff,
  formprot,
  revprot,
  annotprot,
  readprot,
  readonlyrecommended,
  enforceprot,
  // Found only inside groups that are skipped.
  fcharset,
  cpg,
  red,
  green,
  blue,
  password,
  writereservhash,
  writereservation,
  atnref,
  ftnalt,
  shprslt,
  mr,
  shptxt,
  sn,
  sv,
  pnlvl,
  chatn,
  bin,
};

struct Meaning {
  Word word = Word::unknown;
  char16_t unit = 0;  ///< of a character
};

/// The first letters of a word as a number, the first in its lowest byte.
inline constexpr std::size_t kHead = 8;
constexpr std::uint64_t headOf(std::string_view text) {
  std::uint64_t head = 0;
  for (std::size_t i = 0; i < text.size() && i < kHead; ++i)
    head |= std::uint64_t{static_cast<std::uint8_t>(text[i])} << 8U * i;
  return head;
}

/// The meaning of a word, whose case counts, by its letters and its head.
Meaning meaningOf(std::string_view word, std::uint64_t head);
inline Meaning meaningOf(std::string_view word) { return meaningOf(word, headOf(word)); }

constexpr bool isBetween(Word word, Word first, Word last) { return word >= first && word <= last; }
/// Whether a group that begins with the word is no text that goes on in the one around it.
constexpr bool isSkipped(Word word) { return isBetween(word, Word::skipped, Word::lastGroup); }
constexpr bool isOneCharacter(Word word) { return isBetween(word, Word::pict, Word::annotation); }
/// Whether a group that begins with the word is a picture or an object, whose text is not searched.
constexpr bool isOpaque(Word word) { return isBetween(word, Word::pict, Word::object); }
/// Whether a group that begins with the word may hold text of another story.
constexpr bool holdsStories(Word word) {
  return isBetween(word, Word::shp, Word::annotation) || isBetween(word, Word::header, Word::footerFirst);
}

}  // namespace pluvo::rtf
