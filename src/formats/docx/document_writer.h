#pragma once

#include "departed.h"
#include "identifiers.h"
#include "notes.h"
#include "parallel_rewriter.h"
#include "stories.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pluvo::docx {

/// Carries the edits of a document over to its parts. Boxes in a drawing are written before the story
/// around it, which then is written over bytes that have it already.
class DocumentWriter {
 public:
  /// All must outlive this.
  DocumentWriter(const Package& package, const Stories& stories, const document::Document& document,
                 std::function<std::string()> placeholderStyle);

  /// Writes the package with the parts that change.
  void write(base::Output& out);

 private:
  /// New bytes in the place of old ones.
  struct Exchange {
    Extent old;
    std::string bytes;
  };
  /// A story under edit, and the values that must outlive its new bytes.
  struct Edited {
    std::string bytes;  ///< with boxes within exchanged, and the way to them; empty where nothing is
    BodyMap map;
    std::unique_ptr<const Departed> departed;
    ParallelRewriter rewriter;
  };

  void findNotes();
  const document::Dropped& dropped(std::size_t story);
  const BookmarkReferences& references();
  bool isEdited(std::size_t number) const;
  bool isToBeWritten(const Site& site) const;
  void requireRoomInMemory() const;

  void writeParts();
  void writeMainPart();
  std::vector<Exchange> exchangesIn(const StoryPart& part, std::size_t around);
  std::optional<std::string> rewritten(const StoryPart& part, std::size_t at);
  std::vector<base::ByteSpan> rewrite(const StoryPart& part, const Site& site,
                                      const std::vector<Exchange>& exchanges, Edited& edited);

  const Package& package_;
  const Stories& stories_;
  const document::Document& document_;
  std::function<std::string()> placeholderStyle_;
  std::vector<const Site*> firstSites_;  ///< of each story
  DepartedNotes notes_;
  std::map<std::size_t, document::Dropped> dropped_;
  std::optional<BookmarkReferences> references_;
  ChangedParts changed_;
  // Of the part at hand:
  std::optional<Identifiers> identifiers_;
  std::vector<std::vector<std::size_t>> within_;  ///< the sites in none, and then those directly in each
  // Of the main part:
  Edited main_;
  std::vector<base::ByteSpan> mainPieces_;  ///< none where it stays as it is
};

}  // namespace pluvo::docx
