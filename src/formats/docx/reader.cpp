#include "reader.h"

#include "content_reader.h"

namespace pluvo::docx {

ReadBody readBody(base::ByteSpan part, const std::string& partName, const Styles& styles) {
  ContentReader reader(part.size(), styles);
  BodyWalker walker(part, partName, reader);
  reader.follow(walker);
  while (walker.step()) {
  }
  return reader.finish();
}

}  // namespace pluvo::docx
