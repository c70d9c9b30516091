#include "document_writer.h"

#include "base/little_endian.h"
#include "damage.h"
#include "data_stretches.h"
#include "document/edit_script.h"
#include "headers.h"
#include "new_pages.h"
#include "new_pieces.h"
#include "new_tables.h"
#include "new_text.h"
#include "new_text_writer.h"
#include "piece_text.h"
#include "plc.h"
#include "properties.h"
#include "table_mover.h"
#include "unused_bytes.h"

#include <algorithm>
#include <array>
#include <utility>

namespace pluvo::doc {

using document::Step;
using text::Position;

namespace {

using Octets = std::vector<std::uint8_t>;

bool isSame(const text::RunMap<std::uint8_t>& a, const text::RunMap<std::uint8_t>& b) {
  if (a.length() != b.length() || a.runCount() != b.runCount()) return false;
  const auto others = b.runs();
  auto other = others.begin();
  for (const auto& run : a.runs()) {
    if (run != *other) return false;
    ++other;
  }
  return true;
}

constexpr std::size_t kPage = FormattedPages::kPage;

std::size_t pagesFor(std::size_t bytes) { return (bytes + kPage - 1) / kPage; }

/// Where new text may begin: after the stream. Some tables of formatting reach a little beyond it.
std::uint32_t newTextFrom(const Text& text) {
  constexpr std::size_t kMostBeyond = 0x10000;
  std::size_t from = text.document.size();
  for (const FormattedPages* pages : {&text.characters, &text.paragraphs}) {
    const std::size_t end = pages->entries().empty() ? 0 : pages->entries().back().from;
    if (end > text.document.size() + kMostBeyond) throw damaged("table of formatting is damaged");
    from = std::max(from, end);
  }
  from = pagesFor(from) * kPage;
  if (from > std::size_t{1} << 30U) {
    throw errors::DocumentError(errors::Problem::tooLarge,
                                "The document is larger than 1 GB and cannot be changed; divide it.");
  }
  return static_cast<std::uint32_t>(from);
}

/// A template's glossary has its formatting in the same pages.
void requireSharedPages(const Text& text, const Text& glossary) {
  for (const Table shared : {Table::characterPages, Table::paragraphPages}) {
    const auto number = static_cast<std::size_t>(shared);
    const auto& own = text.fib.extents();
    const auto& others = glossary.fib.extents();
    if (number < others.size() && others[number].at == own[number].at &&
        others[number].length == own[number].length)
      continue;
    throw errors::DocumentError(errors::Problem::unsupported,
                                "The template's AutoText entries are formatted apart from its text, and "
                                "might be lost; change it in a word processor.");
  }
}

class DocumentWriter {
 public:
  DocumentWriter(const Text& text, const Text* glossary, const std::vector<OldStory>& stories,
                 const document::Document& document)
      : text_(text),
        glossary_(glossary),
        stories_(stories),
        document_(document),
        walker_(text),
        pieces_(text),
        newText_(newTextFrom(text)),
        tables_(text.fib, glossary == nullptr ? nullptr : &glossary->fib, text.tables) {}

  NewStreams write() {
    writeStories();
    const std::vector<Recoloured> recoloured = pieces_.applyHighlights();
    stream_.assign(text_.document.begin(), text_.document.end());
    blankUnused(text_, glossary_, pieces_.places().gone(), pieces_.pieces(), stream_);
    if (!newText_.empty() || !recoloured.empty()) append(recoloured);
    TableMover mover(text_, pieces_.places(), tables_);
    if (!pieces_.places().empty()) mover.move();
    tables_.replace(Table::pieces, pieces_.table());
    NewTables::Written written = tables_.write();
    writeBlock(mover, written.extents);
    std::vector<std::u16string> deleted = deletedTexts();
    const bool losesPictures = std::ranges::any_of(
        deleted, [](const std::u16string& each) { return each.find(text::kPicture) != each.npos; });
    return {std::move(stream_), std::move(written.stream),
            losesPictures ? dataWithoutGone(text_, glossary_, pieces_.places()) : Octets(),
            std::move(deleted)};
  }

