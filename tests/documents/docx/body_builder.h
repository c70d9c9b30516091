#pragma once

#include "model/content_builder.h"
#include "text/positions.h"

#include <string>
#include <vector>

namespace pluvo::docx {

/// Writes what it is told as the body of a main part; with the calls of model::ContentBuilder, so that a
/// notation can be made a Word document.
class BodyBuilder {
 public:
  void append(char16_t unit, model::Look look = {});
  bool beginField(model::Look look);
  bool separateField(model::Look look);
  bool endField(model::Look look);
  void beginTable();
  void cellMark(model::Look look);
  void rowMark(model::Look look);
  void endTable();
  void sectionMark(model::Look look);

  text::Position length() const { return length_; }
  std::size_t openFields() const { return inCode_.size(); }
  std::size_t openTables() const { return cells_.size(); }

  const std::string& body() const { return body_; }

 private:
  void paragraph(model::Look look, const std::string& properties = {});
  void intoCell();
  void run(const std::string& content, model::Look look);
  void fieldCharacter(const char* type, model::Look look);

  enum class Cell { noRow, betweenCells, open };

  std::string body_;
  std::string runs_;  ///< of the paragraph at hand
  std::string lastProperties_;
  std::vector<Cell> cells_;
  std::vector<bool> inCode_;
  text::Position length_ = 0;
};

}  // namespace pluvo::docx
