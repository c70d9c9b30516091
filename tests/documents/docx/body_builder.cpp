#include "documents/docx/body_builder.h"

#include "errors/text.h"

#include <stdexcept>
#include <string_view>

namespace pluvo::docx {

using model::Look;

namespace {

const char* nameOf(std::uint8_t colour) {
  switch (colour) {
    case 1:
      return "black";
    case 2:
      return "blue";
    case 3:
      return "cyan";
    case 4:
      return "green";
    case 7:
      return "yellow";
    default:
      throw std::invalid_argument("a colour without a name here");
  }
}

std::string propertiesOf(Look look) {
  std::string result;
  if (look.hidden) result += "<w:vanish/>";
  if (look.highlight != 0) result += "<w:highlight w:val=\"" + std::string(nameOf(look.highlight)) + "\"/>";
  return result.empty() ? result : "<w:rPr>" + result + "</w:rPr>";
}

std::string elementOf(char16_t unit, bool inCode) {
  switch (unit) {
    case u'\t':
      return "<w:tab/>";
    case u'\v':
      return "<w:br/>";
    case u'\f':
      return "<w:br w:type=\"page\"/>";
    case 14:
      return "<w:br w:type=\"column\"/>";
    case 30:
      return "<w:noBreakHyphen/>";
    case 31:
      return "<w:softHyphen/>";
    default: {
      const std::string name = inCode ? "w:instrText" : "w:t";
      return "<" + name + " xml:space=\"preserve\">" + errors::utf8({&unit, 1}) + "</" + name + ">";
    }
  }
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
