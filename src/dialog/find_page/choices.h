#pragma once

#include "errors/context.h"
#include "forms/input_boxes.h"
#include "forms/message_boxes.h"
#include "page.h"

#include <cstddef>
#include <string>

namespace pluvo::dialog {

/// The choices of the find page. They refuse values that are in no list, and switch off fields that an
/// operation does not need. They ask for the text that a chosen place needs. Keeps nothing: it reads the
/// controls afresh.
class Choices {
 public:
  /// All outlive it.
  Choices(FindPage& page, errors::Context& context, forms::MessageBoxes& boxes, forms::InputBoxes& inputs);

  /// Whether the chosen place can be operated on. Where not, the user is told, and the place is again the
  /// whole selection.
  bool CheckBlockTexts();

 private:
  void refuseWhatIsNotListed(forms::ComboBox& list, std::u16string_view tag);
  bool IsValueInList(std::u16string_view name, std::size_t column);
  void cboxNumberDistanceApart_BeforeUpdate(bool& cancel);
  void cboxNumberDistanceApart_Change();
  void cboxProcOperation1_Change();
  void cboxProcSelection1_Change();
  void refuse(const std::u16string& text) const;

  FindPage& page_;
  errors::Context& context_;
  forms::MessageBoxes& boxes_;
  forms::InputBoxes& inputs_;
};

}  // namespace pluvo::dialog
