#pragma once

#include "run_memory.h"
#include "text_reader.h"
#include "walk.h"

#include <cstdint>
#include <string_view>

namespace pluvo::docx {

/// From run to run, where the bytes between their texts are known.
class RunWays {
 public:
  explicit RunWays(Walk& walk) : walk_(walk), scanner_(walk.scanner) {}

  /// Before the walk takes a token: whether it is the next on the way to the text of another run.
  void follow(xml::Token token) {
    if (followed_ != Followed::none) step(token);
  }
  /// Where a text begins, in a run with these properties.
  void remember(const Properties& properties);
  /// After a text: enters the next run where the way to it is known, and reads its text; null elsewhere.
  const TextElement* next(TextReader& reader);

 private:
  /// From a text to the text of the next run. Offsets are those from the first of the bytes.
  struct Way {
    std::string_view bytes;        ///< from after the end tag of the one to after the start tag of the other
    xml::Scope scope = 0;          ///< 0: none
    bool preservesAround = false;  ///< of the paragraph, or what else holds the runs
    bool preservesInRun = false;
    bool preserves = false;  ///< of the text
    bool hasProperties = false;
    Extent endTag;
    Extent run;   ///< its start tag
    Extent text;  ///< the text's start tag
    std::string_view textName;
    Extent whole;  ///< of its properties
    Properties properties;
  };
  /// How far the way is followed that begins after the text met last.
  enum class Followed : std::uint8_t { none, text, runClosed, runOpen, properties };

  void step(xml::Token token);
  void enterRun(Way& way, Offset begin);

  Walk& walk_;
  xml::Scanner& scanner_;
  Followed followed_ = Followed::none;
  Way way_;
  RunMemory<Way> ways_;
  TextElement element_;
};

}  // namespace pluvo::docx
