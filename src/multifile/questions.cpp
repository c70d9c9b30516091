#include "multifile/questions.h"

namespace pluvo::multifile {

namespace {

bool ask(forms::MessageBoxes& boxes, const std::u16string& text, const char16_t* title) {
  return boxes.show(text, forms::Buttons::yesNo, title) == forms::BoxAnswer::yes;
}

}  // namespace

bool skipTemporaryFile(forms::MessageBoxes& boxes) {
  return ask(boxes,
             u"This filename begins with a tilde  ~  .\r\n\r\n"
             u"This typically defines a file that is an open temporary file.\r\n\r\n"
             u"Would you like to skip this file?",
             u"Potential Temporary File");
}

bool goOnReadOnly(forms::MessageBoxes& boxes) {
  return ask(boxes,
             u"This file is marked Read Only.\r\n\r\n"
             u"Would you like to like to continue processing this file and perform a 'Save As' later?",
             u"Read Only File");
}

bool openToRead(forms::MessageBoxes& boxes, const std::u16string& name) {
  return ask(boxes,
             name + u" recommends to be opened as Read Only.\r\n\r\nWould you like to open it as Read Only?",
             u"Read Only Recommended");
}

bool skipWithWrongPassword(forms::MessageBoxes& boxes) {
  return ask(boxes, u"The Password supplied was incorrect.  Would you like to Skip this file?",
             u"Incorrect Password");
}

bool openAgain(forms::MessageBoxes& boxes) {
  return ask(boxes, u"Open/Modify password was incorrect.  Would you like to try and open the file again?",
             u"Incorrect Open/Modify Password");
}

bool passwordForForm(dialog::frmPassword& prompt, forms::MessageBoxes& boxes, std::u16string& password) {
  while (!prompt.RetrievePassword(password, u"Input Password to Unlock Form.")) {
    if (ask(boxes, u"Would you like to Skip this file?", u"Skip File?")) return false;
  }
  return true;
}

bool passwordToOpen(dialog::frmPassword& prompt, const std::u16string& name, std::u16string& password) {
  return prompt.RetrievePassword(password, u"Input Password to Open " + name + u".");
}

bool passwordToModify(dialog::frmPassword& prompt, const std::u16string& name, std::u16string& password) {
  return prompt.RetrievePassword(
      password, u"Input Password to Modify " + name + u".  Without it the file is Read Only.");
}

bool cancelSaveAs(forms::MessageBoxes& boxes) {
  return ask(boxes, u"Are you sure you want cancel the Save As?", u"Save As Cancelled.");
}

bool saveWithoutOriginal(forms::MessageBoxes& boxes, const std::u16string& path) {
  return ask(
      boxes,
      u"The original of this file could not be copied:\r\n" + path +
          u"\r\n\r\nWould you like to save the changed file all the same?  If not, it stays as it was.",
      u"Original Not Copied");
}

void tellOfDifficultiesClosing(forms::MessageBoxes& boxes, const std::u16string& fileName) {
  boxes.show(u"Difficulties closing file:" + fileName + u"\r\n\r\nYou may need to manually close this file.",
             forms::Buttons::ok, u"Difficulties Closing Current File.");
}

}  // namespace pluvo::multifile
