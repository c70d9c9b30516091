#pragma once

#include <cstdint>
#include <string_view>

namespace pluvo::formats::html {

/// Elements that mean something to the text of a document. Any other is transparent: its content is text of
/// the paragraph around it.
enum class Name : std::uint8_t {
  unknown,
  // Inline:
  a,
  b,
  big,
  code,
  del,
  em,
  font,
  i,
  ins,
  mark,
  nobr,
  s,
  small,
  span,
  strike,
  strong,
  sub,
  sup,
  tt,
  u,
  oP,           ///< o:p, the place of Word's paragraph mark
  conditional,  ///< a conditional comment of which the content counts, or an end of one
  ruby,
  rt,
  rp,
  rtc,
  wbr,
  br,
  // Of no text:
  base,
  link,
  meta,
  area,
  col,
  param,
  source,
  track,
  frame,
  bgsound,
  basefont,
  keygen,
  head,
  html,
  title,
  style,
  script,
  template_,
  xml,
  noframes,
  noembed,
  map,
  datalist,
  // One character each:
  img,
  input,
  textarea,
  select,
  object,
  embed,
  iframe,
  video,
  audio,
  canvas,
  applet,
  svg,
  math,
  // Blocks:
  address,
  article,
  aside,
  blockquote,
  body,
  center,
  details,
  dialog,
  dir,
  div,
  dl,
  fieldset,
  figcaption,
  figure,
  footer,
  form,
  frameset,
  header,
  hgroup,
  hr,
  legend,
  main,
  menu,
  nav,
  ol,
  optgroup,
  option,
  search,
  section,
  summary,
  ul,
  p,
  h1,
  h2,
  h3,
  h4,
  h5,
  h6,
  li,
  dt,
  dd,
  pre,
  listing,
  xmp,
  plaintext,
  table,
  caption,
  colgroup,
  tbody,
  thead,
  tfoot,
  tr,
  td,
  th,
  count,
};

/// The traits of an element, in bits.
enum Trait : std::uint16_t {
  kBlock = 1U << 0U,        ///< begins and ends paragraphs
  kExistsEmpty = 1U << 1U,  ///< is a paragraph where there is no text in it
  kVoid = 1U << 2U,         ///< has no content and no end tag
  kFormatting = 1U << 3U,   ///< goes on where a block around it ends
  kPicture = 1U << 4U,      ///< one character, with all its content
  kNothing = 1U << 5U,      ///< no text, with all its content
  kRaw = 1U << 6U,          ///< its content is no markup
  kTablePart = 1U << 7U,    ///< but for cells and captions: text directly in it lies between cells
  kCell = 1U << 8U,
  kPreformatted = 1U << 9U,
  kHeading = 1U << 10U,
  kDivision = 1U << 11U,  ///< is divided where it holds nothing but the paragraph that is
};

/// Whatever the case of the letters.
Name nameOf(std::string_view name);
unsigned traitsOf(Name name);
constexpr bool isCell(Name name) { return name == Name::td || name == Name::th; }

}  // namespace pluvo::formats::html
