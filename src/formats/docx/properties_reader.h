#pragma once

#include "text_reader.h"
#include "walk.h"

namespace pluvo::docx {

/// Reads what runs, paragraphs, controls and formulas say of themselves. Each call is made with the element
/// just begun, and goes to its end.
class PropertiesReader {
 public:
  explicit PropertiesReader(Walk& walk) : walk_(walk), scanner_(walk.scanner) {}

  /// w:rPr or w:pPr. Holds until the next call.
  const Properties& read(Name kind, xml::Token token);
  const Properties& last() const { return properties_; }
  ControlProperties readControl(xml::Token token);
  /// Looks for the places of Word's run properties: after a math run's own ones, and in those of operators.
  /// Holds until the next call.
  const Formula& readFormula(xml::Token token, TextReader& text);

 private:
  void readLook(RunLook& look, xml::Token token);
  void scanLook(RunLook& look);
  void readBinding(Binding& binding, Name name, xml::Token token);

  Walk& walk_;
  xml::Scanner& scanner_;
  Properties properties_;
  Formula formula_;
  LookMemory looks_;
};

}  // namespace pluvo::docx