 private:
  /// A text that is written, or that goes.
  struct Task {
    text::Span place;
    std::size_t story = kGone;
    static constexpr std::size_t kGone = static_cast<std::size_t>(-1);
  };

  void writeStories() {
    const Position main = text_.fib.length(Part::main);
    writeTasks({{{0, main}, 0}});
    keepTo(main);
    std::vector<Task> tasks;
    addGoneNotes(Table::footnoteReferences, 2, Table::footnoteTexts, Part::footnotes, tasks);
    addGoneNotes(Table::endnoteReferences, 2, Table::endnoteTexts, Part::endnotes, tasks);
    addGoneNotes(Table::commentReferences, 30, Table::commentTexts, Part::comments, tasks);
    const Position headers = text_.fib.begin(Part::headers);
    if (const auto left = Headers(text_).without([&](Position at) { return pieces_.places().isGone(at); }))
      for (const text::Span& gone : left->gone) tasks.push_back({{headers + gone.from, headers + gone.to}});
    for (std::size_t i = 1; i < stories_.size(); ++i)
      tasks.push_back({{stories_[i].place.from, stories_[i].place.to}, i});
    std::ranges::stable_sort(tasks, {}, [](const Task& task) { return task.place.from; });
    writeTasks(tasks);
    // The mark at the very end is there for the other texts.
    const Position all = text_.fib.lengthOfAll();
    if (all == main) return;
    keepTo(all - 1);
    const bool areOthersGone = pieces_.places().areGone({main, all - 1});
    if (areOthersGone && all - 1 > main) {
      pieces_.drop(all - 1, all);
    } else {
      keepTo(all);
    }
  }

  /// The texts of notes whose marks went; with the last one goes what follows it in its part.
  void addGoneNotes(Table references, std::size_t size, Table texts, Part part, std::vector<Task>& tasks) {
    const Plc marks(text_.in(references), size);
    const Plc places(text_.in(texts), 0);
    const Position begin = text_.fib.begin(part);
    std::size_t gone = 0;
    for (std::size_t i = 0; i < marks.count() && i + 1 < places.count(); ++i) {
      const Position at = marks.place(i);
      if (at < 0 || at >= text_.fib.length(Part::main) || !pieces_.places().isGone(at)) continue;
      ++gone;
      tasks.push_back({{begin + places.place(i), begin + places.place(i + 1)}});
    }
    if (gone > 0 && gone == marks.count())
      tasks.push_back({{begin + places.place(gone), begin + text_.fib.length(part)}});
  }

  void writeTasks(const std::vector<Task>& tasks) {
    for (const Task& task : tasks) {
      if (task.place.from < reached_) continue;  // it went
      if (task.story != Task::kGone && !isEdited(document_.story(task.story), stories_[task.story])) continue;
      keepTo(task.place.from);
      if (task.story == Task::kGone) {
        pieces_.drop(task.place.from, task.place.to);
      } else {
        writeStory(document_.story(task.story), stories_[task.story]);
      }
      reached_ = task.place.to;
    }
  }

  void keepTo(Position end) {
    if (end > reached_) pieces_.keep(reached_, end);
    reached_ = std::max(reached_, end);
  }

  void writeStory(const document::Story& story, const OldStory& old) {
    const text::Span place{old.place.from, old.place.to};
    NewTextWriter newText(text_, walker_, story, place, newText_);
    document::StepReader steps(story.text());
    for (Step step; steps.next(step);) {
      // The mark that a text breaks off without is not in the file.
      if (step.original >= place.length()) break;
      step.length =
          step.kind == Step::Kind::put ? step.length : std::min(step.length, place.length() - step.original);
      switch (step.kind) {
        case Step::Kind::keep:
          keep(step, story, old);
          break;
        case Step::Kind::drop:
          pieces_.drop(place.from + step.original, place.from + step.original + step.length);
          break;
        case Step::Kind::put:
          newText.put(step, pieces_);
          break;
      }
    }
  }

