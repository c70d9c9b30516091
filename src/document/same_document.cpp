#include "document/same_document.h"

#include "document/place.h"
#include "same_text.h"

#include <algorithm>
#include <cstddef>

namespace pluvo::document {

using text::RunMap;

namespace {

/// Whether two maps of one length have the same values, or such as may differ: same(a, b, from, to).
template <class Value, class Same>
bool sameRuns(const RunMap<Value>& a, const RunMap<Value>& b, Same same) {
  if (a.length() != b.length()) return false;
  const auto runsOfB = b.runs();
  auto other = runsOfB.begin();
  for (const auto& run : a.runs()) {
    for (; other != runsOfB.end(); ++other) {
      const auto there = *other;
      const text::Position from = std::max(run.from, there.from);
      const text::Position to = std::min(run.to, there.to);
      if (!same(run.value, there.value, from, to)) return false;
      if (there.to > run.to) break;
      if (there.to == run.to) {
        ++other;
        break;
      }
    }
  }
  return true;
}

/// Controls of whole paragraphs are not looked at, nor guided text. A paragraph lies where its mark does. New
/// text goes out of a guide that has nothing left on one side of it. Memory leaves both as they were.
std::int32_t lookedAt(const std::vector<Control>& all, std::int32_t index) {
  const auto at = [&](std::int32_t i) -> const Control& { return all[static_cast<std::size_t>(i)]; };
  while (index != kNone && at(index).isGuided) index = at(index).parent;
  return index != kNone && at(index).inlined ? index : kNone;
}
template <class Nested>
std::int32_t lookedAt(const std::vector<Nested>& /*all*/, std::int32_t index) {
  return index;
}

/// Which table (field, control) of one text is which of the other's: those around them go by that, too.
/// Where one may be divided, several of the other's are parts of one.
template <class Nested>
class Pairs {
 public:
  Pairs(const std::vector<Nested>& a, const std::vector<Nested>& b, bool mayBeDivided)
      : a_(a), b_(b), mayBeDivided_(mayBeDivided), ofA_(a.size(), kNone), ofB_(b.size(), kNone) {}

  bool same(std::int32_t a, std::int32_t b) {
    a = lookedAt(a_, a);
    b = lookedAt(b_, b);
    while (a != kNone && b != kNone) {
      std::int32_t& met = ofA_[static_cast<std::size_t>(a)];
      std::int32_t& metBack = ofB_[static_cast<std::size_t>(b)];
      if (metBack == a) return true;
      if (metBack != kNone || (met != kNone && !mayBeDivided_)) return false;
      met = b;
      metBack = a;
      a = lookedAt(a_, a_[static_cast<std::size_t>(a)].parent);
      b = lookedAt(b_, b_[static_cast<std::size_t>(b)].parent);
    }
    return a == b;
  }

 private:
  const std::vector<Nested>& a_;
  const std::vector<Nested>& b_;
  bool mayBeDivided_;
  std::vector<std::int32_t> ofA_;
  std::vector<std::int32_t> ofB_;
};

bool sameStructure(const Story::Snapshot& meant, const Content& readBack) {
  const Nesting& a = *meant.nesting;
  const Nesting& b = readBack.nesting;
  Pairs<Table> tables(a.tables, b.tables, false);
  Pairs<Field> fields(a.fields, b.fields, false);
  // A new paragraph mark divides a control within a paragraph.
  Pairs<Control> controls(a.controls, b.controls, true);
  return sameRuns(meant.structure, readBack.structure,
                  [&](const Structure& x, const Structure& y, text::Position, text::Position) {
                    return x.deleted == y.deleted && x.sectionMark == y.sectionMark &&
                           x.rowMark == y.rowMark && tables.same(x.table, y.table) &&
                           fields.same(x.field, y.field) && controls.same(x.control, y.control);
                  });
}

/// A character that the file has no colour for may have any in memory.
bool sameHighlight(const Story::Snapshot& meant, const Content& readBack) {
  const auto isColourless = [&](const Structure& structure) {
    return structure.restriction != kNone &&
           readBack.nesting.restrictions[static_cast<std::size_t>(structure.restriction)].of ==
               Restriction::Of::highlight;
  };
  return sameRuns(meant.highlight, readBack.highlight,
                  [&](std::uint8_t x, std::uint8_t y, text::Position from, text::Position to) {
                    if (x == y) return true;
                    for (const auto& run : readBack.structure.runs(from, to))
                      if (!isColourless(run.value)) return false;
                    return true;
                  });
}

std::string_view differenceOf(const Story::Snapshot& meant, const Content& readBack,
                              const std::function<void()>& pause) {
  if (meant.kind != readBack.kind) return "parts";
  if (!sameText(meant.text, readBack.text, pause)) return "text";
  if (!sameHighlight(meant, readBack)) return "highlighting";
  return sameStructure(meant, readBack) ? std::string_view() : "structure";
}

/// The stories as they are compared: headers and footers by their parts, since their numbers hang on the
/// sections.
template <class Each>
std::vector<const Each*> inOrder(const std::vector<Each>& stories) {
  std::vector<const Each*> order;
  order.reserve(stories.size());
  for (const Each& story : stories) order.push_back(&story);
  std::stable_sort(order.begin(), order.end(), [](const Each* a, const Each* b) {
    const Place place = placeOf(a->kind);
    return place == placeOf(b->kind) ? a->part < b->part : place < placeOf(b->kind);
  });
  return order;
}

}  // namespace

std::string_view differenceOf(const Document::Snapshot& meant, const std::vector<Content>& readBack,
                              const std::function<void()>& pause) {
  const std::vector<const Content*> others = inOrder(readBack);
  auto read = others.begin();
  for (const Story::Snapshot* const story : inOrder(meant)) {
    if (story->gone) continue;
    const std::string_view difference = read == others.end() ? "parts" : differenceOf(*story, **read, pause);
    // Of versions that have become alike there is one.
    if (!difference.empty() && story->twin) continue;
    if (!difference.empty()) return difference;
    ++read;
  }
  return read == others.end() ? std::string_view() : "parts";
}

}  // namespace pluvo::document
