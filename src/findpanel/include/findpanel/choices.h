#pragma once

#include "errors/context.h"
#include "forms/form.h"
#include "forms/input_boxes.h"
#include "forms/message_boxes.h"

#include <cstddef>
#include <string>

namespace pluvo::findpanel {

/// What can be chosen on the find page: refuses what is in no list, switches what an operation does not need
/// off, and asks for the text that a place to operate on needs. Keeps nothing: it reads the controls afresh.
class Choices {
 public:
  /// All outlive it; the form has the find page's controls.
  Choices(forms::Form& form, errors::Context& context, forms::MessageBoxes& boxes, forms::InputBoxes& inputs);

  /// Whether the chosen place can be operated on. Where not, the user is told, and the place is again the
  /// whole selection.
  bool CheckBlockTexts();

 private:
  void refuseWhatIsNotListed(const char16_t* name, std::u16string_view tag);
  bool IsValueInList(const std::u16string& name, std::size_t column);
  void cboxNumberDistanceApart_BeforeUpdate(bool& cancel);
  void cboxNumberDistanceApart_Change();
  void cboxProcOperation1_Change();
  void cboxProcSelection1_Change();
  bool isEmpty(std::u16string_view textBox) const;
  void refuse(const std::u16string& text) const;

  forms::Form& form_;
  errors::Context& context_;
  forms::MessageBoxes& boxes_;
  forms::InputBoxes& inputs_;
};

}  // namespace pluvo::findpanel
