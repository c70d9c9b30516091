#pragma once

#include "document/content.h"
#include "document/find_memory.h"
#include "document/live_ranges.h"
#include "document/measures.h"
#include "document/medium.h"
#include "document/observer.h"
#include "text/pieces.h"
#include "text/positions.h"
#include "text/search.h"
#include "word/enums.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pluvo::document {

struct Landing;
struct Removal;

/// The parts, pieces of text and runs of a layer, that edits brought into a document: its stories share one.
struct PartCount {
  /// About 400 MB. Sixteen million replaced words make as many.
  static constexpr std::size_t kMost = std::size_t{1} << 25U;
  std::size_t most = kMost;
  std::int64_t broughtIn = 0;  ///< less than none where edits joined parts
};

/// A text of a document under edit, main text or another. Its layers say what each character looks like and
/// belongs to. Live ranges and finds work over it. All edits go through here, under one policy for every
/// format (edit_policy.h). Knows no file and no format.
///
/// A span that does not lie in the text is a bug in the caller. A refused edit throws a Fault and changes
/// nothing:
/// - 5843: the new text has a character that the file cannot hold, or one that is no text (marks of cells and
///   fields, pictures, references);
/// - 5854: positions would no longer suffice;
/// - 4605: the file has no place for highlighting;
/// - 4198: a control is locked, or the file cannot be edited so at that place;
/// - 7: the edits would divide the text into too many parts.
class Story {
 public:
  /// Without a medium the file holds everything, and without a count the story has its own. Both outlive it.
  explicit Story(Content content, const Medium* medium = nullptr, PartCount* count = nullptr);
  struct Snapshot;
  /// Another story, to be read: as this one was then, without a file, and with nothing hanging on another.
  explicit Story(Snapshot snapshot);
  Story(const Story&) = delete;
  Story& operator=(const Story&) = delete;

  word::WdStoryType kind() const { return kind_; }
  const text::PieceText& text() const { return text_; }
  const text::RunMap<text::Visibility>& visibility() const { return visibility_; }
  const text::RunMap<std::uint8_t>& highlight() const { return highlight_; }
  const text::RunMap<Structure>& structure() const { return structure_; }
  const std::vector<Table>& tables() const { return nesting_->tables; }
  const std::vector<Field>& fields() const { return nesting_->fields; }
  const std::vector<Control>& controls() const { return nesting_->controls; }
  const std::vector<Restriction>& restrictions() const { return nesting_->restrictions; }
  const std::vector<StoryAnchor>& anchors() const { return anchors_; }
  /// The other versions of this text, which outlive all edits of it.
  void rivals(std::vector<const Story*> rivals) { rivals_ = std::move(rivals); }
  bool hasVersions() const { return !rivals_.empty(); }
  bool hasText(const Story& other) const;
  /// An edit within this span is one of all of it: whether another version holds the same is asked of the
  /// whole. Until none is given.
  void block(std::optional<text::Span> block) { block_ = block; }
  text::Position length() const { return text_.length(); }
  /// Whether it is nothing but text, all of it visible.
  bool isPlain() const {
    const Structure* const structure = structure_.onlyValue();
    const text::Visibility* const visibility = visibility_.onlyValue();
    return structure != nullptr && visibility != nullptr && *visibility == text::kEverywhere &&
           controls().empty() && *structure == Structure{};
  }

  /// The text of a span so far as the view shows it.
  std::u16string visibleText(text::Span span, text::View view) const;

  /// The first match that lies in the span wholly; see text::Search.
  std::optional<text::Span> find(const Query& query, text::Span span, text::View view) {
    return finds_.find(query, span, view);
  }
  text::Position count(text::Span span, word::WdUnits unit, text::View view) const {
    return measures_.count(span, unit, view);
  }
  text::Move move(text::Position position, word::WdUnits unit, text::Position count, text::View view) const {
    return measures_.move(position, unit, count, view);
  }

  /// Whether the character ends a paragraph: a paragraph, cell, row or section mark.
  bool endsParagraph(text::Position position) const;
  bool isRowMark(text::Position position) const { return structure_.valueAt(position).rowMark; }
  bool isCellMark(text::Position position) const;
  bool isFieldMark(text::Position position) const;

  /// Whether all of a span lies in tracked deletions; not for an empty one.
  bool isDeleted(text::Span span) const;

