#include "departed.h"

#include "references.h"

#include <map>

namespace pluvo::docx {

using text::Span;

Departed::Departed(const BodyMap& map, const document::EditScript& script, const Package& package,
                   base::ByteSpan mainPart) {
  if (map.references.empty() && map.commentMarkers.empty() && map.bookmarks.empty()) return;
  dropped_ = document::Dropped(script);
  if (dropped_.empty()) return;
  findNotes(map);
  findBookmarks(map, package, mainPart);
}

void Departed::findNotes(const BodyMap& map) {
  std::map<std::pair<Name, std::string>, bool> allGo;
  for (const BodyMap::Reference& reference : map.references) {
    const bool goes = dropped_.hold({reference.position, reference.position + 1});
    const auto [place, isNew] = allGo.emplace(std::pair(reference.kind, reference.id), goes);
    if (!isNew) place->second = place->second && goes;
  }
  for (const auto& [reference, goes] : allGo) {
    if (!goes) continue;
    const auto& [kind, id] = reference;
    (kind == Name::footnoteReference  ? footnotes_
     : kind == Name::endnoteReference ? endnotes_
                                      : comments_)
        .insert(id);
  }
  for (const BodyMap::CommentMarker& marker : map.commentMarkers) {
    if (comments_.contains(marker.id)) places_.push_back(marker.position);
  }
}

void Departed::findBookmarks(const BodyMap& map, const Package& package, base::ByteSpan mainPart) {
  std::map<std::string, int> uses;
  std::vector<const BodyMap::Bookmark*> candidates;
  for (const BodyMap::Bookmark& bookmark : map.bookmarks) {
    ++uses[bookmark.id];
    // A bookmark between two characters lay in the deleted text when both of them go.
    const bool isPlace = bookmark.from == bookmark.to;
    const Span around{bookmark.from - (isPlace ? 1 : 0), bookmark.to + (isPlace ? 1 : 0)};
    if (bookmark.closed && dropped_.hold(around)) candidates.push_back(&bookmark);
  }
  if (candidates.empty()) return;
  const BookmarkReferences references(package, mainPart);
  for (const BodyMap::Bookmark* bookmark : candidates) {
    if (uses[bookmark->id] == 1 && !references.contain(bookmark->name)) bookmarks_.insert(bookmark->id);
  }
}

bool Departed::goes(const Marker& marker) const {
  switch (marker.name) {
    case Name::bookmarkStart:
    case Name::bookmarkEnd:
      return bookmarks_.contains(marker.id);
    case Name::commentRangeStart:
    case Name::commentRangeEnd:
      return comments_.contains(marker.id);
    default:
      return false;
  }
}

}  // namespace pluvo::docx
