#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace pluvo::formats::html {

/// The declarations of an element, as far as they decide its text or its looks in a window.
struct Style {
  enum class Special : std::uint8_t {
    none,
    fieldBegin,
    fieldSeparator,
    fieldEnd,
    footnotes,  ///< lists of texts that are not main text …
    endnotes,
    comments,
    header,
    footer,
    note,          ///< … and one of them
    commentPlace,  ///< of a comment
    lineBreak,
    listLabel,
  };
  enum class Align : std::uint8_t { start, centre, end };

  std::optional<bool> display;  ///< false: none
  std::optional<bool> msoHidden;
  std::optional<bool> preformatted;
  std::optional<std::uint8_t> background;  ///< Word's colour index, 0 for none
  std::optional<std::uint8_t> highlight;
  std::optional<bool> bold, italic, underlined, struck, rightToLeft;
  std::optional<Align> align;
  Special special = Special::none;
  std::uint8_t tabs = 0;  ///< that the element stands for
  bool isSpaceRun = false;
  bool isNoteReference = false;
  bool isEndnoteReference = false;
  bool breaksPage = false;
  bool breaksColumn = false;
  bool breaksSection = false;
  bool hasOthers = false;  ///< than those of a highlight

  bool hidden() const { return (display && !*display) || msoHidden.value_or(false); }
  std::optional<std::uint8_t> colour() const { return highlight ? highlight : background; }
  /// Whether anything is said.
  bool saysNothing() const;
  /// The properties of another hold against these.
  void takeOver(const Style& other);
};

/// Of the declarations of an attribute, or of a rule.
Style styleOf(std::string_view declarations);

/// Calls visit(whole, name, value) for each declaration, the name and the value without blanks around them.
template <class Visit>
void forEachDeclaration(std::string_view declarations, Visit visit);

/// Word's name for the colour of a highlight.
std::string_view nameOfColour(std::uint8_t colour);
/// Nothing where it is none of Word's 16; 0 for none and transparent.
std::optional<std::uint8_t> colourNamed(std::string_view value);

std::string_view withoutBlanks(std::string_view text);

template <class Visit>
void forEachDeclaration(std::string_view declarations, Visit visit) {
  std::size_t begin = 0;
  char quote = 0;
  int depth = 0;
  for (std::size_t at = 0; at <= declarations.size(); ++at) {
    const char c = at < declarations.size() ? declarations[at] : ';';
    const bool isLast = at == declarations.size();
    if (!isLast && quote != 0) {
      if (c == quote) quote = 0;
      continue;
    }
    if (!isLast && (c == '"' || c == '\'')) quote = c;
    if (c == '(') ++depth;
    if (c == ')' && depth > 0) --depth;
    if (c != ';' || (depth > 0 && !isLast)) continue;
    const std::string_view whole = declarations.substr(begin, at - begin);
    begin = at + 1;
    const std::size_t colon = whole.find(':');
    if (colon == whole.npos) continue;
    visit(whole, withoutBlanks(whole.substr(0, colon)), withoutBlanks(whole.substr(colon + 1)));
  }
}

}  // namespace pluvo::formats::html
