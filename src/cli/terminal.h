#pragma once

#include "word/enums.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace pluvo::cli {

/// Puts colours around pieces of output, or does not: one object for each stream.
class Style {
 public:
  explicit Style(bool colored) : colored_(colored) {}
  /// For a stream of this process: coloured when it is a terminal that can, and NO_COLOR is not set.
  static Style forStream(int descriptor);

  bool colored() const { return colored_; }

  std::string heading(std::string_view text) const { return paint("1", text); }
  std::string file(std::string_view text) const { return paint("35", text); }
  std::string number(std::string_view text) const { return paint("32", text); }
  std::string match(std::string_view text) const { return paint("1;31", text); }
  std::string added(std::string_view text) const { return paint("1;32", text); }
  std::string error(std::string_view text) const { return paint("1;31", text); }
  /// Black or white on the highlight's colour.
  std::string highlighted(std::string_view text, word::WdColorIndex color) const;

 private:
  std::string paint(std::string_view codes, std::string_view text) const;
  bool colored_;
};

/// Whether a person sits at the other end of the stream.
bool isTerminal(int descriptor);

/// Whether a terminal moves its cursor back when it is told to.
bool movesCursor();

/// How many columns it has; none where that is not known.
std::optional<std::size_t> columnsOf(int descriptor);

}  // namespace pluvo::cli
