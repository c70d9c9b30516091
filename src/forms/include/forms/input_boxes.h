#pragma once

#include <string>

namespace pluvo::forms {

/// Boxes in which the user answers with a text.
class InputBoxes {
 public:
  virtual ~InputBoxes() = default;
  /// Empty where the user cancels.
  virtual std::u16string ask(const std::u16string& prompt, const std::u16string& title) = 0;
};

}  // namespace pluvo::forms
