#pragma once

#include "properties_reader.h"
#include "run_ways.h"
#include "text_reader.h"
#include "text_ways.h"
#include "walk.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace pluvo::docx {

/// Walks the contents of runs: text, the elements that are characters, and the marks of fields.
class RunWalker {
 public:
  RunWalker(Walk& walk, PropertiesReader& properties, TextReader& text)
      : walk_(walk), scanner_(walk.scanner), properties_(properties), text_(text), ways_(walk) {}

  /// To be told before the first token where the walk is for a search.
  void isForSearch() { textWays_.emplace(walk_, properties_); }
  /// To be told of every token before it is taken.
  void follow(xml::Token token) { textWays_ ? textWays_->follow(token) : ways_.follow(token); }

  enum class Enters : std::uint8_t { nothing, guidedText, outside };
  /// Takes an element, and tells whether the walk has to enter it, as what.
  Enters take(Name name, xml::Token token);

 private:
  void text(xml::Token token);
  void tell(const TextElement& element);
  void fieldMark(xml::Token token);
  void reference(char16_t unit, xml::Token token, Name name);
  void single(char16_t unit, xml::Token token, Name name, std::string_view reference = {});
  void singleFrom(Offset begin, char16_t unit, xml::Token token, Name name, std::string_view reference);
  Enters alternatives(xml::Token token);
  Enters picture(Name name, xml::Token token);
  Enters ruby(xml::Token token);
  bool rubyStandsAlone();

  Walk& walk_;
  xml::Scanner& scanner_;
  PropertiesReader& properties_;
  TextReader& text_;
  RunWays ways_;
  std::optional<TextWays> textWays_;  ///< then the others are not used
};

}  // namespace pluvo::docx
