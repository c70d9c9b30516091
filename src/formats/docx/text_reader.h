#pragma once

#include "text_decoding.h"
#include "walk.h"

#include <string>
#include <string_view>

namespace pluvo::docx {

/// Reads the text of elements. Each call is made with the element just begun, and goes to its end; what it
/// gives holds until the next.
class TextReader {
 public:
  explicit TextReader(Walk& walk) : walk_(walk), scanner_(walk.scanner) {}

  /// The text of a run's element as its blanks are kept; it may be empty.
  const TextElement& read(xml::Token token);
  /// Tells plain text as an element's. Its blanks at both ends go where they are not preserved.
  void tell(TextElement& element, std::string_view text, Plainness plainness, bool preserved);

  /// Alternatives within a run are one element to the text: that of the chosen one.
  struct Alternative {
    TextElement text;
    char16_t picture = 0;  ///< that the chosen one is, whatever else is in it
  };
  const Alternative& readAlternatives();

  /// All text within a phonetic guide.
  const std::u16string& readGuide(xml::Token token);

  /// Gathers the text of several elements.
  void clear() { units_.clear(); }
  void add(xml::Token token);
  const std::u16string& units() const { return units_; }

 private:
  void collect(xml::Token token);
  void widen();

  Walk& walk_;
  xml::Scanner& scanner_;
  TextElement element_;
  Alternative alternative_;
  std::u16string units_;
  std::string_view plain_;                 ///< text collected in the place of units_
  Plainness plainness_ = Plainness::none;  ///< of plain_
  std::size_t tokens_ = 0;
  Extent token_;
};

/// Whether all these namespaces are understood, and there are any: of a choice among alternatives.
bool understood(const xml::Scanner& scanner, std::string_view prefixes);

/// The character that an element of a run is, 0 where it is none. Of a drawing, goes to its end.
char16_t characterOf(xml::Scanner& scanner, Name name, xml::Token token);

}  // namespace pluvo::docx
