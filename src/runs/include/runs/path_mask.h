#pragma once

#include "scanner/mask.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::runs {

/// A mask that nothing can match: a sentence that says why.
class MaskError : public std::runtime_error {
 public:
  using runtime_error::runtime_error;
};

/// A mask over paths below a folder. Letter case is ignored.
///
///     *.bak        names, at whatever depth (see scanner/mask.h)
///     old/*.txt    a slash: the path below the folder, step by step, so that * and ? stand for no slash
///     a/**/b       a step **: any number of steps; at the end at least one
///     ./old        entries right in the folder
///     old/         a slash at the end: folders, here those of that name at whatever depth
class PathMask {
 public:
  /// Throws MaskError where nothing below a folder can match.
  explicit PathMask(std::string_view text);

  /// A path has slashes between its steps, and none at its ends.
  bool matches(std::u16string_view path, bool isFolder) const;
  /// Whether the mask is for the file itself, or for a folder that it lies in.
  bool takesFile(std::u16string_view path) const;

 private:
  bool matchesSteps(std::u16string_view path) const;

  bool foldersOnly_ = false;
  bool anywhere_ = true;  ///< a name alone, at whatever depth
  /// Nothing for a step **.
  std::vector<std::optional<scanner::Mask>> steps_;
};

}  // namespace pluvo::runs
