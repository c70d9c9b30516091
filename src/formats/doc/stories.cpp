#include "stories.h"

#include "damage.h"
#include "headers.h"
#include "piece_text.h"
#include "plc.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <unordered_map>

namespace pluvo::doc {

using text::Position;

namespace {

constexpr std::array kHeaderKinds = {word::wdEvenPagesHeaderStory, word::wdPrimaryHeaderStory,
                                     word::wdEvenPagesFooterStory, word::wdPrimaryFooterStory,
                                     word::wdFirstPageHeaderStory, word::wdFirstPageFooterStory};
constexpr std::size_t kCommentElement = 30, kNoteElement = 2, kBoxElement = 22, kShapeElement = 26;

bool isHeader(word::WdStoryType kind) {
  return kind == word::wdEvenPagesHeaderStory || kind == word::wdPrimaryHeaderStory ||
         kind == word::wdFirstPageHeaderStory;
}

/// Finds the stories of one part after the other.
class StoryFinder {
 public:
  explicit StoryFinder(const Text& text) : text_(text), headers_(text) {}

  std::vector<StoryPlace> find() {
    found_.push_back({word::wdMainTextStory, 0, text_.fib.length(Part::main)});
    headers(true);
    headers(false);
    notes(Part::footnotes, word::wdFootnotesStory, Table::footnoteTexts, Table::footnoteReferences,
          kNoteElement);
    notes(Part::endnotes, word::wdEndnotesStory, Table::endnoteTexts, Table::endnoteReferences, kNoteElement);
    notes(Part::comments, word::wdCommentsStory, Table::commentTexts, Table::commentReferences,
          kCommentElement);
    boxes(Part::boxes, Table::boxTexts, Part::main, Table::mainShapes);
    boxes(Part::headerBoxes, Table::headerBoxTexts, Part::headers, Table::headerShapes);
    findAnchors();
    return std::move(found_);
  }

 private:
  /// The texts that follow each other in a part: visit(number, from, to). What does not lie there, or comes
  /// before one that was visited, is left out. Then left(from, to) is told of each stretch that the table
  /// should name and does not, so that a damaged one hides no text.
  template <class Visit, class Left>
  void forEachText(Part part, const Plc& places, std::size_t first, Visit visit, Left left) const {
    const Position begin = text_.fib.begin(part);
    const Position length = text_.fib.length(part);
    Position reached = firstPlace(part, places, first);
    const auto leave = [&](Position to) {
      if (hasText(begin + reached, begin + to)) left(begin + reached, begin + to);
    };
    for (std::size_t i = first; i < places.count(); ++i) {
      const Position from = places.place(i);
      const Position to = places.place(i + 1);
      if (from < reached || to <= from || to > length) continue;
      leave(from);
      visit(i, begin + from, begin + to);
      reached = to;
    }
    leave(length);
  }

  /// Where a text begins, in a table that can be trusted; else 0.
  Position firstPlace(Part part, const Plc& places, std::size_t number) const {
    if (number == 0 || number > places.count() || places.place(0) != 0) return 0;
    for (std::size_t i = 1; i < places.count(); ++i) {
      const Position at = places.place(i);
      if (at < places.place(i - 1) || at > text_.fib.length(part)) return 0;
      const Position before = text_.fib.begin(part) + at - 1;
      if (at > 0 && unitAt(text_.pieces, text_.document, before) != text::kParagraphMark) return 0;
    }
    return places.place(number);
  }

  bool hasText(Position from, Position to) const {
    while (from < to && unitAt(text_.pieces, text_.document, from) < kControls) ++from;
    return from < to;
  }

  /// Six texts of each section; one without text is that of the section before. An unseen mark
  /// follows each text. Text that the table does not name is a header.
  void headers(bool wanted) {
    forEachText(
        Part::headers, Plc(text_.in(Table::headerTexts), 0), Headers::kSeparators,
        [&](std::size_t i, Position from, Position to) {
          const word::WdStoryType kind = kHeaderKinds[(i - Headers::kSeparators) % kHeaderKinds.size()];
          if (isHeader(kind) != wanted || to - from <= 1) return;
          for (const Position sectionBreak : headers_.anchorsOf(i))
            anchors_.push_back({sectionBreak, found_.size()});
          found_.push_back({kind, from, to - 1});
        },
        [&](Position from, Position to) {
          if (wanted) found_.push_back({word::wdPrimaryHeaderStory, from, to});
        });
  }

