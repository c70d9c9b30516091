#include "formats/media/media.h"
#include "support/dice.h"
#include "support/invariants.h"
#include "support/notation.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace pluvo::memory {
namespace {

using formats::Kept;
using formats::media;
using formats::Medium;
using notation::Sample;
using text::Position;
using text::Span;

Span spanIn(Dice& dice, Position length) {
  const Position a = dice.upTo(length);
  return {a, std::min(length, a + (dice.oneIn(3) ? dice.upTo(length) : dice.upTo(3)))};
}

std::u16string textOf(const document::Story& model) { return model.text().substring(0, model.length()); }

/// The rules for plain text, restated over one string.
struct OneString {
  std::u16string text;
  std::vector<int> colours;
  std::vector<Span> ranges;

  Position length() const { return static_cast<Position>(text.size()); }

  void put(Span old, const std::u16string& newText, int colour) {
    const auto from = static_cast<std::size_t>(old.from);
    const auto n = static_cast<Position>(newText.size());
    text.replace(from, static_cast<std::size_t>(old.length()), newText);
    colours.erase(colours.begin() + old.from, colours.begin() + old.to);
    colours.insert(colours.begin() + old.from, newText.size(), colour);
    for (Span& range : ranges) range = old.empty() ? inserted(range, old.from, n) : replaced(range, old, n);
  }

  static Span inserted(Span range, Position at, Position n) {
    const bool empty = range.empty();
    const Position from = range.from > at ? range.from + n : range.from;
    const Position to = range.to > at || (range.to == at && !empty) ? range.to + n : range.to;
    return {from, to};
  }

  static Span replaced(Span range, Span old, Position n) {
    const auto place = [&](Position end, Position inside) {
      if (end <= old.from) return end;
      return end >= old.to ? end - old.length() + n : inside;
    };
    if (range.empty()) return {place(range.from, old.from + n), place(range.from, old.from + n)};
    return {place(range.from, old.from), place(range.to, old.from + n)};
  }

  Span setText(Span span, const std::u16string& newText) {
    const Position finalMark = length() - 1;
    const Span old{std::min(span.from, finalMark), std::min(span.to, finalMark)};
    const bool beside = old.empty() && old.from > 0 && text[static_cast<std::size_t>(old.from) - 1] != u'\r';
    const int colour = colours[static_cast<std::size_t>(beside ? old.from - 1 : old.from)];
    const bool same = text.compare(static_cast<std::size_t>(old.from), static_cast<std::size_t>(old.length()),
                                   newText) == 0;
    if (!same) put(old, newText, colour);
    return {old.from, old.from + static_cast<Position>(newText.size())};
  }

  Span insertBefore(Span span, const std::u16string& newText) {
    if (span.empty()) return setText(span, newText);
    put({span.from, span.from}, newText, colours[static_cast<std::size_t>(span.from)]);
    return {span.from, span.to + static_cast<Position>(newText.size())};
  }

  Span insertAfter(Span span, const std::u16string& newText) {
    if (span.empty()) return setText(span, newText);
    const Position at = std::min(span.to, length() - 1);
    Position anchor = span.to - 1;
    if (at != span.to && at > 0 && text[static_cast<std::size_t>(at) - 1] != u'\r') anchor = at - 1;
    put({at, at}, newText, colours[static_cast<std::size_t>(anchor)]);
    return {span.from, span.to + static_cast<Position>(newText.size())};
  }

  std::optional<Span> find(const std::u16string& needle, Span span) const {
    const std::size_t found = text.find(needle, static_cast<std::size_t>(span.from));
    if (needle.empty() || found == text.npos) return std::nullopt;
    const auto from = static_cast<Position>(found);
    const Position to = from + static_cast<Position>(needle.size());
    return to <= span.to ? std::optional<Span>({from, to}) : std::nullopt;
  }
};

class PlainProgram {
 public:
  PlainProgram(unsigned seed, const Medium& medium)
      : dice_(seed),
        simple_{dice_.text(dice_.upTo(40), u"ab \r") + u"\r", {}, {}},
        kept_(*keptIn(medium, notationOf(simple_.text))) {
    simple_.colours.assign(simple_.text.size(), 0);
    for (int i = 0; i < 6; ++i) {
      const Span span = spanIn(dice_, simple_.length());
      simple_.ranges.push_back(span);
      ranges_.push_back(kept_.sample.rangeAt({span.from, span.to}));
    }
  }

