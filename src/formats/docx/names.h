#pragma once

#include "xml/scanner.h"
#include "xml/vocabulary.h"

#include <string>
#include <string_view>

namespace pluvo::docx {

/// The elements and attributes the room knows, whatever their prefix and whether transitional or strict.
enum class Name : xml::NameId {
  other = xml::kOtherName,
  // The body and what holds blocks.
  document,
  body,
  p,
  tbl,
  tr,
  tc,
  sdt,
  sdtContent,
  customXml,
  // What holds runs in a paragraph.
  hyperlink,
  ins,
  del,
  moveFrom,
  moveTo,
  smartTag,
  fldSimple,
  dir,
  bdo,
  alternateContent,
  choice,
  fallback,
  oMath,
  oMathPara,
  mathRun,
  mathRunProperties,
  mathControlProperties,
  // Runs and what stands in them.
  r,
  t,
  delText,
  instrText,
  delInstrText,
  tab,
  ptab,
  br,
  cr,
  noBreakHyphen,
  softHyphen,
  sym,
  fldChar,
  footnoteReference,
  endnoteReference,
  commentReference,
  ownMark,  ///< of a note or comment, in its own text
  drawing,
  pict,
  object,
  ruby,
  contentPart,
  drawingAnchor,
  // Content controls and text with a guide.
  sdtPr,
  lock,
  textControl,
  dateControl,
  comboBox,
  dropDownList,
  checkbox,
  rubyBase,
  guideText,
  dataBinding,
  listItem,
  // Texts beside the body, and what in drawings has text.
  header,
  footer,
  boxContent,
  entryBody,
  textPath,
  pictureName,
  drawingText,
  drawingParagraph,
  mathText,
  // Properties.
  pPr,
  pStyle,
  sectPr,
  pPrChange,
  rPr,
  rStyle,
  vanish,
  highlight,
  rPrChange,
  tblPr,
  tblGrid,
  trPr,
  tcPr,
  // Markers: elements without content that may stand anywhere among blocks and runs.
  bookmarkStart,
  bookmarkEnd,
  commentRangeStart,
  commentRangeEnd,
  permStart,
  permEnd,
  moveFromRangeStart,
  moveFromRangeEnd,
  moveToRangeStart,
  moveToRangeEnd,
  customXmlInsRangeStart,
  customXmlInsRangeEnd,
  customXmlDelRangeStart,
  customXmlDelRangeEnd,
  customXmlMoveFromRangeStart,
  customXmlMoveFromRangeEnd,
  customXmlMoveToRangeStart,
  customXmlMoveToRangeEnd,
  // Other parts.
  settings,
  documentProtection,
  writeProtection,
  styles,
  style,
  basedOn,
  docDefaults,
  rPrDefault,
  footnote,
  endnote,
  comment,
  commentEx,
  commentId,
  commentExtensible,
  docVar,
  person,
  presence,
  dataItem,
  relationships,
  relationship,
  types,
  typeDefault,
  typeOverride,
  // Attributes.
  val,
  type,
  id,
  name,
  instr,
  anchor,
  fldCharType,
  charCode,
  styleId,
  defaultStyle,
  edit,
  enforcement,
  hash,
  salt,
  cryptAlgorithmSid,
  cryptSpinCount,
  hashValue,
  saltValue,
  algorithmName,
  spinCount,
  requires_,
  space,
  relationType,
  target,
  targetMode,
  relationId,
  partName,
  extension,
  contentType,
  paraId,
  textId,
  exParaId,
  exParaIdParent,
  idParaId,
  idDurableId,
  extensibleDurableId,
  author,
  initials,
  personAuthor,
  userId,
  itemId,
  xpath,
  prefixMappings,
  storeItemId,
  displayText,
  value,
  description,
  title,
  alternativeText,
  pathText,
};

enum Space : xml::NamespaceId {
  kWord = 2,
  kRelationshipReference,
  kCompatibility,
  kMath,
  kWord14,
  kWordDrawing,
  kPackageRelationships,
  kContentTypes,
  kWord15,
  kWordCommentIds,
  kWordCommentsExtensible,
  kDrawingKnown,  ///< extensions whose alternative is chosen
  kDrawing,
  kPictures,
  kVml,
  kCustomXml,
};

const xml::Vocabulary& vocabulary();

inline Name nameOf(const xml::Scanner& scanner) { return static_cast<Name>(scanner.name()); }
inline const xml::Attribute* attribute(const xml::Scanner& scanner, Name name) {
  return scanner.attribute(static_cast<xml::NameId>(name));
}

/// An attribute's value; empty where it is missing.
std::string valueOf(const xml::Scanner& scanner, Name name);

/// Word's colour index of a w:highlight value, 0 for "none" and unknown values; and back.
std::uint8_t highlightIndex(std::string_view value);
std::string_view highlightValue(std::uint8_t index);

/// An on-off value as Word reads it: absent, "1", "true" and "on" are on.
bool isOn(std::string_view value);

}  // namespace pluvo::docx
