#pragma once

#include "moved_places.h"
#include "new_pages.h"
#include "word_file.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace pluvo::doc {

/// The pieces of the new version in the making, front to back.
class NewPieces {
 public:
  explicit NewPieces(const Text& text) : text_(text) {}

  /// Old text stays, maybe in another highlight.
  void keep(text::Position from, text::Position to, std::optional<std::uint8_t> colour = std::nullopt);
  void drop(text::Position from, text::Position to) { places_.add(from, 0, to - from); }
  /// New text that lies at a byte comes before an old place.
  void put(text::Position before, std::uint32_t offset, text::Position length, const std::string& properties,
           bool hasMark);

  const MovedPlaces& places() const { return places_; }

  /// Gives every stretch its highlight, in the properties of its piece where these suffice. The
  /// stretches left to the pages come in the order of their bytes.
  std::vector<Recoloured> applyHighlights();

  /// The table, after applyHighlights.
  std::string table() const;
  std::vector<Piece> pieces() const;

 private:
  struct Stretch {
    Piece piece;                         ///< with its new places
    std::size_t old = 0;                 ///< the number of the piece it is of
    std::optional<std::uint8_t> colour;  ///< that it is to get
  };

  void add(const Stretch& stretch);
  void join();
  bool fitsPages(const Stretch& stretch, const std::vector<bool>& shared);
  bool hasMark(const Piece& piece) const;
  std::vector<bool> sharedPieces() const;
  void recolour(Stretch& stretch);
  std::optional<std::uint8_t> colourInPages(const Piece& piece) const;
  std::uint16_t prmFor(const std::string& properties);

  const Text& text_;
  MovedPlaces places_;
  std::vector<Stretch> stretches_;
  text::Position length_ = 0;
  FormattedPages::Place place_;     ///< where formatting was looked for last …
  FormattedPages::Extent sound_{};  ///< … and what its page is for, if that is sound
  std::vector<std::string> newGroups_;
  std::map<std::string, std::uint16_t> knownGroups_;
};

}  // namespace pluvo::doc
