#include "reader.h"

#include "content_reader.h"

namespace pluvo::docx {

ReadBody readBody(base::ByteSpan part, const std::string& partName, const Styles& styles,
                  document::Purpose purpose) {
  ContentReader reader(part.size(), styles, purpose);
  BodyWalker walker(part, partName, reader);
  if (purpose == document::Purpose::search) walker.isForSearch();
  reader.follow(walker);
  while (walker.step()) {
  }
  return reader.finish();
}

}  // namespace pluvo::docx
