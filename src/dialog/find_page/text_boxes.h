#pragma once

#include "errors/context.h"
#include "forms/message_boxes.h"
#include "pages.h"
#include "word/word_processor.h"

#include <cstdint>
#include <functional>
#include <string_view>

namespace pluvo::dialog {

/// The find page's text boxes: bring in the document's selection, with Ctrl+V where the user wants
/// that, or with the right mouse button. The inside text can be used where beginning and ending are there.
class TextBoxes {
 public:
  using WordProcessor = std::function<word::Application&()>;

  /// All outlive it.
  TextBoxes(Pages& pages, errors::Context& context, forms::MessageBoxes& boxes, WordProcessor application);

 private:
  void handle(forms::TextBox& box, std::u16string_view keyUpTag, std::u16string_view mouseUpTag);
  void handleChange(forms::TextBox& box, std::u16string_view tag);
  void keyUp(forms::TextBox& box, std::int16_t code, std::int16_t shift);
  void mouseUp(forms::TextBox& box, std::int16_t button);

  Pages& pages_;
  errors::Context& context_;
  forms::MessageBoxes& boxes_;
  WordProcessor application_;
};

}  // namespace pluvo::dialog
