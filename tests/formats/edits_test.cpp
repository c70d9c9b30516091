#include "formats/media/edits.h"

#include "errors/document_error.h"

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
    "a[ab¶⟦xa]y¦‖⟧z\n⟦x[ay¦‖⟧b¶a]c\na¶[a⟦⟦x¦‖⟧y¦z¦‖⟧b¶a]c\n⟦x¦‖⟧[ab¶a]⟦y¦‖⟧\none[a§a]two\n"
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

/// Any two operations one after the other leave the document that they leave in memory, also in its file.
TEST(Edits, AtEveryKindOfPlaceAreTheSameInEveryFormat) {
  for (const Medium& medium : media()) {
    int tried = 0;
    std::istringstream places(kPlaces);
    for (std::string place; std::getline(places, place);) {
      if (!keptIn(medium, place)) continue;
      std::vector<Edit> operations(std::begin(kChanges), std::end(kChanges));
      if (keptIn(medium, place)->holdsHighlight)
        operations.insert(operations.end(), std::begin(kHighlights), std::end(kHighlights));
      for (std::size_t i = 0; i < operations.size() * operations.size(); ++i, ++tried) {
        SCOPED_TRACE(testing::Message() << medium.name << ": " << place << ", " << i);
        Sample expected(place);
        Kept kept = *keptIn(medium, place);
        for (const std::size_t which : {i / operations.size(), i % operations.size()}) {
          operations[which](expected);
          operations[which](kept.sample);
        }
        EXPECT_EQ(kept.sample.print(), expected.print());
        EXPECT_EQ(notation::damageOf(kept.sample.story()), "");
        kept.expectToSurviveASave();
        if (HasFailure()) return;
      }
    }
    EXPECT_GT(tried, 500) << medium.name;
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

}  // namespace
}  // namespace pluvo::formats
