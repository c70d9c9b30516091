#pragma once

#include "document/document.h"
#include "document/place.h"
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

/// The finds of a request in the texts that it did not work in.
struct Elsewhere {
  std::array<std::int64_t, document::kPlaces> stories{};  ///< whole blocks, by document::Place
  std::array<std::int64_t, formats::kUnreached>
      unreached{};  ///< occurrences of the beginning, by formats::Unreached
  std::array<bool, formats::kOpaque> notLookedInto{};
  std::vector<Damage> damaged;

  /// Whether anything is counted in stories or unreached.
  bool any() const;
  Elsewhere& operator+=(const Elsewhere& other);
};

/// Names that scripts rely on: "hidden", "objects".
std::string_view keyOf(formats::Unreached kind);
std::string_view keyOf(formats::Opaque kind);
/// Words that follow a number and "in": "hidden text"; of parts not looked into: "pictures".
std::string_view wordsOf(formats::Unreached kind);
std::string_view wordsOf(formats::Opaque kind);

/// Looks for the blocks and the beginnings of requests, which are counted together. In the stories that a
/// request works in only the beginning counts, where its view does not show it. Called after the passes and
/// before saving, over the stories as they left them: what they deleted does not count. The source tells of
/// the stories that the document does not have.
Elsewhere lookElsewhere(const formats::Source& source, const document::Document& document,
                        std::span<const engine::Request> requests);

}  // namespace pluvo::elsewhere
