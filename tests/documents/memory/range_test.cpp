#include "documents/support/notation.h"

namespace pluvo {
namespace {

using notation::Sample;

TEST(Notation, PrintsWhatItParsed) {
  for (const char* line : {
           "plain¶",
           "one [atwo[b a]threeb]¶[cc]¶",
           "a{PAGE |3}b{X}¶",
           "{IF {A|1}|{B|2}}¶",
           "a¶⟦a1¦<7:b1¦>‖x¶⟦n¦‖⟧y¦z¦‖⟧⟦t¦‖⟧b§c¶",
           "a<h:b{c|d}e>f<h3:g><3:h>¶",
           "\\{\\[a\\]\\¶\\\\¶",
       }) {
    EXPECT_EQ(Sample(line).print(), line);
  }
}

}  // namespace
}  // namespace pluvo