  void step() {
    const auto which = static_cast<std::size_t>(dice_.upTo(5));
    word::Range& range = *ranges_[which];
    Span& span = simple_.ranges[which];
    const std::u16string text = dice_.text(dice_.upTo(4), u"abc\r");
    const int colour = dice_.upTo(3);
    switch (dice_.upTo(6)) {
      case 0:
        range.Text(text);
        keep(which, simple_.setText(span, text));
        break;
      case 1:
        range.InsertBefore(text);
        keep(which, simple_.insertBefore(span, text));
        break;
      case 2:
        range.InsertAfter(text);
        keep(which, simple_.insertAfter(span, text));
        break;
      case 3:
        range.Delete();
        simple_.setText(span, u"");
        break;
      case 4:
        find(range, span, dice_.text(dice_.upTo(3), u"ab\r"));
        break;
      case 5:
        if (!kept_.holdsHighlight) break;
        range.HighlightColorIndex(colour);
        std::fill(simple_.colours.begin() + span.from, simple_.colours.begin() + span.to, colour);
        break;
      default:
        span = spanIn(dice_, simple_.length());
        range.SetRange(span.from, span.to);
    }
  }

  void expectSame() {
    const document::Story& model = kept_.sample.story();
    ASSERT_EQ(notation::damageOf(model), "");
    ASSERT_EQ(textOf(model), simple_.text);
    for (Position i = 0; i < model.length(); ++i) {
      ASSERT_EQ(model.highlight().valueAt(i), simple_.colours[static_cast<std::size_t>(i)]) << i;
    }
    for (std::size_t i = 0; i < ranges_.size(); ++i) {
      ASSERT_EQ((Span{ranges_[i]->Start(), ranges_[i]->End()}), simple_.ranges[i]) << "range " << i;
    }
  }
  void save() { kept_.expectToSurviveASave(); }

 private:
  static std::string notationOf(const std::u16string& text) {
    std::string result;
    for (const char16_t unit : text) result += unit == u'\r' ? "¶" : std::string(1, static_cast<char>(unit));
    return result;
  }

  void keep(std::size_t which, Span span) { simple_.ranges[which] = span; }

  void find(word::Range& range, Span& span, const std::u16string& needle) {
    const auto find = range.Find();
    find->Text(needle);
    find->MatchCase(true);
    const auto expected = simple_.find(needle, {span.from, span.empty() ? simple_.length() : span.to});
    EXPECT_EQ(find->Execute(), expected.has_value());
    if (expected) span = *expected;
  }

  Dice dice_;
  OneString simple_;
  Kept kept_;
  std::vector<std::shared_ptr<word::Range>> ranges_;
};

TEST(RandomProgram, DoesWithPlainTextWhatTheRulesSay) {
  for (const Medium& medium : media()) {
    for (unsigned seed = 0; seed < 300; ++seed) {
      SCOPED_TRACE(seed);
      PlainProgram program(seed, medium);
      for (int i = 0; i < 60; ++i) {
        program.step();
        program.expectSame();
        if (i % 20 == 0) program.save();
        if (HasFailure()) return;
      }
    }
  }
}

/// Random notation: paragraphs with fields, hidden and highlighted text, and tables, nested.
class RandomDocument {
 public:
  explicit RandomDocument(Dice& dice) : dice_(dice) {}

  std::string blocks(int depth) {
    std::string result;
    for (int count = 1 + dice_.upTo(2); count > 0; --count)
      result += dice_.oneIn(3) && depth > 0 ? table(depth - 1) : inlines(2) + (dice_.oneIn(5) ? "§" : "¶");
    return result;
  }

 private:
  std::string table(int depth) {
    std::string result = "⟦";
    for (int rows = 1 + dice_.upTo(1); rows > 0; --rows) {
      for (int cells = 1 + dice_.upTo(1); cells > 0; --cells)
        result += (dice_.oneIn(3) ? blocks(depth) : "") + inlines(1) + "¦";
      result += "‖";
    }
    return result + "⟧";
  }

  std::string inlines(int depth) {
    static const std::pair<const char*, const char*> kAround[] = {{"{", "}"}, {"<h:", ">"}, {"<7:", ">"}};
    std::string result;
    for (int count = dice_.upTo(3); count > 0; --count) {
      const int kind = depth > 0 ? dice_.upTo(4) : 4;
      if (kind == 4) {
        for (int length = 1 + dice_.upTo(2); length > 0; --length) result += dice_.of(std::string("ab "));
      } else if (kind == 3) {
        result += "{" + inlines(depth - 1) + "|" + inlines(depth - 1) + "}";
      } else {
        result += kAround[kind].first + inlines(depth - 1) + kAround[kind].second;
      }
    }
    return result;
  }

  Dice& dice_;
};

/// Text without the marks that an edit may leave standing.
std::u16string lettersOf(std::u16string text) {
  const auto isMark = [](char16_t unit) {
    return unit == 7 || unit == 12 || unit == 13 || (unit >= 19 && unit <= 21);
  };
  text.erase(std::remove_if(text.begin(), text.end(), isMark), text.end());
  return text;
}

/// A random document that the medium can hold.
Kept thatHolds(const Medium& medium, Dice& dice) {
  for (;;) {
    if (std::optional<Kept> kept = keptIn(medium, RandomDocument(dice).blocks(2))) return *std::move(kept);
  }
}

class StructuredProgram {
 public:
  StructuredProgram(unsigned seed, const Medium& medium) : dice_(seed), kept_(thatHolds(medium, dice_)) {
    for (int i = 0; i < 3; ++i) ranges_.push_back(sample_.rangeAt({0, 0}));
  }

