#include "documents/docx/body_builder.h"

#include "errors/text.h"

#include <map>
#include <string_view>

namespace pluvo::docx {

using model::Look;

namespace {

std::string nameOf(std::uint8_t colour) {
  static const std::map<int, std::string> kNames = {
      {1, "black"}, {2, "blue"}, {3, "cyan"}, {4, "green"}, {7, "yellow"}};
  return kNames.at(colour);
}

std::string propertiesOf(Look look) {
  std::string result;
  if (look.hidden) result += "<w:vanish/>";
  if (look.highlight != 0) result += "<w:highlight w:val=\"" + nameOf(look.highlight) + "\"/>";
  return result.empty() ? result : "<w:rPr>" + result + "</w:rPr>";
}

std::string elementOf(char16_t unit, bool inCode) {
  static const std::map<char16_t, std::string> kElements = {{u'\t', "<w:tab/>"},
                                                            {u'\v', "<w:br/>"},
                                                            {u'\f', "<w:br w:type=\"page\"/>"},
                                                            {14, "<w:br w:type=\"column\"/>"},
                                                            {30, "<w:noBreakHyphen/>"},
                                                            {31, "<w:softHyphen/>"}};
  if (const auto found = kElements.find(unit); found != kElements.end()) return found->second;
  const std::string name = inCode ? "w:instrText" : "w:t";
  return "<" + name + " xml:space=\"preserve\">" + errors::utf8({&unit, 1}) + "</" + name + ">";
}

}  // namespace

void BodyBuilder::append(char16_t unit, Look look) {
  if (unit == text::kParagraphMark) return paragraph(look);
  run(elementOf(unit, !inCode_.empty() && inCode_.back()), look);
}

bool BodyBuilder::beginField(Look look) {
  fieldCharacter("begin", look);
  inCode_.push_back(true);
  return true;
}

bool BodyBuilder::separateField(Look look) {
  fieldCharacter("separate", look);
  inCode_.back() = false;
  return true;
}

bool BodyBuilder::endField(Look look) {
  fieldCharacter("end", look);
  inCode_.pop_back();
  return true;
}

void BodyBuilder::beginTable() {
  intoCell();
  cells_.push_back(Cell::noRow);
  body_ += "<w:tbl><w:tblPr/><w:tblGrid/>";
}

void BodyBuilder::cellMark(Look look) {
  paragraph(look);
  body_ += "</w:tc>";
  cells_.back() = Cell::betweenCells;
}

void BodyBuilder::rowMark(Look) {
  ++length_;
  body_ += "</w:tr>";
  cells_.back() = Cell::noRow;
}

void BodyBuilder::endTable() {
  body_ += "</w:tbl>";
  cells_.pop_back();
}

void BodyBuilder::sectionMark(Look look) { paragraph(look, "<w:sectPr/>"); }

void BodyBuilder::paragraph(Look look, const std::string& properties) {
  intoCell();
  ++length_;
  const std::string all = propertiesOf(look) + properties;
  body_ += "<w:p>" + (all.empty() ? "" : "<w:pPr>" + all + "</w:pPr>") + runs_ + "</w:p>";
  runs_.clear();
}

void BodyBuilder::intoCell() {
  if (cells_.empty() || cells_.back() == Cell::open) return;
  if (cells_.back() == Cell::noRow) body_ += "<w:tr>";
  body_ += "<w:tc>";
  cells_.back() = Cell::open;
}

/// Joins the run before where that looks the same.
void BodyBuilder::run(const std::string& content, Look look) {
  ++length_;
  constexpr std::string_view kEnd = "</w:r>";
  const std::string properties = propertiesOf(look);
  if (!runs_.empty() && properties == lastProperties_) {
    runs_.insert(runs_.size() - kEnd.size(), content);
  } else {
    runs_.append("<w:r>").append(properties).append(content).append(kEnd);
  }
  lastProperties_ = properties;
}

void BodyBuilder::fieldCharacter(const char* type, Look look) {
  run("<w:fldChar w:fldCharType=\"" + std::string(type) + "\"/>", look);
}

}  // namespace pluvo::docx
