#include "formats/media/edits.h"

#include "errors/document_error.h"
#include "errors/fault.h"
#include "formats/opened.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace pluvo::formats {
namespace {

using notation::Sample;

/// Each kind of place that a range may cover, begin at or end at.
const char* const kPlaces =
    "one [atwoa] three¶four\n[aonea] two\none¶[atwoa]\none¶two[aa]\none[a¶a]two\n"
    "one¶[a¶a]two\none¶[atwo¶a]three\none [atwo¶¶threea] four\no[ane\ttwo\va]three\n"
    " [aone  a] two \na[a\U0001F4DCa]b\na<7:b[ac>da]e\na<h:b>[ac<h:d>a]e\na¶[a<7:¶>b¶a]c\n"
    "a{X|b[acda]e}f\na[ab{X|c}da]e\na[ab{X|ca]d}e\na{X|b[ac}da]e\na{X|{Y|b[ac}d}a]e\n"
    "a{X[aa]|c}¶e\n⟦x[aya]z¦w¦‖⟧v\n⟦x¶[ay¶a]z¦w¦‖⟧v\n⟦x[a¦y¦a]‖z¦w¦‖⟧v\na¶[a⟦x¦‖⟧a]b\n"
    "a[ab¶⟦xa]y¦‖⟧z\n⟦[ax¶⟦ya]z¦‖⟧w¦‖⟧b\n⟦x[ay¦‖⟧b¶a]c\na¶[a⟦⟦x¦‖⟧y¦z¦‖⟧b¶a]c\n⟦x¦‖⟧[ab¶a]⟦y¦‖⟧\none[a§a]"
    "two\n"
    "one [atwo§threea] four\n";

const Edit kHighlights[] = {highlight(7), highlight(0)};
const Edit kChanges[] = {insertBefore(u"N"),
                         insertAfter(u"N"),
                         insertBefore(u"N\r"),
                         insertAfter(u"\rN"),
                         insertBefore(u"\r"),
                         setText(u"N"),
                         setText(u"1\r2\r"),
                         remove,
                         setText(u"\tN\v\U0001F4DC<&>")};

/// Any two operations one after the other leave the document that they leave in memory, also in its file. The
/// writer of main text is that of notes and boxes, where each operation has but one after it.
TEST(Edits, AtEveryKindOfPlaceAreTheSameInEveryFormat) {
  for (const Medium& medium : media()) {
    const bool isMain = medium.place == document::Place::main;
    int tried = 0;
    std::istringstream places(kPlaces);
    for (std::string place; std::getline(places, place);) {
      const std::optional<Original> original = originalIn(medium, place);
      if (!original) continue;
      std::vector<Edit> operations(std::begin(kChanges), std::end(kChanges));
      if (original->open().holdsHighlight)
        operations.insert(operations.end(), std::begin(kHighlights), std::end(kHighlights));
      const std::size_t count = operations.size();
      for (std::size_t i = 0; i < count * count; ++i) {
        const std::size_t first = i / count;
        const std::size_t second = i % count;
        if (!isMain && second != (first + 1) % count) continue;
        ++tried;
        SCOPED_TRACE(testing::Message() << medium.name << ": " << place << ", " << i);
        Sample expected(place);
        Kept kept = original->open();
        for (const std::size_t which : {first, second}) {
          operations[which](expected);
          operations[which](kept.sample);
        }
        EXPECT_EQ(kept.sample.print(), expected.print());
        EXPECT_EQ(notation::damageOf(kept.sample.story()), "");
        kept.expectToSurviveASave();
        if (HasFailure()) return;
      }
    }
    EXPECT_GT(tried, isMain ? 500 : 100) << medium.name;
  }
}

TEST(Edits, ThatCutACharacterInTwoAreRefused) {
  for (const Medium& medium : media()) {
    if (medium.holdsHalves) continue;
    for (const text::Span half : {text::Span{1, 2}, text::Span{4, 6}}) {
      SCOPED_TRACE(medium.name);
      std::optional<Kept> kept = keptIn(medium, "a\U0001F4DC\U0001F58Bz");
      kept->sample.story().replace(half, u"", text::View::results);
      EXPECT_THROW(kept->expectToSurviveASave(), errors::DocumentError);
    }
  }
}

/// What a file could not hold is refused before anything changes.
TEST(Edits, ThatNoFileCouldHoldAreRefusedBeforehand) {
  const std::string rtf = "{\\rtf1{\\fonttbl{\\f0 A;}}";
  const struct {
    Medium medium;
    std::string file;
    text::Span span;
    std::u16string text;
    bool isRefused = true;
  } cases[] = {
      {rtfMedium(), rtf + "a{\\*\\nesttableprops\\trowd\\nestrow}b\\par c\\par}", {0, 0}, u"n"},
      {rtfMedium(), rtf + "a\\pict 00}", {1, 1}, u"n"},
      {rtfMedium(), rtf + "a\\pict 00}", {2, 2}, u"n"},
      // Living text, new or old, in paragraphs that are deleted as a whole.
      {htmlMedium(), "<p>x</p><del><p>a</p></del><p>y</p>", {2, 2}, u"n"},
      {htmlMedium(), "<p>x</p><del><p>a</p></del><p>y</p>", {1, 2}, u""},
      {htmlMedium(), "<p>x</p><del><p>a</p></del><p>y</p>", {1, 3}, u"n"},
      {htmlMedium(), "<p>x</p><del><p>a</p></del><p>y</p>", {3, 3}, u"n", false},
      {htmlMedium(), "<p>x</p><del><p>a</p></del><p>y</p>", {3, 4}, u"n\rm", false},
      {htmlMedium(), "<p>x</p><del><p>a</p></del><p>y</p>", {0, 4}, u"", false},
  };
  for (const auto& [medium, file, span, text, isRefused] : cases) {
    SCOPED_TRACE(testing::Message() << file << " from " << span.from << " to " << span.to);
    OpenedFile opened = openAll(*medium.format, file);
    bool wasRefused = false;
    try {
      if (span.empty()) {
        opened.model.insertBefore(span.from, text);
      } else {
        opened.model.replace(span, text, text::View::results);
      }
    } catch (const errors::Fault& fault) {
      wasRefused = fault.problem == errors::Problem::unsupported;
    }
    EXPECT_EQ(wasRefused, isRefused);
    EXPECT_EQ(opened.document.changed(), !isRefused);
    const OpenedFile again = openAll(*medium.format, opened.written());
    EXPECT_EQ(notation::print(again.model), notation::print(opened.model));
  }
}

}  // namespace
}  // namespace pluvo::formats
