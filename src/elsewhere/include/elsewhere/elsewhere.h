#pragma once

#include "document/story.h"
#include "engine/request.h"
#include "formats/format.h"
#include "formats/other_texts.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::elsewhere {

/// A part of a document that could not be looked into.
struct Damage {
  std::string part;  ///< its name in the document
  std::string why;   ///< a sentence for the user
};

/// What a request would have met where it did not work.
struct Elsewhere {
  std::array<std::int64_t, formats::kOtherStories> stories{};  ///< whole blocks, by formats::OtherStory
  std::array<std::int64_t, formats::kUnreached>
      unreached{};  ///< occurrences of the beginning, by formats::Unreached
  std::array<bool, formats::kOpaque> notLookedInto{};
  std::vector<Damage> damaged;

  /// Whether anything is counted in stories or unreached.
  bool any() const;
  Elsewhere& operator+=(const Elsewhere& other);
};

/// Names that scripts rely on: "headers", "hidden", "objects".
std::string_view keyOf(formats::OtherStory kind);
std::string_view keyOf(formats::Unreached kind);
std::string_view keyOf(formats::Opaque kind);
/// Words that follow a number and "in": "headers", "hidden text"; of what is not looked into: "pictures".
std::string_view wordsOf(formats::OtherStory kind);
std::string_view wordsOf(formats::Unreached kind);
std::string_view wordsOf(formats::Opaque kind);

/// Looks for the blocks and the beginnings of requests, which are counted together. Called after the passes
/// and before saving, over main text as they left it: what they deleted does not count, nor does what they
/// wrote.
Elsewhere lookElsewhere(const formats::Source& source, const document::Story& main,
                        std::span<const engine::Request> requests);

}  // namespace pluvo::elsewhere
