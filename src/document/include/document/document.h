#pragma once

#include "document/story.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace pluvo::document {

/// A document in memory: its stories, each a text of its own, main text first.
class Document {
 public:
  /// At least main text, which comes first. Without a medium the file holds everything.
  explicit Document(std::vector<Content> stories, std::shared_ptr<const Medium> medium = nullptr);
  using Snapshot = std::vector<Story::Snapshot>;
  /// Another document, to be read: see Story.
  explicit Document(Snapshot snapshot);
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  Story& mainText() { return *stories_.front(); }
  const Story& mainText() const { return *stories_.front(); }
  std::size_t count() const { return stories_.size(); }
  Story& story(std::size_t i) { return *stories_[i]; }
  const Story& story(std::size_t i) const { return *stories_[i]; }
  /// The number of the first story of a kind, from i on; count() where there is none.
  std::size_t firstOf(word::WdStoryType kind, std::size_t i = 0) const;

  /// Whether a story went with the text that its anchors stood in: it is no longer shown, found or written.
  /// Going back brings it back. Costs little where the stories that hold anchors have not changed since.
  bool isGone(std::size_t i) const;

  /// Whether any story was edited since the document was read or last saved.
  bool changed() const;
  /// Called after the document was written into its file.
  void saved();

  Snapshot snapshot() const;
  /// See Story::restore.
  void restore(Snapshot snapshot);

  /// Of every story; none where null. Outlives the document or is taken away first.
  void observer(Observer* observer);

 private:
  /// The stories that hang on one story, and which of their anchors there were gone when it had this stamp.
  struct Holder {
    std::vector<text::Position> anchors;  ///< ascending
    std::uint64_t stamp = 0;
    std::vector<bool> gone;
  };
  /// The pages on which sections show a header or footer.
  struct Pages {
    std::vector<PageUse> uses;
    std::string part;
  };
  word::WdStoryType kindNow(std::size_t i) const;
  using Fates = std::unordered_map<std::size_t, bool>;  ///< of stories: whether they are gone
  bool isGone(std::size_t i, Fates& fates, std::size_t depth) const;
  bool isGone(const StoryAnchor& anchor) const;

  std::shared_ptr<const Medium> medium_;
  PartCount count_;
  std::vector<std::vector<std::size_t>> rivals_;  ///< of each story, the other versions of its text
  std::vector<Pages> pages_;                      ///< of each story
  mutable std::vector<Holder> holders_;           ///< as many as stories
  std::vector<bool> gone_;                        ///< of a copy, which stories have gone; else empty
  std::vector<std::unique_ptr<Story>> stories_;
};

}  // namespace pluvo::document
