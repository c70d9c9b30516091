#pragma once

#include "document/kept.h"
#include "reader.h"
#include "references.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace pluvo::docx {

/// The ids of notes and comments that went with the last of their references.
struct DepartedNotes {
  std::set<std::string> footnotes = {};
  std::set<std::string> endnotes = {};
  std::set<std::string> comments = {};
};

/// Finds them in the texts that may refer to them.
class NoteFates {
 public:
  /// A text, and what edits took of it.
  void add(const BodyMap& map, const document::Dropped& dropped);
  /// A text that went as a whole.
  void addGone(const BodyMap& map);
  DepartedNotes departed() const;

 private:
  void add(const BodyMap::Reference& reference, bool goes);

  std::map<std::pair<Name, std::string>, bool> allGo_;
};

/// The markers that an edit of one text takes along. They are those of comments that go, and of bookmarks in
/// the deleted text that no field or link refers to.
class Departed {
 public:
  /// Only where any bookmark goes, asks what bookmarks the document refers to.
  Departed(const BodyMap& map, const document::Dropped& dropped, const DepartedNotes& notes,
           const std::function<const BookmarkReferences&()>& references);

  /// Of the markers of bookmarks and comments.
  bool goes(const Marker& marker) const;
  /// Where such markers stand: just before these positions, some between two paragraphs.
  const std::vector<Position>& places() const { return places_; }

 private:
  const DepartedNotes& notes_;
  std::vector<Position> places_;
  std::set<std::string> bookmarks_;
};

}  // namespace pluvo::docx
