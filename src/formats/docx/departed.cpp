#include "departed.h"

namespace pluvo::docx {

using text::Span;

void NoteFates::add(const BodyMap& map, const document::Dropped& dropped) {
  for (const BodyMap::Reference& reference : map.references)
    add(reference, dropped.hold({reference.position, reference.position + 1}));
}

void NoteFates::addGone(const BodyMap& map) {
  for (const BodyMap::Reference& reference : map.references) add(reference, true);
}

void NoteFates::add(const BodyMap::Reference& reference, bool goes) {
  const auto [place, isNew] = allGo_.emplace(std::pair(reference.kind, reference.id), goes);
  if (!isNew) place->second = place->second && goes;
}

DepartedNotes NoteFates::departed() const {
  DepartedNotes notes;
  for (const auto& [reference, goes] : allGo_) {
    if (!goes) continue;
    const auto& [kind, id] = reference;
    (kind == Name::footnoteReference  ? notes.footnotes
     : kind == Name::endnoteReference ? notes.endnotes
                                      : notes.comments)
        .insert(id);
  }
  return notes;
}

Departed::Departed(const BodyMap& map, const document::Dropped& dropped, const DepartedNotes& notes,
                   const std::function<const BookmarkReferences&()>& references)
    : notes_(notes) {
  for (const BodyMap::CommentMarker& marker : map.commentMarkers)
    if (notes.comments.contains(marker.id)) places_.push_back(marker.position);
  if (dropped.empty()) return;

  std::map<std::string, int> uses;
  std::vector<const BodyMap::Bookmark*> candidates;
  for (const BodyMap::Bookmark& bookmark : map.bookmarks) {
    ++uses[bookmark.id];
    // A bookmark between two characters lay in the deleted text when both of them go.
    const bool isPlace = bookmark.from == bookmark.to;
    const Span around{bookmark.from - (isPlace ? 1 : 0), bookmark.to + (isPlace ? 1 : 0)};
    if (bookmark.closed && dropped.hold(around)) candidates.push_back(&bookmark);
  }
  for (const BodyMap::Bookmark* bookmark : candidates) {
    if (uses[bookmark->id] != 1 || references().contain(bookmark->name)) continue;
    bookmarks_.insert(bookmark->id);
    places_.insert(places_.end(), {bookmark->from, bookmark->to});
  }
}

bool Departed::goes(const Marker& marker) const {
  switch (marker.name) {
    case Name::bookmarkStart:
    case Name::bookmarkEnd:
      return bookmarks_.contains(marker.id);
    case Name::commentRangeStart:
    case Name::commentRangeEnd:
      return notes_.comments.contains(marker.id);
    default:
      return false;
  }
}

}  // namespace pluvo::docx
