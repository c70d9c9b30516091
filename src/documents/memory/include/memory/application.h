#pragma once

#include "memory/document.h"
#include "word/word_processor.h"

#include <memory>
#include <vector>

namespace pluvo::memory {

/// The word processor of documents in memory: which are open, and which is in front.
class MemoryApplication : public word::Application {
 public:
  /// Fault 4248 when no document is open.
  std::shared_ptr<word::Document> ActiveDocument() override { return active(); }
  /// The selection of the active document.
  std::shared_ptr<word::Selection> Selection() override;

  /// Opens a document in front of the others.
  void add(std::shared_ptr<MemoryDocument> document);
  /// Brings an open document to the front; Fault 5941 when it is not one of these.
  void activate(const std::shared_ptr<MemoryDocument>& document);
  /// Closes a document without saving; the one that was in front before comes to the front.
  void close(const std::shared_ptr<MemoryDocument>& document);

  std::shared_ptr<MemoryDocument> active() const;
  /// The open documents, the active one last.
  const std::vector<std::shared_ptr<MemoryDocument>>& documents() const { return documents_; }

 private:
  void take(const std::shared_ptr<MemoryDocument>& document);

  std::vector<std::shared_ptr<MemoryDocument>> documents_;
};

}  // namespace pluvo::memory
