#include "forms/check_box.h"

#include "errors/fault.h"
#include "errors/numbers.h"

namespace pluvo::forms {

namespace {

bool sameLetters(const std::u16string& text, std::u16string_view capitals) {
  if (text.size() != capitals.size()) return false;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char16_t letter = text[at];
    const bool small = letter >= u'a' && letter <= u'z';
    if ((small ? letter - u'a' + u'A' : letter) != capitals[at]) return false;
  }
  return true;
}

}  // namespace

void CheckBox::valueText(const std::u16string& text) {
  if (sameLetters(text, u"TRUE")) return Value(true);
  if (sameLetters(text, u"FALSE")) return Value(false);
  Value(errors::toInteger(text) != 0);
}

}  // namespace pluvo::forms
