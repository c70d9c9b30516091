#pragma once

#include "call_book.h"
#include "find_settings.h"
#include "open_document.h"

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace pluvo::stand_in {

/// Everything behind the objects of one running Word.
class World {
 public:
  /// The one of this process.
  static World& instance();

  CallBook calls;

  std::u16string version = u"16.0";
  bool visible = true;
  bool screenUpdating = true;
  bool smartCutPaste = true;
  std::map<std::int32_t, std::u16string> defaultPaths;

  /// What the user answers when Word asks; without an answer he cancels.
  std::deque<std::u16string> passwords;    ///< to open a file
  std::deque<std::u16string> saveAsPaths;  ///< for a document that cannot be saved under its name

  /// Files by their path in small letters. Those that are nowhere here are looked for on the disk.
  std::map<std::u16string, StoredFile> files;
  StoredFile& fileAt(const std::u16string& path);

  /// The open documents in the order they were opened. Error 4248 where none is active.
  std::vector<std::shared_ptr<OpenDocument>> documents;
  std::shared_ptr<OpenDocument> active();
  void activate(const std::shared_ptr<OpenDocument>& document);

  /// Opens the file, or brings it to the front where it is open.
  std::shared_ptr<OpenDocument> open(const std::u16string& path, const std::u16string* openPassword,
                                     const std::u16string* writePassword, bool readOnly, bool revert);
  std::shared_ptr<OpenDocument> add(const std::u16string& path, const StoredFile& file);
  void save(OpenDocument& document);
  void close(const std::shared_ptr<OpenDocument>& document);

  /// The name of the undo record that is being made, and how many are open in one another.
  std::u16string undoRecord;
  std::int32_t undoLevel = 0;

  /// What the search dialog was last told; Selection.Find shares it, and a range's begins with it.
  FindSettings dialogFind;

  std::int32_t majorVersion() const;

  /// Closes everything and forgets all that was set.
  void reset();

  /// Word's main window; made when it is first asked for.
  HWND window();
  /// What it says at its top, where it was made.
  void show(const std::u16string& title);

 private:
  World() = default;
  void askPassword(const std::u16string& wanted, const std::u16string* given);
  StoredFile load(const std::u16string& path);

  std::shared_ptr<OpenDocument> active_;
  HWND window_ = nullptr;
};

}  // namespace pluvo::stand_in
