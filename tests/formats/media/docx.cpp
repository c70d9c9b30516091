#include "base/utf.h"
#include "docx/docx_format.h"
#include "formats/docx/document_builder.h"
#include "formats/docx/package_check.h"
#include "formats/media/media.h"
#include "support/notation_parser.h"

#include <map>
#include <utility>

namespace pluvo::formats {

namespace {

using document::Look;

/// Makes a notation the body of a main part: has the calls of document::ContentBuilder.
class BodyBuilder {
 public:
  void append(char16_t unit, Look look = {}) {
    if (unit == text::kParagraphMark) return paragraph(look);
    // A character of two units is one in UTF-8.
    if (base::isHighSurrogate(unit)) {
      ++length_;
      firstHalf_ = unit;
      return;
    }
    static const std::map<char16_t, std::string> kElements = {{u'\t', "<w:tab/>"},
                                                              {u'\v', "<w:br/>"},
                                                              {u'\f', "<w:br w:type='page'/>"},
                                                              {14, "<w:br w:type='column'/>"},
                                                              {30, "<w:noBreakHyphen/>"},
                                                              {31, "<w:softHyphen/>"}};
    const auto element = kElements.find(unit);
    const std::string name = !inCode_.empty() && inCode_.back() ? "w:instrText" : "w:t";
    run(element != kElements.end() ? element->second
                                   : "<" + name + " xml:space='preserve'>" +
                                         base::utf8(std::exchange(firstHalf_, {}) + unit) + "</" + name + ">",
        look);
  }
  bool beginField(Look look) { return inCode_.push_back(true), fieldMark("begin", look); }
  bool separateField(Look look) { return inCode_.back() = false, fieldMark("separate", look); }
  bool endField(Look look) { return inCode_.pop_back(), fieldMark("end", look); }
  void beginTable() {
    intoCell();
    cells_.push_back(Cell::noRow);
    body_ += "<w:tbl><w:tblPr/><w:tblGrid/>";
  }
  void cellMark(Look look) {
    paragraph(look);
    body_ += "</w:tc>";
    cells_.back() = Cell::betweenCells;
  }
  void rowMark(Look) {
    ++length_;
    body_ += "</w:tr>";
    cells_.back() = Cell::noRow;
  }
  void endTable() {
    body_ += "</w:tbl>";
    cells_.pop_back();
  }
  void sectionMark(Look look) { paragraph(look, "<w:sectPr/>"); }

  text::Position length() const { return length_; }
  std::size_t openFields() const { return inCode_.size(); }
  std::size_t openTables() const { return cells_.size(); }
  const std::string& body() const { return body_; }

 private:
  enum class Cell { noRow, betweenCells, open };

  static std::string propertiesOf(Look look, const std::string& more = "") {
    static const char* const kColours[] = {"", "black", "blue", "cyan", "green", "magenta", "red", "yellow"};
    std::string result = look.hidden ? "<w:vanish/>" : "";
    if (look.highlight != 0) result += "<w:highlight w:val='" + std::string(kColours[look.highlight]) + "'/>";
    return (result.empty() ? result : "<w:rPr>" + result + "</w:rPr>") + more;
  }

  void paragraph(Look look, const std::string& properties = "") {
    intoCell();
    ++length_;
    const std::string all = propertiesOf(look, properties);
    body_ += "<w:p>" + (all.empty() ? "" : "<w:pPr>" + all + "</w:pPr>") + runs_ + "</w:p>";
    runs_.clear();
  }

  void intoCell() {
    if (cells_.empty() || cells_.back() == Cell::open) return;
    body_ += cells_.back() == Cell::noRow ? "<w:tr><w:tc>" : "<w:tc>";
    cells_.back() = Cell::open;
  }

  /// Joins the run before where that looks the same.
  void run(const std::string& content, Look look) {
    ++length_;
    const std::string properties = propertiesOf(look);
    if (!runs_.empty() && properties == lastProperties_) {
      runs_.insert(runs_.rfind("</w:r>"), content);
    } else {
      runs_ += "<w:r>" + properties + content + "</w:r>";
    }
    lastProperties_ = properties;
  }

  bool fieldMark(const std::string& type, Look look) {
    run("<w:fldChar w:fldCharType='" + type + "'/>", look);
    return true;
  }

  std::string body_;
  std::string runs_;  ///< of the paragraph at hand
  std::string lastProperties_;
  std::u16string firstHalf_;
  std::vector<Cell> cells_;
  std::vector<bool> inCode_;
  text::Position length_ = 0;
};

std::optional<base::Bytes> asDocx(std::string_view notation, notation::Ranges& ranges) {
  BodyBuilder builder;
  ranges = notation::Parser(notation, builder).parse();
  return docx::documentOf(builder.body());
}

std::optional<base::Bytes> asDocxNote(std::string_view notation, notation::Ranges& ranges) {
  BodyBuilder builder;
  ranges = notation::Parser(notation, builder).parse();
  const auto note = [](int id, const std::string& inner) {
    return "<w:footnote w:id='" + std::to_string(id) + "'>" + inner + "</w:footnote>";
  };
  const auto reference = [](int id) {
    return "<w:r><w:footnoteReference w:id='" + std::to_string(id) + "'/></w:r>";
  };
  return docx::documentOf(
      docx::p(reference(2) + reference(3)),
      {{"word/footnotes.xml",
        "<w:footnotes xmlns:w='http://schemas.openxmlformats.org/wordprocessingml/2006/main'>" +
            note(3, docx::p(docx::run("three"))) + note(2, builder.body()) + "</w:footnotes>"}});
}

std::optional<base::Bytes> asDocxBox(std::string_view notation, notation::Ranges& ranges) {
  BodyBuilder builder;
  ranges = notation::Parser(notation, builder).parse();
  const std::string box = "<w:txbxContent>" + builder.body() + "</w:txbxContent>";
  return docx::documentOf(docx::p(docx::run("one") +
                                  "<w:r><mc:AlternateContent><mc:Choice Requires='wps'><w:drawing>" + box +
                                  "</w:drawing></mc:Choice><mc:Fallback><w:pict>" + box +
                                  "</w:pict></mc:Fallback></mc:AlternateContent></w:r>" + docx::run("two")));
}

std::string damage(const base::Bytes& before, const base::Bytes& after) {
  return docx::worsened(docx::faultsOf(before), docx::faultsOf(after));
}

}  // namespace

Medium docxMedium() { return {"docx", std::make_shared<docx::DocxFormat>(), asDocx, damage}; }
Medium docxNoteMedium() {
  Medium medium = {"docx note", std::make_shared<docx::DocxFormat>(), asDocxNote, damage};
  medium.place = document::Place::footnotes;
  return medium;
}
Medium docxBoxMedium() {
  Medium medium = {"docx box", std::make_shared<docx::DocxFormat>(), asDocxBox, damage};
  medium.place = document::Place::boxes;
  return medium;
}

}  // namespace pluvo::formats
