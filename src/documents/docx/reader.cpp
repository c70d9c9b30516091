#include "reader.h"

#include "content_reader.h"

namespace pluvo::docx {

namespace {

/// The reader is told what the walker meets, and asks it where it is.
struct MainText {
  MainText(files::ByteSpan part, const std::string& partName, const Styles& styles)
      : reader(part.size(), styles, walker), walker(part, partName, reader) {}
  ContentReader reader;
  BodyWalker walker;
};

}  // namespace

ReadBody readBody(files::ByteSpan part, const std::string& partName, const Styles& styles) {
  MainText text(part, partName, styles);
  while (text.walker.step()) {
  }
  return text.reader.finish();
}

}  // namespace pluvo::docx
