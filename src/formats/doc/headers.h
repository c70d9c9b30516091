#pragma once

#include "word_file.h"

#include <array>
#include <functional>
#include <optional>
#include <vector>

namespace pluvo::doc {

/// The headers and footers of a document's sections. A section without a text of a kind has that of the
/// section before.
class Headers {
 public:
  static constexpr std::size_t kKinds = 6;
  static constexpr std::size_t kSeparators = 6;  ///< of notes, before the headers

  explicit Headers(const Text& text);

  /// How many texts the table has, separators included.
  std::size_t count() const { return kSeparators + sections_.size() * kKinds; }

  /// The section breaks with which a text of the table of headers goes. Once all of them have gone it belongs
  /// to no section. Empty where it stays in any case.
  std::vector<text::Position> anchorsOf(std::size_t number) const;

  /// Whether the section break at a place may go: the texts of its section would get into disorder, or a
  /// shape would lose its place.
  bool mayGo(text::Position sectionBreak) const;

  /// The table as it is when section breaks go, and what texts go then.
  struct Left {
    std::vector<std::optional<text::Span>> texts;  ///< in the order of the table, after the separators
    std::vector<text::Span> gone;
  };
  /// Nothing where no section break goes, and throws DocumentError (unsupported) where one may not.
  std::optional<Left> without(const std::function<bool(text::Position)>& isGone) const;

 private:
  using Section = std::array<std::optional<text::Span>, kKinds>;

  std::vector<Section> sections_;
  std::vector<text::Position> breaks_;  ///< where the mark of each section but the last one stands
  std::vector<bool> mayGo_;             ///< of each of them
};

}  // namespace pluvo::doc
