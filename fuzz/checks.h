#pragma once

#include "base/bytes.h"
#include "document/document.h"
#include "formats/docx/random_edits.h"
#include "formats/format.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

/// Checks and edits that the targets of all formats share.
namespace pluvo::fuzz {

inline void require(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "not so: %s\n", what);
  std::abort();
}

/// A new version that is refused is not saved, and so no fault, unless PLUVO_FUZZ_STRICT is set.
inline int refused(std::string_view what) {
  require(std::getenv("PLUVO_FUZZ_STRICT") == nullptr, what.data());
  return 0;
}

/// Edits of five bytes each; half of them are those of main text.
inline void edit(document::Document& document, base::ByteSpan program) {
  for (; program.size() >= 5; program = program.subspan(5)) {
    const auto place = static_cast<std::uint32_t>(program[0] | program[1] << 8U);
    const std::size_t story = program[4] < 0x80 ? 0 : program[4] / 5U % document.count();
    docx::editBySeed(document.story(story), {place, program[2], program[3], program[4]});
  }
}

/// Of the stories that are there.
inline std::vector<std::u16string> textsOf(const document::Document& document) {
  std::vector<std::u16string> texts;
  for (std::size_t i = 0; i < document.count(); ++i) {
    const document::Story& story = document.story(i);
    if (!document.isGone(i)) texts.push_back(story.text().substring(0, story.length()));
  }
  return texts;
}

/// Where looks are known of a story, they are of all its text.
inline void requireLooks(const formats::Source& source, const document::Document& document) {
  const auto looks = source.appearance();
  require(looks.size() <= document.count(), "looks of no story");
  for (std::size_t i = 0; i < looks.size(); ++i)
    require(looks[i].length() == 0 || looks[i].length() == document.story(i).length(),
            "looks of all the text");
}

}  // namespace pluvo::fuzz
