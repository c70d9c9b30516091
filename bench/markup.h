#pragma once

#include <random>
#include <string>

namespace pluvo::bench {

/// A document part as word processors write them: paragraphs of runs with properties, eight words to a run.
/// The same seed gives the same bytes.
inline std::string markup(std::size_t runs, unsigned seed = 1) {
  static constexpr const char* kWords[] = {"lessor", "lessee",  "rent", "shall",  "premises", "the",
                                           "of",     "payment", "term", "notice", "herein",   "court"};
  static constexpr const char* kProperties[] = {
      "", "<w:rPr><w:b/></w:rPr>", "<w:rPr><w:i/><w:sz w:val=\"22\"/></w:rPr>",
      "<w:rPr><w:rFonts w:ascii=\"Arial\" w:hAnsi=\"Arial\"/><w:color w:val=\"1F3864\"/></w:rPr>"};
  std::mt19937 random(seed);
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n<w:document "
      "xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\"><w:body>";
  for (std::size_t run = 0; run < runs; ++run) {
    if (run % 8 == 0) text += "<w:p><w:pPr><w:jc w:val=\"both\"/></w:pPr>";
    text += "<w:r>" + std::string(kProperties[random() % std::size(kProperties)]) +
            "<w:t xml:space=\"preserve\">";
    for (int word = 0; word < 8; ++word) text += std::string(kWords[random() % std::size(kWords)]) + " ";
    text += "</w:t></w:r>";
    if (run % 8 == 7 || run + 1 == runs) text += "</w:p>";
  }
  return text + "</w:body></w:document>";
}

}  // namespace pluvo::bench
