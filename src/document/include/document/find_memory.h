#pragma once

#include "text/original_matches.h"
#include "text/pieces.h"
#include "text/positions.h"
#include "text/run_map.h"
#include "text/search.h"
#include "text/visible.h"
#include "text/visible_text.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pluvo::document {

/// The query of a find.
struct Query {
  /// Shared, because a long text is asked for again and again; not null.
  std::shared_ptr<const std::u16string> text;
  text::SearchFlags flags;

  text::Position length() const { return static_cast<text::Position>(text->size()); }
  bool operator==(const Query& other) const {
    return flags == other.flags && (text == other.text || *text == *other.text);
  }
};

/// Finds that remember. Of each of the last few queries it knows that no match begins in [from, clear). Where
/// one was found, it begins at clear. A find that begins in there needs no search up to clear, whatever its
/// bound. So many finds of one far ending cost one search. An edit costs a search of its own place only.
///
/// Where all text shows, a match that lies in the piece of the original where a find begins is known from
/// what was found in the original, which no edit changes.
class FindMemory {
 public:
  /// Both must outlive this object.
  FindMemory(const text::PieceText& text, const text::RunMap<text::Visibility>& visibility)
      : text_(text), visibility_(visibility) {}

  /// The first match that lies in the span wholly.
  std::optional<text::Span> find(const Query& query, text::Span span, text::View view) {
    const text::Span found = findOrNone(query, span, view);
    return found.empty() ? std::nullopt : std::optional(found);
  }

  /// To be called when a span of text and map has been replaced.
  void edited(text::Span replaced, text::Position newLength);

 private:
  struct Known {
    text::Position from = 0;
    text::Position clear = 0;
    std::optional<text::Span> match;
  };
  struct Entry {
    Query query;
    text::View view;
    text::Search search;
    std::unique_ptr<text::OriginalMatches> inOriginal;  ///< null where there is none
    std::uint64_t lastUse = 0;
    std::optional<Known> known;
  };

  Entry& entryOf(const Query& query, text::View view);
  static constexpr text::Position kNone = text::OriginalMatches::kNone;
  /// Empty where there is none.
  text::Span findOrNone(const Query& query, text::Span span, text::View view);
  text::Position findNear(Entry& entry, text::Span span, text::Position& clear) const;
  bool reachBack(Entry& entry, text::Span span) const;
  void searchOn(Entry& entry, text::Position to) const;
  std::optional<text::Span> search(const Entry& entry, text::Position from, text::Position to) const;
  const text::VisibleText* shownIn(text::View view) const;
  void followEdit(Entry& entry, text::Span replaced, text::Position newLength) const;
  void keepBefore(Entry& entry, text::Position edit) const;

  /// Whether no character is hidden.
  bool showsAll(text::View view) const;
  /// The start of the n-th visible character in front of position.
  text::Position back(text::View view, text::Position position, text::Position n) const;
  /// The end of the n-th visible character from position on.
  text::Position onward(text::View view, text::Position position, text::Position n) const;

  const text::PieceText& text_;
  const text::RunMap<text::Visibility>& visibility_;
  std::vector<Entry> entries_;
  std::uint64_t uses_ = 0;
  struct Shown {
    text::View view;
    text::VisibleText text;
  };
  mutable std::vector<Shown> shown_;  ///< none once anything was edited
  bool wasEdited_ = false;
};

}  // namespace pluvo::document
