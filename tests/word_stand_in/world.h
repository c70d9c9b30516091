#pragma once

#include "call_book.h"
#include "open_document.h"

#include <windows.h>

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pluvo::stand_in {

using Document = std::shared_ptr<OpenDocument>;

/// What one Find object was told; it keeps that from one execution to the next.
struct FindSettings {
  std::u16string text;
  std::int32_t wrap = 0;
  /// Criteria that are on or off, as for the only searches possible here: literal ones towards the end, with
  /// case and whole words as asked.
  std::map<std::u16string, bool> flags = {
      {u"MatchCase", false},       {u"MatchWholeWord", false},
      {u"MatchPrefix", false},     {u"MatchSuffix", false},
      {u"Forward", true},          {u"MatchWildcards", false},
      {u"MatchSoundsLike", false}, {u"MatchAllWordForms", false},
      {u"Format", false},          {u"MatchPhrase", false},
      {u"IgnoreSpace", false},     {u"IgnorePunct", false},
      {u"MatchFuzzy", false},      {u"MatchKashida", false},
      {u"MatchDiacritics", false}, {u"MatchAlefHamza", false},
      {u"MatchControl", false},    {u"MatchByte", true},
  };
};

/// Where the first match stands in [span.from, span.to).
///
/// `^^` stands for itself, any other code is error 5692 here. A straight quote stands for the typographic
/// ones as well and the reverse, a blank for a non-breaking one. Whole word has no effect on a text of more
/// than one word. Nothing leaves its table cell, and no text is found nowhere.
std::optional<text::Span> find(OpenDocument& document, const FindSettings& settings, text::Span span);

/// Everything behind the objects of one running Word.
class World {
 public:
  /// The one of this process.
  static World& instance();

  CallBook calls;

  bool screenUpdating = true;
  bool smartCutPaste = true;
  Ways ways;
  std::int32_t automationSecurity = 1;
  std::int32_t macrosRun = 0;
  /// The files that were saved, and those in the list of recent ones.
  std::vector<std::u16string> savedFiles;
  std::vector<std::u16string> recentFiles;
  std::map<std::int32_t, std::u16string> defaultPaths;

  /// What the user answers when Word asks for a password to a file; without an answer he cancels.
  std::deque<std::u16string> passwords;

  /// Files in memory, or what holds for those on the disk.
  StoredFile& fileAt(const std::u16string& path) { return files_[path]; }

  /// The open documents in the order they were opened. Error 4248 where none is active.
  std::vector<Document> documents;
  Document active();
  void activate(const Document& document);

  /// Opens the file, or brings it to the front where it is open.
  Document open(const std::u16string& path);
  Document add(const std::u16string& path, const StoredFile& file);
  void save(OpenDocument& document);
  void close(const Document& document);

  /// The name of the undo record that is being made, and how many are open in one another.
  std::u16string undoRecord;
  std::int32_t undoLevel = 0;

  /// What the search dialog was last told; a range's find begins with it.
  FindSettings dialogFind;

  /// Closes everything and forgets all that was set.
  void reset();

  /// Word's main window; made when it is first asked for. The pane inside, which shows a document, gives the
  /// object for it to a program that asks as accessibility tools do.
  HWND window();
  /// What it says at its top, where it was made.
  void show(const std::u16string& title);

 private:
  World() = default;
  StoredFile load(const std::u16string& path);
  void askPassword(const std::u16string& wanted);

  std::map<std::u16string, StoredFile> files_;
  Document active_;
  HWND window_ = nullptr;
};

/// Text files on the disk as Word keeps them: UTF-8, each paragraph ended by CR LF.
std::optional<std::u16string> readFile(const std::u16string& path);
bool writeFile(const std::u16string& path, const std::u16string& text);

}  // namespace pluvo::stand_in