  /// The last one is followed by an unseen mark. Notes whose places are not what they must be would
  /// be missed.
  void notes(Part part, word::WdStoryType kind, Table texts, Table references, std::size_t referenceElement) {
    const Plc places(text_.in(texts), 0);
    const Plc anchors(text_.in(references), referenceElement);
    const Position length = text_.fib.length(part);
    if (length == 0) return;
    bool isSound = places.count() > 0 && anchors.count() + 1 == places.count() && places.place(0) == 0 &&
                   places.place(places.count() - 1) == length - 1;
    for (std::size_t i = 0; isSound && i + 1 < places.count(); ++i)
      isSound = places.place(i) < places.place(i + 1) && anchors.place(i) >= 0 &&
                anchors.place(i) < text_.fib.length(Part::main);
    if (!isSound) throw damaged("table of notes or comments is damaged");
    for (std::size_t i = 0; i < anchors.count(); ++i) {
      const Position begin = text_.fib.begin(part);
      add({kind, begin + places.place(i), begin + places.place(i + 1)},
          anchorAt(Part::main, anchors.place(i)));
    }
  }

  Position anchorAt(Part part, Position at) const {
    return at >= 0 && at < text_.fib.length(part) ? text_.fib.begin(part) + at : kNowhere;
  }

  void boxes(Part part, Table texts, Part anchorsIn, Table shapes) {
    const Plc places(text_.in(texts), kBoxElement);
    const Plc anchors(text_.in(shapes), kShapeElement);
    std::unordered_map<std::uint32_t, Position> anchorOf;
    for (std::size_t i = 0; i < anchors.count(); ++i)
      anchorOf.emplace(base::get32(anchors.element(i), 0), anchorAt(anchorsIn, anchors.place(i)));
    forEachText(
        part, places, 0,
        [&](std::size_t i, Position from, Position to) {
          constexpr std::size_t kIsSpare = 8, kShape = 14;
          const base::ByteSpan element = places.element(i);
          const bool isLast = i + 1 == places.count();
          if (isLast || base::get16(element, kIsSpare) != 0) return;
          const auto anchor = anchorOf.find(base::get32(element, kShape));
          add({word::wdTextFrameStory, from, to}, anchor == anchorOf.end() ? kNowhere : anchor->second);
        },
        [&](Position from, Position to) {
          add({word::wdTextFrameStory, from, to}, kNowhere);
        });
  }

  void add(const StoryPlace& place, Position anchor) {
    if (anchor != kNowhere) anchors_.push_back({anchor, found_.size()});
    found_.push_back(place);
  }

  /// Among all stories, from the front to the back.
  void findAnchors() {
    std::vector<std::size_t> order(found_.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto from = [&](std::size_t i) { return found_[i].from; };
    std::ranges::stable_sort(order, {}, from);
    for (const Anchor& anchor : anchors_) {
      const auto after = std::ranges::upper_bound(order, anchor.at, {}, from);
      if (after == order.begin()) continue;
      const std::size_t holder = *(after - 1);
      if (holder != anchor.story && anchor.at < found_[holder].to)
        found_[anchor.story].anchors.push_back({holder, anchor.at - found_[holder].from});
    }
  }

  static constexpr Position kNowhere = -1;

  struct Anchor {
    Position at = 0;
    std::size_t story = 0;
  };

  const Text& text_;
  const Headers headers_;
  std::vector<StoryPlace> found_;
  std::vector<Anchor> anchors_;
};

}  // namespace

std::vector<StoryPlace> storiesOf(const Text& text) { return StoryFinder(text).find(); }

}  // namespace pluvo::doc
