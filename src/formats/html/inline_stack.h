#pragma once

#include "tokens.h"

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace pluvo::formats::html {

/// The looks that inline elements give the text in them.
struct State {
  bool hidden = false;
  bool silent = false;  ///< no text: the label of a list, the text above a ruby
  bool deleted = false;
  bool inserted = false;
  bool bold = false;
  bool italic = false;
  bool underlined = false;
  bool struck = false;
  bool spaceRun = false;  ///< no-break spaces are blanks
  enum class Blanks : std::uint8_t { asAround, fold, count };
  Blanks blanks = Blanks::asAround;
  std::uint8_t colour = 0;  ///< of the highlight, Word's colour index
};

/// An open inline element with those around it.
struct Inline {
  std::int32_t parent = -1;
  Name name = Name::unknown;
  Extent tag;      ///< of its start tag
  Extent tagName;  ///< in it
  State state;     ///< with that of its parents
  bool carriesColour = false;
  bool isOurs = false;  ///< a span of nothing but a highlight
  bool stands = false;  ///< has an id or a name: stays where it lost its text
};

/// The inline elements that are open. An element keeps its number to the end of the paragraph in which it was
/// open. So one number says which elements a character lies in.
class InlineStack {
 public:
  explicit InlineStack(std::string_view bytes) : bytes_(bytes) {}

  std::int32_t top() const { return open_.empty() ? -1 : open_.back(); }
  const Inline& operator[](std::int32_t number) const { return all_[static_cast<std::size_t>(number)]; }
  State state() const { return open_.empty() ? State{} : (*this)[top()].state; }
  bool has(Name name) const { return counts_[static_cast<std::size_t>(name)] > 0; }

  /// False where so many are open that one more is passed by.
  bool push(Inline element);
  /// Ends the innermost one of the name; those within stay open. False where none is open.
  bool close(Name name, std::string_view tagName);
  /// Ends the innermost one of the name with those in it.
  void closeThrough(Name name);
  /// Ends what began within a block, formatting apart unless it is a cell.
  void endBlock(std::int32_t topAtBegin, bool isCell);
  /// Forgets those that are not open and were numbered from a number on.
  void forget(std::size_t from);
  std::size_t numbered() const { return all_.size(); }

  /// From the outermost to the one of a number.
  std::vector<std::int32_t> chainOf(std::int32_t number) const;

 private:
  static constexpr std::size_t kDeepest = 512;
  static constexpr std::size_t kMostNumbered = 200'000;
  static constexpr std::size_t kMostReopened = 64;

  bool isSame(std::int32_t number, Name name, std::string_view tagName) const;
  void pop();
  void reopen(std::int32_t number);
  std::string_view nameIn(const Inline& element) const {
    return bytes_.substr(element.tagName.begin, element.tagName.size());
  }

  std::string_view bytes_;
  std::vector<Inline> all_;
  std::vector<std::int32_t> open_;
  std::array<std::uint16_t, static_cast<std::size_t>(Name::count)> counts_{};
};

}  // namespace pluvo::formats::html
