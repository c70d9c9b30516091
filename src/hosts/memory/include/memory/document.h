#pragma once

#include "document/content.h"
#include "document/document.h"
#include "document/live_ranges.h"
#include "document/medium.h"
#include "document/observer.h"
#include "text/positions.h"
#include "word/enums.h"
#include "word/word_processor.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pluvo::memory {

class MemoryApplication;

/// Is told what becomes of a document, in order to show it.
class DocumentObserver : public document::Observer {
 public:
  virtual void selected(const document::Story& /*story*/, text::Span /*span*/) {}
  /// Field codes show instead of results, or the reverse.
  virtual void viewChanged() {}
};

/// A word-processor document that lives in memory. Its ranges, find objects and windows keep it alive, but
/// not its text: once it is closed, whatever asks for that is a Fault 5825.
///
/// Positions outside the text are a Fault 4608.
class MemoryDocument : public word::Document, public std::enable_shared_from_this<MemoryDocument> {
 public:
  /// Main text comes first. Without a medium the document holds everything. The name is for reports; the
  /// path, bytes as the file system has them, is the opener's.
  static std::shared_ptr<MemoryDocument> create(std::vector<document::Content> stories,
                                                std::shared_ptr<const document::Medium> medium = nullptr,
                                                std::u16string name = {}, std::string path = {});
  /// The same of main text alone.
  static std::shared_ptr<MemoryDocument> create(document::Content mainText,
                                                std::shared_ptr<const document::Medium> medium = nullptr,
                                                std::u16string name = {}, std::string path = {});

  /// Another document of the same name, in no word processor, with a text as this one had it then and the
  /// same selection. A window shows it while another thread edits this one.
  std::shared_ptr<MemoryDocument> copy();

  std::shared_ptr<word::Range> Range(std::int32_t start, std::int32_t end) override;
  std::u16string Name() override { return name_; }
  std::u16string Path() override;
  std::shared_ptr<word::Window> ActiveWindow() override;
  /// Fault 5941 where the document is open in no word processor; so also Close.
  void Activate() override;

  bool ReadOnly() override;
  /// Documents in memory have no password for changing them: clearing it leaves them as they are, and setting
  /// one is a Fault 4605.
  void WritePassword(const std::u16string& password) override;
  word::WdProtectionType ProtectionType() override;
  /// Fault 4605 when the document is not protected.
  void Unprotect(const std::u16string& password) override;
  /// Resets no form field. Fault 4605 when the document is protected already.
  void Protect(word::WdProtectionType type, const std::u16string& password) override;
  /// The whole of the first story of that kind; Fault 5941 where there is none.
  std::shared_ptr<word::Range> StoryRanges(word::WdStoryType kind) override;
  std::optional<std::int32_t> nextStory(word::StoryKinds kinds, std::int32_t from) override;
  std::shared_ptr<word::Range> rangeIn(std::int32_t story, std::int32_t start, std::int32_t end) override;
  std::int32_t endOf(std::int32_t story) override;
  /// The whole of the first story of a kind, from a number on; null where there is none.
  std::shared_ptr<word::Range> storyRange(word::WdStoryType kind, std::size_t from);

  bool Saved() override;
  /// Goes by the changes alone: Fault 4605.
  void Saved(bool saved) override;
  void Close(bool saveChanges) override;

  const std::string& path() const { return path_; }

  bool isOpen() const { return open_.has_value(); }
  /// Gives the text back. Saving comes before, and is the opener's.
  void close() { open_.reset(); }

  document::Document& stories() { return open().stories; }
  document::Story& mainText() { return stories().mainText(); }
  /// The user's selection, or the insertion point, and the story it lies in.
  text::Span selection() { return open().selection->span(); }
  std::size_t selectedStory() { return open().selectedStory; }
  /// Sets the start, then the end: an inverted pair collapses at its end.
  void select(text::Span span) { select(selectedStory(), span); }
  void select(std::size_t story, text::Span span);

  /// The view of finds, texts and counts.
  text::View view() const { return view_; }
  void showFieldCodes(bool value);

  /// None where null. Outlives the document or is taken away first.
  void observer(DocumentObserver* observer);
  /// The document has gone on under another path, bytes as the file system has them.
  void moveTo(std::string path);

  /// Whether a password lifts the protection.
  using PasswordCheck = std::function<bool(const std::u16string& password)>;
  /// A document protected in whatever way refuses every edit (Fault 6124). Without a check any password lifts
  /// the protection.
  word::WdProtectionType protection() const { return protection_; }
  void protect(word::WdProtectionType type, PasswordCheck check = {});
  /// Lifts the protection where the password does; whether it did.
  bool unprotect(const std::u16string& password);

  /// Whether the document takes edits now.
  void requireEditable();
  /// The same of highlighting. An unknown colour is a Fault 5843.
  void requireHighlightable(std::int32_t colour);

 private:
  friend class MemoryApplication;

  struct Open {
    Open(std::vector<document::Content> contents, std::shared_ptr<const document::Medium> medium);
    explicit Open(document::Document::Snapshot snapshot);
    document::Document stories;
    std::size_t selectedStory = 0;
    std::optional<document::LiveRange> selection;
  };

  MemoryDocument() = default;
  [[noreturn]] static void refuseClosed();
  Open& open() {
    if (!open_) refuseClosed();
    return *open_;
  }
  MemoryApplication& application() const;

  std::optional<Open> open_;
  std::u16string name_;
  std::string path_;
  text::View view_ = text::View::results;
  word::WdProtectionType protection_ = word::wdNoProtection;
  PasswordCheck passwordCheck_;
  DocumentObserver* observer_ = nullptr;
  /// The word processor it is open in.
  MemoryApplication* application_ = nullptr;
};

}  // namespace pluvo::memory
