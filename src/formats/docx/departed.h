#pragma once

#include "document/kept.h"
#include "package.h"
#include "reader.h"

#include <set>
#include <string>

namespace pluvo::docx {

/// What an edit takes along because its place in the text goes: notes and comments that are referred to
/// nowhere else, and bookmarks that lay in the deleted text and that no field or link refers to.
class Departed {
 public:
  Departed(const BodyMap& map, const document::EditScript& script, const Package& package,
           base::ByteSpan mainPart);

  /// Of the markers of bookmarks and comments.
  bool goes(const Marker& marker) const;
  /// Places outside the deleted text where such markers stand, just before these positions.
  const std::vector<Position>& places() const { return places_; }

  const std::set<std::string>& footnotes() const { return footnotes_; }
  const std::set<std::string>& endnotes() const { return endnotes_; }
  const std::set<std::string>& comments() const { return comments_; }

 private:
  void findNotes(const BodyMap& map);
  void findBookmarks(const BodyMap& map, const Package& package, base::ByteSpan mainPart);

  document::Dropped dropped_;
  std::vector<Position> places_;
  std::set<std::string> footnotes_;
  std::set<std::string> endnotes_;
  std::set<std::string> comments_;
  std::set<std::string> bookmarks_;
};

}  // namespace pluvo::docx
