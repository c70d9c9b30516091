#pragma once

#include "model/content.h"
#include "text/pieces.h"
#include "text/positions.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace pluvo::model {

/// Where new text gets its formatting, and on which side of it it stands.
enum class Beside { before, behind, insteadOf };

/// A document in memory: its text, what each character looks like and belongs to, and the live ranges over
/// it. All edits go through here, under one policy for every format (edit_policy.h). Knows no file and no
/// format.
class Model {
 public:
  explicit Model(Content content);

  const text::PieceText& text() const;
  const text::RunMap<std::uint8_t>& highlight() const;
  const text::RunMap<text::Visibility>& visibility() const;
  const text::RunMap<Structure>& structure() const;
  text::Position length() const;

  /// Whether anything differs from what the reader found.
  bool changed() const;
  /// Grows with every edit of the text (not of the highlight).
  std::uint64_t stamp() const;
};

}  // namespace pluvo::model
