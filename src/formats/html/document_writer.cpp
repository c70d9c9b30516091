#include "document_writer.h"

#include "document/kept.h"
#include "writer.h"

#include <algorithm>
#include <utility>

namespace pluvo::formats::html {

namespace {

/// The other texts that were edited, as new bytes, and those that went with their references.
std::vector<Cut> cutsOf(const Page& page, const OldDocument& old, const document::Document& document) {
  const document::Story& mainText = document.mainText();
  const document::Kept kept(mainText);
  const bool hasOthers = document.count() > 1;
  StyleSheet sheet = old.sheet;
  std::vector<Cut> cuts;
  for (std::size_t i = 0; i < old.places.size(); ++i) {
    const StoryPlace& place = old.places[i];
    if (mainText.wasEdited() && place.anchor && !kept.holds(*place.anchor)) {
      cuts.push_back({place.part.whole});
    } else if (hasOthers && document.story(i + 1).wasEdited()) {
      Writer writer(page, place.partIn(sheet), place.map, document.story(i + 1), {});
      std::string bytes;
      for (const base::ByteSpan part : writer.write()) bytes.append(part.begin(), part.end());
      cuts.push_back({place.part.content, false, std::move(bytes)});
    }
  }
  return cuts;
}

}  // namespace

void writeDocument(const Page& page, const OldDocument& old, const document::Document& document,
                   base::Output& out) {
  std::vector<Cut> cuts;
  if (!old.places.empty()) cuts = cutsOf(page, old, document);
  Writer writer(page, old.mainText.partOf(page), old.mainText, document.mainText(), std::move(cuts));
  page.write(writer.write(), out);
}

}  // namespace pluvo::formats::html
