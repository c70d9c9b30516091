#pragma once

#include "document/story.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace pluvo::document {

/// A document in memory: its stories, each a text of its own, main text first.
class Document {
 public:
  /// At least main text, which comes first. Without a medium the file holds everything.
  explicit Document(std::vector<Content> stories, std::shared_ptr<const Medium> medium = nullptr);
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  Story& mainText() { return *stories_.front(); }
  const Story& mainText() const { return *stories_.front(); }
  std::size_t count() const { return stories_.size(); }
  Story& story(std::size_t i) { return *stories_[i]; }
  const Story& story(std::size_t i) const { return *stories_[i]; }
  /// The number of the first story of a kind, from i on; count() where there is none.
  std::size_t firstOf(word::WdStoryType kind, std::size_t i = 0) const;

  /// Whether any story was edited since the document was read or last saved.
  bool changed() const;
  /// For whoever wrote the document into its file.
  void saved();

  using Snapshot = std::vector<Story::Snapshot>;
  Snapshot snapshot() const;
  /// See Story::restore.
  void restore(Snapshot snapshot);

  /// Of every story; none where null. Outlives the document or is taken away first.
  void observer(Observer* observer);

 private:
  std::shared_ptr<const Medium> medium_;
  std::vector<std::unique_ptr<Story>> stories_;
};

}  // namespace pluvo::document
