#pragma once

#include "properties_reader.h"
#include "text_reader.h"
#include "walk.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::docx {

/// From text to text for a search, which asks nothing of the tags between them. Where the bytes of the way
/// are known, it leads to the next run or paragraph. RunWays does so for an edit.
class TextWays {
 public:
  TextWays(Walk& walk, const PropertiesReader& properties);

  /// Before the walk takes a token: whether it is the next on the way to another text.
  void follow(xml::Token token) {
    if (followed_ != Followed::none) step(token);
  }
  /// Where a text begins.
  void remember();
  /// After a text: tells those that follow, as long as the ways are known.
  void goThrough(TextReader& reader);

 private:
  struct Way {
    std::string_view bytes;  ///< from after the end tag of the one to after the start tag of the other
    std::uint64_t last = 0;  ///< the last eight of them, since ways begin alike
    xml::Scope scope = 0;
    std::string closing;                             ///< the end tag of the text
    std::uint64_t closingWord = 0, closingMask = 0;  ///< the same as a number, where it is short
    std::size_t textTag = 0;                         ///< how many of the bytes are the text's start tag
    bool preservesAround = false;  ///< of what holds the runs, or the paragraphs where one is closed
    bool preservesInParagraph = false;
    bool preservesInRun = false;
    bool preserves = false;  ///< of the text
    TextWay told;
  };
  enum class Followed : std::uint8_t {
    none,
    text,
    runClosed,
    paragraphClosed,
    paragraphOpen,
    paragraphProperties,
    runOpen,
    properties
  };

  void step(xml::Token token);
  const Way* recall(std::string_view ahead) const;
  static bool closes(const Way& way, std::string_view ahead);
  bool fits(const Way& way) const;
  void enter(const Way& way);

  Walk& walk_;
  xml::Scanner& scanner_;
  const PropertiesReader& properties_;
  std::vector<Way> ways_;  ///< those met last
  std::size_t next_ = 0;   ///< to be forgotten, where there are as many as are kept
  /// How far the way is followed that begins after the text met last.
  Followed followed_ = Followed::none;
  Offset begin_ = 0;
  xml::Scope scope_ = 0;
  TextWay told_;
};

}  // namespace pluvo::docx
