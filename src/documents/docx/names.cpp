#include "names.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace pluvo::docx {

namespace {

constexpr xml::KnownNamespace kNamespaces[] = {
    {"http://schemas.openxmlformats.org/wordprocessingml/2006/main", kWord},
    {"http://purl.oclc.org/ooxml/wordprocessingml/main", kWord},
    {"http://schemas.openxmlformats.org/officeDocument/2006/relationships", kRelationshipReference},
    {"http://purl.oclc.org/ooxml/officeDocument/relationships", kRelationshipReference},
    {"http://schemas.openxmlformats.org/markup-compatibility/2006", kCompatibility},
    {"http://schemas.openxmlformats.org/officeDocument/2006/math", kMath},
    {"http://purl.oclc.org/ooxml/officeDocument/math", kMath},
    {"http://schemas.microsoft.com/office/word/2010/wordml", kWord14},
    {"http://schemas.openxmlformats.org/drawingml/2006/wordprocessingDrawing", kWordDrawing},
    {"http://purl.oclc.org/ooxml/drawingml/wordprocessingDrawing", kWordDrawing},
    {"http://schemas.openxmlformats.org/package/2006/relationships", kPackageRelationships},
    {"http://schemas.openxmlformats.org/package/2006/content-types", kContentTypes},
    {"http://schemas.microsoft.com/office/word/2012/wordml", kWord15},
    {"http://schemas.microsoft.com/office/word/2010/11/wordml", kWord15},
    {"http://schemas.microsoft.com/office/word/2016/wordml/cid", kWordCommentIds},
    {"http://schemas.microsoft.com/office/word/2018/wordml/cex", kWordCommentsExtensible},
    {"http://schemas.microsoft.com/office/word/2010/wordprocessingShape", kDrawingKnown},
    {"http://schemas.microsoft.com/office/word/2010/wordprocessingGroup", kDrawingKnown},
    {"http://schemas.microsoft.com/office/word/2010/wordprocessingCanvas", kDrawingKnown},
    {"http://schemas.microsoft.com/office/word/2010/wordprocessingInk", kDrawingKnown},
    {"http://schemas.microsoft.com/office/word/2010/wordprocessingDrawing", kDrawingKnown},
    {"http://schemas.microsoft.com/office/drawing/2010/main", kDrawingKnown},
    {"http://schemas.microsoft.com/office/drawing/2014/chartex", kDrawingKnown},
};

constexpr xml::NameId n(Name name) { return static_cast<xml::NameId>(name); }

constexpr xml::KnownName kNames[] = {
    {kWord, "document", n(Name::document)},
    {kWord, "body", n(Name::body)},
    {kWord, "p", n(Name::p)},
    {kWord, "tbl", n(Name::tbl)},
    {kWord, "tr", n(Name::tr)},
    {kWord, "tc", n(Name::tc)},
    {kWord, "sdt", n(Name::sdt)},
    {kWord, "sdtContent", n(Name::sdtContent)},
    {kWord, "customXml", n(Name::customXml)},
    {kWord, "hyperlink", n(Name::hyperlink)},
    {kWord, "ins", n(Name::ins)},
    {kWord, "del", n(Name::del)},
    {kWord, "moveFrom", n(Name::moveFrom)},
    {kWord, "moveTo", n(Name::moveTo)},
    {kWord, "smartTag", n(Name::smartTag)},
    {kWord, "fldSimple", n(Name::fldSimple)},
    {kWord, "dir", n(Name::dir)},
    {kWord, "bdo", n(Name::bdo)},
    {kCompatibility, "AlternateContent", n(Name::alternateContent)},
    {kCompatibility, "Choice", n(Name::choice)},
    {kCompatibility, "Fallback", n(Name::fallback)},
    {kMath, "oMath", n(Name::oMath)},
    {kMath, "oMathPara", n(Name::oMathPara)},
    {kMath, "r", n(Name::mathRun)},
    {kMath, "rPr", n(Name::mathRunProperties)},
    {kMath, "ctrlPr", n(Name::mathControlProperties)},
    {kWord, "r", n(Name::r)},
    {kWord, "t", n(Name::t)},
    {kWord, "delText", n(Name::delText)},
    {kWord, "instrText", n(Name::instrText)},
    {kWord, "delInstrText", n(Name::delInstrText)},
    {kWord, "tab", n(Name::tab)},
    {kWord, "ptab", n(Name::ptab)},
    {kWord, "br", n(Name::br)},
    {kWord, "cr", n(Name::cr)},
    {kWord, "noBreakHyphen", n(Name::noBreakHyphen)},
    {kWord, "softHyphen", n(Name::softHyphen)},
    {kWord, "sym", n(Name::sym)},
    {kWord, "fldChar", n(Name::fldChar)},
    {kWord, "footnoteReference", n(Name::footnoteReference)},
    {kWord, "endnoteReference", n(Name::endnoteReference)},
    {kWord, "commentReference", n(Name::commentReference)},
    {kWord, "drawing", n(Name::drawing)},
    {kWord, "pict", n(Name::pict)},
    {kWord, "object", n(Name::object)},
    {kWord, "ruby", n(Name::ruby)},
    {kWord, "contentPart", n(Name::contentPart)},
    {kWord14, "contentPart", n(Name::contentPart)},
    {kWordDrawing, "anchor", n(Name::drawingAnchor)},
    {kWord, "sdtPr", n(Name::sdtPr)},
    {kWord, "lock", n(Name::lock)},
    {kWord, "text", n(Name::textControl)},
    {kWord, "date", n(Name::dateControl)},
    {kWord, "comboBox", n(Name::comboBox)},
    {kWord, "dropDownList", n(Name::dropDownList)},
    {kWord14, "checkbox", n(Name::checkbox)},
    {kWord, "rubyBase", n(Name::rubyBase)},
    {kWord, "pPr", n(Name::pPr)},
    {kWord, "pStyle", n(Name::pStyle)},
    {kWord, "sectPr", n(Name::sectPr)},
    {kWord, "pPrChange", n(Name::pPrChange)},
    {kWord, "rPr", n(Name::rPr)},
    {kWord, "rStyle", n(Name::rStyle)},
    {kWord, "vanish", n(Name::vanish)},
    {kWord, "highlight", n(Name::highlight)},
    {kWord, "rPrChange", n(Name::rPrChange)},
    {kWord, "tblPr", n(Name::tblPr)},
    {kWord, "tblGrid", n(Name::tblGrid)},
    {kWord, "trPr", n(Name::trPr)},
    {kWord, "tcPr", n(Name::tcPr)},
    {kWord, "bookmarkStart", n(Name::bookmarkStart)},
    {kWord, "bookmarkEnd", n(Name::bookmarkEnd)},
    {kWord, "commentRangeStart", n(Name::commentRangeStart)},
    {kWord, "commentRangeEnd", n(Name::commentRangeEnd)},
    {kWord, "permStart", n(Name::permStart)},
    {kWord, "permEnd", n(Name::permEnd)},
    {kWord, "moveFromRangeStart", n(Name::moveFromRangeStart)},
    {kWord, "moveFromRangeEnd", n(Name::moveFromRangeEnd)},
    {kWord, "moveToRangeStart", n(Name::moveToRangeStart)},
    {kWord, "moveToRangeEnd", n(Name::moveToRangeEnd)},
    {kWord, "customXmlInsRangeStart", n(Name::customXmlInsRangeStart)},
    {kWord, "customXmlInsRangeEnd", n(Name::customXmlInsRangeEnd)},
    {kWord, "customXmlDelRangeStart", n(Name::customXmlDelRangeStart)},
    {kWord, "customXmlDelRangeEnd", n(Name::customXmlDelRangeEnd)},
    {kWord, "customXmlMoveFromRangeStart", n(Name::customXmlMoveFromRangeStart)},
    {kWord, "customXmlMoveFromRangeEnd", n(Name::customXmlMoveFromRangeEnd)},
    {kWord, "customXmlMoveToRangeStart", n(Name::customXmlMoveToRangeStart)},
    {kWord, "customXmlMoveToRangeEnd", n(Name::customXmlMoveToRangeEnd)},
    {kWord, "settings", n(Name::settings)},
    {kWord, "documentProtection", n(Name::documentProtection)},
    {kWord, "writeProtection", n(Name::writeProtection)},
    {kWord, "styles", n(Name::styles)},
    {kWord, "style", n(Name::style)},
    {kWord, "basedOn", n(Name::basedOn)},
    {kWord, "docDefaults", n(Name::docDefaults)},
    {kWord, "rPrDefault", n(Name::rPrDefault)},
    {kWord, "footnote", n(Name::footnote)},
    {kWord, "endnote", n(Name::endnote)},
    {kWord, "comment", n(Name::comment)},
    {kWord15, "commentEx", n(Name::commentEx)},
    {kWordCommentIds, "commentId", n(Name::commentId)},
    {kWordCommentsExtensible, "commentExtensible", n(Name::commentExtensible)},
    {kPackageRelationships, "Relationships", n(Name::relationships)},
    {kPackageRelationships, "Relationship", n(Name::relationship)},
    {kContentTypes, "Types", n(Name::types)},
    {kContentTypes, "Default", n(Name::typeDefault)},
    {kContentTypes, "Override", n(Name::typeOverride)},
    {kWord, "val", n(Name::val)},
    {kWord, "type", n(Name::type)},
    {kWord, "id", n(Name::id)},
    {kWord, "name", n(Name::name)},
    {kWord, "instr", n(Name::instr)},
    {kWord, "anchor", n(Name::anchor)},
    {kWord, "fldCharType", n(Name::fldCharType)},
    {kWord, "char", n(Name::charCode)},
    {kWord, "styleId", n(Name::styleId)},
    {kWord, "default", n(Name::defaultStyle)},
    {kWord, "edit", n(Name::edit)},
    {kWord, "enforcement", n(Name::enforcement)},
    {kWord, "hash", n(Name::hash)},
    {kWord, "salt", n(Name::salt)},
    {kWord, "cryptAlgorithmSid", n(Name::cryptAlgorithmSid)},
    {kWord, "cryptSpinCount", n(Name::cryptSpinCount)},
    {kWord, "hashValue", n(Name::hashValue)},
    {kWord, "saltValue", n(Name::saltValue)},
    {kWord, "algorithmName", n(Name::algorithmName)},
    {kWord, "spinCount", n(Name::spinCount)},
    {xml::kNoNamespace, "Requires", n(Name::requires_)},
    {xml::kXmlNamespace, "space", n(Name::space)},
    {xml::kNoNamespace, "Type", n(Name::relationType)},
    {xml::kNoNamespace, "Target", n(Name::target)},
    {xml::kNoNamespace, "TargetMode", n(Name::targetMode)},
    {xml::kNoNamespace, "Id", n(Name::relationId)},
    {xml::kNoNamespace, "PartName", n(Name::partName)},
    {xml::kNoNamespace, "Extension", n(Name::extension)},
    {xml::kNoNamespace, "ContentType", n(Name::contentType)},
    {kWord14, "paraId", n(Name::paraId)},
    {kWord14, "textId", n(Name::textId)},
    {kWord15, "paraId", n(Name::exParaId)},
    {kWord15, "paraIdParent", n(Name::exParaIdParent)},
    {kWordCommentIds, "paraId", n(Name::idParaId)},
    {kWordCommentIds, "durableId", n(Name::idDurableId)},
    {kWordCommentsExtensible, "durableId", n(Name::extensibleDurableId)},
};

constexpr std::array<std::string_view, 17> kHighlights = {
    "none",        "black",   "blue",       "cyan",     "green",    "magenta",
    "red",         "yellow",  "white",      "darkBlue", "darkCyan", "darkGreen",
    "darkMagenta", "darkRed", "darkYellow", "darkGray", "lightGray"};

}  // namespace

const xml::Vocabulary& vocabulary() {
  static const xml::Vocabulary known(kNamespaces, kNames);
  return known;
}

std::string valueOf(const xml::Scanner& scanner, Name name) {
  const xml::Attribute* const found = attribute(scanner, name);
  return found == nullptr ? std::string() : scanner.value(*found);
}

std::uint8_t highlightIndex(std::string_view value) {
  const auto* const found = std::find(kHighlights.begin(), kHighlights.end(), value);
  return found == kHighlights.end() ? 0 : static_cast<std::uint8_t>(found - kHighlights.begin());
}

std::string_view highlightValue(std::uint8_t index) {
  return index < kHighlights.size() ? kHighlights[index] : kHighlights[0];
}

bool isOn(std::string_view value) { return value == "1" || value == "true" || value == "on"; }

}  // namespace pluvo::docx
