#pragma once

#include "document/live_ranges.h"
#include "document/story.h"
#include "text/positions.h"
#include "text/visible.h"

#include <windows.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pluvo::stand_in {

class Place;

/// A place that Text and finds leave out: hidden text, or where a content control begins or ends.
inline constexpr char16_t kUnseen = 0xE000;

/// What not every Word does, or not always.
struct Ways {
  bool runsMacros = false;        ///< of a file that is opened, unless it is told not to
  bool opensChanged = false;      ///< a file that was just opened has changes
  bool resetsForms = false;       ///< fields of a form that is protected again, unless told not to
  bool keepsDeleted = false;      ///< changes are tracked; ranges and finds see what was deleted
  bool snapsOutOfFields = false;  ///< a range that is to begin in a field begins before it
  bool hasWindows = false;        ///< one for each document, which goes with it
  bool eatsKeys = false;          ///< the loop of its own leaves no keys to others
  bool entersTable = true;        ///< of running objects, which Word does when it first loses the focus
  bool reads = false;             ///< documents are in reading view
  std::int32_t protectedViews = 0;
  std::int32_t story = 1;  ///< in which the selection stands
};
Ways& ways();

/// A file as Word would find it.
struct StoredFile {
  std::u16string text = {};
  std::u16string openPassword = {};
  std::u16string writePassword = {};
  std::int32_t protection = -1;
  std::u16string protectionPassword = {};
  bool readOnly = false;
  bool onDisk = false;        ///< the text is the disk's; the rest holds for it
  std::u16string blank = {};  ///< of a form: what a reset of its fields leaves
};

/// A text file's text as Word takes it. Every kind of line end is a paragraph mark, and the end has one in
/// any case. Fields and tables stand by their characters. A table's cells are of one paragraph and not empty.
document::Content documentContent(const std::u16string& text);

/// "7:0-5 2:8-9": colour, start and end of each highlighted run.
std::u16string highlights(const document::Story& model);

/// A document that is open: text in memory, edited and followed by its ranges in Word's way.
///
/// Here Word's way is not that of documents in memory. Text put in at the end of another range is not part of
/// it. Text that replaces other text belongs to the range that begins after it, and a range over exactly the
/// replaced text is left empty. Setting anything, even to what it was, leaves the document unsaved.
class OpenDocument {
 public:
  /// In the text, 19, 20 and 21 make fields, 7 ends a cell and 7 7 a row; see documentContent.
  OpenDocument(std::u16string path, StoredFile file);
  OpenDocument(const OpenDocument&) = delete;
  OpenDocument& operator=(const OpenDocument&) = delete;

  /// Error 5825 once the document is closed.
  document::Story& mainText();
  text::Position length() { return mainText().length(); }
  void close() { model_.reset(); }

  /// Error 4608 outside the text.
  void requirePosition(text::Position position);
  /// Error 6124 in a document that is protected in a way that lets no text be changed.
  void requireEditable() const;

  void replace(Place& place, const std::u16string& newText);
  void insertBefore(Place& place, const std::u16string& newText);
  void insertAfter(Place& place, const std::u16string& newText);
  void highlight(text::Span span, std::int32_t colour);

  /// The text with its paragraph marks, cell marks as Word gives them: 13 and 7.
  std::u16string visibleText(text::Span span);
  /// Every character, whatever the view shows.
  std::u16string allText() { return mainText().text().substring(0, length()); }
  std::u16string highlights() { return stand_in::highlights(mainText()); }

  std::u16string name() const { return path.substr(path.rfind(u'\\') + 1); }

  const std::u16string path;
  StoredFile file;
  bool saved = true;
  HWND window = nullptr;  ///< its own, where documents have such
  text::View view = text::View::results;
  std::vector<std::u16string> undoRecords;

  Place& selection() { return *selection_; }

 private:
  friend class Place;
  struct Before;
  void insert(Place& place, const std::u16string& newText, bool inFront);
  void follow(Place& editor, const Before& before, text::Span replaced, text::Span now);

  std::optional<document::Story> model_;
  std::vector<Place*> places_;
  std::unique_ptr<Place> selection_;
};

/// Where a range or the selection stands. The document must outlive it.
class Place {
 public:
  Place(OpenDocument& document, text::Span span);
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;
  ~Place() { std::erase(document_.places_, this); }

  /// Error 5825 once the document is closed.
  text::Span span() const {
    document_.mainText();
    return live_.span();
  }
  void set(text::Span span) { live_.set(span); }

 private:
  OpenDocument& document_;
  /// Stands where the model says, which is right where an edit left marks of fields or tables.
  document::LiveRange live_;
};

}  // namespace pluvo::stand_in
