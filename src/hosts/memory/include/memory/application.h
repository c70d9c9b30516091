#pragma once

#include "memory/document.h"
#include "memory/opener.h"
#include "word/word_processor.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace pluvo::memory {

/// Is told which documents are open, in order to show them.
class ApplicationObserver {
 public:
  virtual ~ApplicationObserver() = default;
  virtual void opened(const OpenedFile& /*file*/) {}
  /// It came to the front.
  virtual void activated(const std::shared_ptr<MemoryDocument>& /*document*/) {}
  /// It still has its text.
  virtual void closing(const std::shared_ptr<MemoryDocument>& /*document*/) {}
};

/// The word processor of documents in memory: which are open, and which is in front.
class MemoryApplication : public word::Application {
 public:
  /// Without an opener, Documents.Open is a Fault 4605.
  explicit MemoryApplication(std::shared_ptr<DocumentOpener> opener = nullptr);
  MemoryApplication(const MemoryApplication&) = delete;
  MemoryApplication& operator=(const MemoryApplication&) = delete;
  ~MemoryApplication() override;

  /// Fault 4248 when no document is open.
  std::shared_ptr<word::Document> ActiveDocument() override;
  /// The selection of the active document.
  std::shared_ptr<word::Selection> Selection() override;
  /// To be used no longer than this. The active document is the last.
  std::shared_ptr<word::Documents> Documents() override;
  /// To be used no longer than this. A folder that was not set is a Fault 4605.
  std::shared_ptr<word::Options> Options() override;
  std::u16string PathSeparator() override { return u"/"; }

  void defaultFilePath(word::WdDefaultFilePath kind, std::u16string folder) {
    defaultFolders_[kind] = std::move(folder);
  }
  const std::u16string& defaultFilePath(word::WdDefaultFilePath kind) const;

  /// Opens a document in front of the others. One without a file is not read-only and cannot be saved (Fault
  /// 4605).
  void add(std::shared_ptr<MemoryDocument> document, std::shared_ptr<DocumentFile> file = nullptr);
  /// Opens the file, or brings it to the front when it is open, under whatever name.
  std::shared_ptr<MemoryDocument> open(const std::string& path);
  /// Brings an open document to the front; Fault 5941 when it is not one of these.
  void activate(const std::shared_ptr<MemoryDocument>& document);
  void save(const MemoryDocument& document);
  /// Closes a document without saving; the one that was in front before comes to the front.
  void close(const std::shared_ptr<MemoryDocument>& document);
  /// The same, but the document keeps its text, for its other owners.
  void remove(const std::shared_ptr<MemoryDocument>& document);
  bool isReadOnly(const MemoryDocument& document) const;

  /// None where null. Outlives this or is taken away first.
  void observer(ApplicationObserver* observer) { observer_ = observer; }

  std::shared_ptr<MemoryDocument> active() const;
  std::int32_t count() const { return static_cast<std::int32_t>(open_.size()); }
  /// Counted from 1; Fault 5941 where there is none.
  std::shared_ptr<MemoryDocument> document(std::int32_t index) const;

 private:
  OpenedFile take(const std::shared_ptr<MemoryDocument>& document);
  std::shared_ptr<MemoryDocument> removed(const std::shared_ptr<MemoryDocument>& document);
  DocumentFile* fileOf(const MemoryDocument& document) const;

  std::shared_ptr<DocumentOpener> opener_;
  ApplicationObserver* observer_ = nullptr;
  std::map<word::WdDefaultFilePath, std::u16string> defaultFolders_;
  /// The active document last.
  std::vector<OpenedFile> open_;
};

}  // namespace pluvo::memory
