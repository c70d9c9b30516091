#pragma once

#include "formats/media/media.h"
#include "support/invariants.h"
#include "support/notation.h"

#include <functional>
#include <string>

namespace pluvo::formats {

/// Edits of the range a of a sample, for tables of cases.
using Edit = std::function<void(notation::Sample&)>;

inline Edit setText(std::u16string text) {
  return [=](notation::Sample& sample) { sample.range('a').Text(text); };
}
inline Edit insertBefore(std::u16string text) {
  return [=](notation::Sample& sample) { sample.range('a').InsertBefore(text); };
}
inline Edit insertAfter(std::u16string text) {
  return [=](notation::Sample& sample) { sample.range('a').InsertAfter(text); };
}
inline Edit highlight(std::int32_t colour) {
  return [=](notation::Sample& sample) { sample.range('a').HighlightColorIndex(colour); };
}
inline void remove(notation::Sample& sample) { sample.range('a').Delete(); }

struct EditCase {
  const char* before;
  Edit edit;
  const char* after;
};

/// In every medium that holds such documents.
inline void expectEdits(std::initializer_list<EditCase> cases) {
  for (const Medium& medium : media()) {
    for (const auto& [before, edit, after] : cases) {
      SCOPED_TRACE(medium.name + ": " + before);
      std::optional<Kept> kept = keptIn(medium, before);
      if (!kept) continue;
      edit(kept->sample);
      EXPECT_EQ(kept->sample.print(), notation::Sample(after).print());
      EXPECT_EQ(notation::damageOf(kept->sample.story()), "");
      kept->expectToSurviveASave();
    }
  }
}

}  // namespace pluvo::formats
