#pragma once

#include "word/enums.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>

/// The word processor as the engine sees it: the members of Word's object model that are used, under Word's
/// own names. A property is an overload pair: `Start()` reads, `Start(value)` writes.
///
/// Positions are signed 32-bit UTF-16 offsets into a story, most often main text; 0 is before the first
/// character. The paragraph mark is the single character 13. Every member may throw errors::Fault with one of
/// the numbers in faults.h.
namespace pluvo::word {

class Range;

/// Something the word processor does for a while: until this goes.
class Batch {
 public:
  virtual ~Batch() = default;
};

/// A text that counts its characters, words and so on.
class Counted {
 public:
  virtual ~Counted() = default;

 protected:
  friend class UnitCollection;
  /// How many units it touches, as Word counts them; a partial unit counts as one.
  virtual std::int32_t countOf(WdUnits unit) = 0;
  /// Whether there are no more than so many, where that is known sooner than the count.
  virtual bool isAtMost(WdUnits unit, std::int32_t most) { return countOf(unit) <= most; }
};

/// The count given to MoveStart and MoveEnd: a 32-bit value, or a reference to a 16-bit one. A binding passes
/// on which it was.
using MoveCount = std::variant<std::int32_t, std::int16_t*>;

constexpr std::int32_t valueOf(const MoveCount& count) {
  if (const auto* reference = std::get_if<std::int16_t*>(&count)) return **reference;
  return std::get<std::int32_t>(count);
}

/// A literal forward search bound to the range that handed it out. The criteria persist between executions.
class Find {
 public:
  virtual ~Find() = default;

  /// In characters, codes as they are written.
  static constexpr std::size_t kLongestText = 255;

  virtual void ClearFormatting() = 0;
  /// Fault 5854 for more than kLongestText. A text of one line.
  virtual void Text(const std::u16string& text) = 0;
  /// Beyond Word's own members: a text of any length and any number of lines, in the place of Text. A
  /// paragraph mark in it is found as a paragraph mark or a manual line break. Shared, because it is given
  /// anew for every find; not null.
  virtual void WholeText(std::shared_ptr<const std::u16string> text) = 0;
  virtual void Forward(bool value) = 0;
  virtual void MatchCase(bool value) = 0;
  virtual void MatchWholeWord(bool value) = 0;
  virtual void MatchWildcards(bool value) = 0;
  virtual void MatchSoundsLike(bool value) = 0;
  virtual void MatchAllWordForms(bool value) = 0;
  virtual void Wrap(WdFindWrap value) = 0;

  /// Searches from the range's Start: a collapsed range to the end of the document, a spanning one within
  /// itself. True: the range now spans exactly the match. False: the range is as the word processor leaves
  /// it.
  virtual bool Execute() = 0;
};

/// One of a range's collections (characters, words, sentences, paragraphs), so far as it is used.
class UnitCollection {
 public:
  UnitCollection(Counted& counted, WdUnits unit) : counted_(counted), unit_(unit) {}
  std::int32_t Count() const { return counted_.countOf(unit_); }
  bool isAtMost(std::int32_t most) const { return counted_.isAtMost(unit_, most); }

 private:
  Counted& counted_;
  WdUnits unit_;
};

/// A live pair Start <= End over one story; it follows its text when the document is edited elsewhere.
class Range : public Counted {
 public:
  virtual std::int32_t Start() = 0;
  virtual void Start(std::int32_t position) = 0;
  virtual std::int32_t End() = 0;
  virtual void End(std::int32_t position) = 0;
  virtual void SetRange(std::int32_t start, std::int32_t end) = 0;

  virtual std::u16string Text() = 0;
  virtual void Text(const std::u16string& text) = 0;

  UnitCollection Characters() { return {*this, wdCharacter}; }
  UnitCollection Words() { return {*this, wdWord}; }
  UnitCollection Sentences() { return {*this, wdSentence}; }
  UnitCollection Paragraphs() { return {*this, wdParagraph}; }

  /// Moves one end by so many units (negative: towards the top), stopping at the ends of the document, and
  /// returns the units moved.
  virtual std::int32_t MoveStart(WdUnits unit, MoveCount count) = 0;
  virtual std::int32_t MoveEnd(WdUnits unit, MoveCount count) = 0;

  virtual void Select() = 0;
  virtual void InsertBefore(const std::u16string& text) = 0;
  virtual void InsertAfter(const std::u16string& text) = 0;
  virtual std::int32_t Delete() = 0;
  virtual void HighlightColorIndex(std::int32_t colour) = 0;

  virtual std::shared_ptr<word::Find> Find() = 0;

  /// Beyond Word's own members: until the result goes, an edit within the range is one of all of it. That
  /// makes a difference where a text is there in versions that differ.
  virtual std::unique_ptr<Batch> beginBlock() { return nullptr; }