  void keep(const Step& step, const document::Story& story, const OldStory& old) {
    const Position shift = step.at - step.original;
    const Position end = step.original + step.length;
    for (Position at = step.original; at < end;) {
      const auto now = story.highlight().runAt(at + shift);
      const auto was = old.highlight.runAt(at);
      const Position next = std::min({end, now.to - shift, was.to});
      const auto colour = now.value == was.value ? std::nullopt : std::optional(now.value);
      pieces_.keep(old.place.from + at, old.place.from + next, colour);
      at = next;
    }
  }

  /// Puts new text and new pages after the stream.
  void append(const std::vector<Recoloured>& recoloured) {
    stream_.resize(newText_.from());
    newText_.write(stream_);
    stream_.resize(pagesFor(stream_.size()) * kPage);
    tables_.replace(Table::characterPages,
                    NewPages(text_.characters, recoloured, text_.styles, newText_).write(stream_));
    if (newText_.empty()) return;
    tables_.replace(Table::paragraphPages,
                    NewPages(text_.paragraphs, {}, text_.styles, newText_).write(stream_));
  }

  std::vector<std::u16string> deletedTexts() const {
    std::vector<std::u16string> texts;
    for (const text::Span& gone : pieces_.places().gone()) {
      std::u16string text;
      for (Position at = gone.from; at < gone.to; ++at) text += unitAt(text_.pieces, text_.document, at);
      texts.push_back(std::move(text));
    }
    return texts;
  }

  void writeBlock(const TableMover& mover, const std::vector<Fib::Extent>& extents) {
    constexpr std::size_t kFlags = 0x0A;
    constexpr std::uint16_t kOnePart = 0x0010, kAllParts = 0x00F0, kNoCount = 0xD9;
    const std::span<std::uint8_t> bytes(stream_);
    std::uint16_t flags = base::get16(bytes, kFlags) | Fib::kSavedInParts;
    if (text_.fib.version() < kNoCount && (flags & kAllParts) != kAllParts) flags += kOnePart;
    base::put(bytes, kFlags, flags);
    base::put(bytes, text_.fib.sizeAt(), static_cast<std::uint32_t>(bytes.size()));
    for (std::size_t i = 0; i < kParts; ++i) {
      base::put(bytes, text_.fib.lengthsAt() + i * 4,
                static_cast<std::uint32_t>(mover.newLength(static_cast<Part>(i))));
    }
    const auto writeExtent = [&](const Fib& fib, std::size_t i) {
      base::put(bytes, fib.extentsAt() + i * 8, extents[i].at);
      base::put(bytes, fib.extentsAt() + i * 8 + 4, extents[i].length);
    };
    for (std::size_t i = 0; i < extents.size(); ++i) writeExtent(text_.fib, i);
    if (glossary_ == nullptr) return;
    base::put(bytes, glossary_->fib.sizeAt(), static_cast<std::uint32_t>(bytes.size()));
    for (const Table shared : {Table::characterPages, Table::paragraphPages})
      writeExtent(glossary_->fib, static_cast<std::size_t>(shared));
  }

  const Text& text_;
  const Text* glossary_;
  const std::vector<OldStory>& stories_;
  const document::Document& document_;
  const Walker walker_;
  NewPieces pieces_;
  NewText newText_;
  NewTables tables_;
  Octets stream_;
  Position reached_ = 0;  ///< of the old text
};

}  // namespace

bool isEdited(const document::Story& story, const OldStory& old) {
  const text::PieceText& text = story.text();
  const bool isOriginal =
      text.pieceCount() == 1 && !text.piece(0).isNew() && text.length() == text.original().length();
  return !isOriginal || !isSame(story.highlight(), old.highlight);
}

void requireChangeable(const Text& text, const Text* glossary) {
  if (glossary != nullptr) requireSharedPages(text, *glossary);
  newTextFrom(text);
  requireMovable(text);
}

NewStreams edited(const Text& text, const Text* glossary, const std::vector<OldStory>& stories,
                  const document::Document& document) {
  return DocumentWriter(text, glossary, stories, document).write();
}

}  // namespace pluvo::doc