  void step() {
    if (dice_.oneIn(8)) sample_.document->showFieldCodes(dice_.oneIn(2));
    word::Range& range = *dice_.of(ranges_);
    const Span span = spanIn(dice_, sample_.story().length());
    range.SetRange(span.from, span.to);
    SCOPED_TRACE(sample_.print() + " " + std::to_string(span.from) + "-" + std::to_string(span.to));
    const std::u16string text = dice_.text(dice_.upTo(3), u"xyz\r");
    const int kind = dice_.upTo(6);
    if (kind == 0) insert(range, text, [&] { range.InsertBefore(text); });
    if (kind == 1) insert(range, text, [&] { range.InsertAfter(text); });
    if (kind == 2) replace(range, text);
    if (kind == 3) range.HighlightColorIndex(dice_.upTo(4));
    if (kind > 3) find(span);
    ASSERT_EQ(notation::damageOf(sample_.story()), "") << sample_.print();
  }
  void save() { kept_.expectToSurviveASave(); }

 private:
  template <class Insert>
  void insert(word::Range& range, const std::u16string& text, Insert work) {
    const std::u16string before = textOf(sample_.story());
    work();
    const std::u16string after = textOf(sample_.story());
    ASSERT_EQ(after.size(), before.size() + text.size());
    const auto from = static_cast<std::size_t>(
        std::mismatch(before.begin(), before.end(), after.begin()).first - before.begin());
    // The new text may begin like what stands after it.
    bool found = text.empty();
    for (std::size_t at = from + 1; at-- > 0 && !found;) {
      std::u16string undone = after;
      found = after.compare(at, text.size(), text) == 0 && undone.erase(at, text.size()) == before &&
              range.Start() <= static_cast<Position>(at) &&
              static_cast<Position>(at + text.size()) <= range.End();
    }
    ASSERT_TRUE(found) << sample_.print();
  }

  void replace(word::Range& range, const std::u16string& text) {
    document::Story& model = sample_.story();
    const Span span{range.Start(), range.End()};
    const Position length = model.length();
    const std::u16string before = textOf(model);
    range.Text(text);
    if (span.empty()) return;
    const std::u16string after = textOf(model);
    const Position tail = length - span.to;
    ASSERT_EQ(after.substr(0, static_cast<std::size_t>(range.Start())),
              before.substr(0, static_cast<std::size_t>(range.Start())));
    ASSERT_LE(tail, model.length() - range.End());
    ASSERT_EQ(after.substr(after.size() - static_cast<std::size_t>(tail)),
              before.substr(before.size() - static_cast<std::size_t>(tail)));
    // All text that was shown is gone, and the new text is the only one.
    const Span left{std::min(span.from, range.Start()), model.length() - tail};
    ASSERT_EQ(lettersOf(model.visibleText(left, sample_.document->view())),
              lettersOf(model.visibleText({range.Start(), range.End()}, sample_.document->view())))
        << sample_.print();
    ASSERT_EQ(model.text().substring(range.Start(), range.End()), text);
  }

  void find(Span span) {
    // Few queries, so that each finds what it remembers.
    static const std::u16string kTexts[] = {u"a", u"xa", u"b a"};
    const document::Query query{std::make_shared<const std::u16string>(dice_.of(kTexts)),
                                {true, dice_.oneIn(2)}};
    if (dice_.oneIn(2)) span.to = sample_.story().length();
    document::Story& model = sample_.story();
    const auto view = sample_.document->view();
    const text::Search search(*query.text, query.flags);
    ASSERT_EQ(model.find(query, span, view),
              search.find(model.text(), model.visibility(), view, span.from, span.to))
        << sample_.print();
  }

  Dice dice_;
  Kept kept_;
  Sample& sample_ = kept_.sample;
  std::vector<std::shared_ptr<word::Range>> ranges_;
};

TEST(RandomProgram, LeavesStructuredDocumentsWhole) {
  for (const Medium& medium : media()) {
    if (!keptIn(medium, "⟦{a|<7:b>}¦‖⟧§")) continue;
    for (unsigned seed = 0; seed < 500; ++seed) {
      SCOPED_TRACE(seed);
      StructuredProgram program(seed, medium);
      for (int i = 0; i < 40; ++i) {
        program.step();
        if (i % 10 == 9) program.save();
        if (HasFailure()) return;
      }
    }
  }
}

}  // namespace
}  // namespace pluvo::memory