  virtual WdStoryType StoryType() = 0;
  /// The whole of the next story of the same kind; null after the last.
  virtual std::shared_ptr<Range> NextStoryRange() = 0;
};

class View {
 public:
  virtual ~View() = default;
  /// True: finds see field codes; false: they see field results.
  virtual void ShowFieldCodes(bool value) = 0;
  /// The view returns when the result is destroyed; null where it is not given back.
  virtual std::unique_ptr<Batch> keepFieldCodes() { return nullptr; }
};

class Window {
 public:
  virtual ~Window() = default;
  virtual std::shared_ptr<word::View> View() = 0;
};

class Selection : public Counted {
 public:
  virtual std::int32_t Start() = 0;
  /// Which of the document's texts it stands in; its positions are of that text.
  virtual WdStoryType StoryType() { return wdMainTextStory; }
  /// Beyond Word's own members: the number of that text in its document, see Document::nextStory.
  virtual std::int32_t story() { return 0; }
  /// An insertion point has the text of the character after it, and counts as one character.
  virtual std::u16string Text() = 0;
  UnitCollection Characters() { return {*this, wdCharacter}; }
  virtual void SetRange(std::int32_t start, std::int32_t end) = 0;
};

class Document {
 public:
  virtual ~Document() = default;
  /// In main text.
  virtual std::shared_ptr<word::Range> Range(std::int32_t start, std::int32_t end) = 0;
  virtual std::u16string Name() = 0;
  /// The folder, without a separator after it unless it is a root.
  virtual std::u16string Path() = 0;
  virtual std::shared_ptr<Window> ActiveWindow() = 0;
  virtual void Activate() = 0;

  /// Whether it was opened without the right to save it under its name.
  virtual bool ReadOnly() = 0;
  /// The password for changing the document. It is cleared before the user is asked about a read-only
  /// document, so that a copy saved under another name asks for none.
  virtual void WritePassword(const std::u16string& password) = 0;
  virtual WdProtectionType ProtectionType() = 0;
  /// Fault 5485 when the password is wrong.
  virtual void Unprotect(const std::u16string& password) = 0;
  /// With the word processor's default for resetting form fields.
  virtual void Protect(WdProtectionType type, const std::u16string& password) = 0;
  /// The whole of the first story of a kind; Fault 5941 where the document has none.
  virtual std::shared_ptr<word::Range> StoryRanges(WdStoryType kind) = 0;

  // Beyond Word's own members: stories by their numbers in the document, main text first, which is 0. A word
  // processor that does not number them has main text alone.
  /// The first story of these kinds that is still there, from a number on; nothing where there is none.
  virtual std::optional<std::int32_t> nextStory(StoryKinds kinds, std::int32_t from) {
    return from == 0 && (kinds & kMainTextAlone) != 0 ? std::optional<std::int32_t>(0) : std::nullopt;
  }
  virtual std::shared_ptr<word::Range> rangeIn(std::int32_t /*story*/, std::int32_t start, std::int32_t end) {
    return Range(start, end);
  }
  /// The position where it ends.
  virtual std::int32_t endOf(std::int32_t /*story*/) { return StoryRanges(wdMainTextStory)->End(); }

  /// Whether there are no unsaved changes.
  virtual bool Saved() = 0;
  virtual void Saved(bool saved) = 0;
  /// Whether text that is deleted stays, marked as deleted.
  virtual bool TrackRevisions() { return false; }
  /// Fault 5155 when it should be saved and cannot be under its name, and the user gave no other; the
  /// document is then still open.
  virtual void Close(bool saveChanges) = 0;
};

/// The open documents, counted from 1.
class Documents {
 public:
  virtual ~Documents() = default;
  virtual std::int32_t Count() = 0;
  virtual std::shared_ptr<Document> Item(std::int32_t index) = 0;
  /// Opens a file, or finds it open, and activates it. The word processor itself asks for passwords: Fault
  /// 4198 when the user gives none, 5408 when it is wrong.
  virtual std::shared_ptr<Document> Open(const std::u16string& fileName) = 0;
};

/// The word processor's settings.
class Options {
 public:
  virtual ~Options() = default;
  /// The folder, without a separator after it unless it is a root.
  virtual std::u16string DefaultFilePath(WdDefaultFilePath kind) = 0;
};

/// Why the document in front can neither be searched nor changed, as the user looks at it.
enum class Obstacle { none, protectedView, readingView };

/// The word processor's global object.
class Application {
 public:
  virtual ~Application() = default;
  virtual std::shared_ptr<Document> ActiveDocument() = 0;
  virtual std::shared_ptr<word::Selection> Selection() = 0;
  virtual std::shared_ptr<word::Documents> Documents() = 0;
  virtual std::shared_ptr<word::Options> Options() = 0;
  /// The separator between the folders of a path.
  virtual std::u16string PathSeparator() = 0;
  virtual Obstacle obstacle() { return Obstacle::none; }
  /// Whether text may still be there after it was deleted or replaced, as where changes are tracked.
  virtual bool mayKeepDeletedText() { return false; }

  // Each holds until its result goes and throws nothing; null where the word processor has nothing of the
  // kind.
  /// All edits until the result is destroyed are one step to undo.
  virtual std::unique_ptr<Batch> beginUndoStep() { return nullptr; }
  /// Meanwhile the word processor adds nothing of its own to edited text. It need not draw the text, unless
  /// the user is to see it.
  virtual std::unique_ptr<Batch> beginEdits(bool seen) {
    static_cast<void>(seen);
    return nullptr;
  }
  /// In the middle of edits the user is asked or told something: the edits so far are drawn.
  virtual std::unique_ptr<Batch> showEdits() { return nullptr; }
};

}  // namespace pluvo::word