  // Every line end in text that is put in is one paragraph mark, or one line break where a control takes no
  // paragraph marks.

  /// Puts text in the place of a span, so far as the policy lets the span go, or deletes it (text empty). The
  /// text inherits from the first character replaced. Returns where the text stands now (empty: where the
  /// deletion began).
  text::Span replace(text::Span span, std::u16string_view text, text::View view);
  /// Inserts text that inherits from the character after it, or from the one before it; returns where it
  /// stands. Text after a cell mark goes before it; text after the final paragraph mark goes before that.
  text::Span insertBefore(text::Position position, std::u16string_view text);
  text::Span insertBehind(text::Position position, std::u16string_view text);

  /// Gives a span a highlight colour (0 removes it). What the file has no colour for, row marks above all,
  /// stays as it is.
  void highlight(text::Span span, std::uint8_t colour);

  /// Whether anything was edited since the document was read or last saved. An edit that leaves everything as
  /// it was is none.
  bool changed() const { return changed_; }
  /// Whether anything was edited since the document was read, saved or not: a writer starts from the bytes
  /// read.
  bool wasEdited() const { return wasEdited_; }
  /// Called after the document was written into its file.
  void saved() {
    changed_ = false;
    ++saves_;
  }
  /// Grows with every edit of the text (not of the highlight).
  std::uint64_t stamp() const { return stamp_; }

  LiveRanges& liveRanges() { return liveRanges_; }

  /// The story as it was at one moment. Costs memory for the edits so far; the original text is shared.
  struct Snapshot {
    word::WdStoryType kind = word::wdMainTextStory;
    text::PieceText text;
    text::RunMap<text::Visibility> visibility;
    text::RunMap<std::uint8_t> highlight;
    text::RunMap<Structure> structure;
    std::shared_ptr<const Nesting> nesting;
    bool changed = false;
    std::uint64_t saves = 0;
    // Known where a whole document is taken:
    bool gone = false;      ///< with all its anchors
    bool twin = false;      ///< an earlier version of the same text has become like it
    std::string part = {};  ///< see Content; the kind is what the sections that are left make of it
  };
  Snapshot snapshot() const {
    return {kind_, text_, visibility_, highlight_, structure_, nesting_, changed_, saves_, false, false, {}};
  }
  /// Goes back (or forth) to a snapshot of this story. Live ranges after the first difference end up there.
  /// The story then counts as changed, unless nothing was changed at the snapshot nor saved since.
  void restore(Snapshot snapshot);

  /// None where null. Outlives the story or is taken away first.
  void observer(Observer* observer) { observer_ = observer; }

 private:
  text::Span insert(text::Position position, bool after, std::u16string_view text);
  bool isColourless(const Structure& structure) const;
  bool besideText(text::Position position) const;
  Landing landingOf(const Removal& removal, std::u16string_view newText) const;
  text::Span replacePlain(text::Span span, std::u16string_view newText);
  text::Span exchange(const Removal& removal, std::u16string_view newText);
  void requireText(std::u16string_view newText);
  std::size_t parts() const;
  void requireRoomForParts() const;
  void requireOnlyHere(text::Span edited, text::Span judged) const;
  text::Span wordBeside(text::Position position, bool after) const;
  void countParts();
  text::Span put(text::Span replaced, std::u16string_view text, const Landing& landing);

  word::WdStoryType kind_;
  const Medium* medium_;
  text::PieceText text_;
  text::RunMap<text::Visibility> visibility_;
  text::RunMap<std::uint8_t> highlight_;
  text::RunMap<Structure> structure_;
  std::shared_ptr<const Nesting> nesting_;
  LiveRanges liveRanges_;
  FindMemory finds_{text_, visibility_};
  Measures measures_{text_, visibility_, [this](text::Position position) { return endsParagraph(position); }};
  Observer* observer_ = nullptr;
  std::vector<StoryAnchor> anchors_;
  std::vector<const Story*> rivals_;
  std::optional<text::Span> block_;
  PartCount ownCount_;
  PartCount* count_;
  std::size_t counted_;   ///< parts of this story so far
  std::u16string taken_;  ///< the text put in last that the file can hold, without line feeds
  bool changed_ = false;
  bool wasEdited_ = false;
  std::uint64_t saves_ = 0;
  std::uint64_t stamp_ = 0;
};

}  // namespace pluvo::document
