#pragma once

#include "dialog/frmPassword.h"
#include "forms/message_boxes.h"

#include <string>

/// Questions and messages about a file of a run. A question's answer is whether it was yes.
namespace pluvo::multifile {

bool skipTemporaryFile(forms::MessageBoxes& boxes);
bool goOnReadOnly(forms::MessageBoxes& boxes);
/// Of a document that recommends it, by its name.
bool openToRead(forms::MessageBoxes& boxes, const std::u16string& name);
bool skipWithWrongPassword(forms::MessageBoxes& boxes);
bool openAgain(forms::MessageBoxes& boxes);
/// By which password the document's protection is lifted; false: the file is skipped.
bool passwordForForm(dialog::frmPassword& prompt, forms::MessageBoxes& boxes, std::u16string& password);
/// By which password an encrypted file is opened; false: it is not opened.
bool passwordToOpen(dialog::frmPassword& prompt, const std::u16string& name, std::u16string& password);
/// By which password a reserved file may be changed; false: it is opened to be read.
bool passwordToModify(dialog::frmPassword& prompt, const std::u16string& name, std::u16string& password);
bool cancelSaveAs(forms::MessageBoxes& boxes);
/// The original could not be copied: whether the changed file is saved all the same.
bool saveWithoutOriginal(forms::MessageBoxes& boxes, const std::u16string& path);
void tellOfDifficultiesClosing(forms::MessageBoxes& boxes, const std::u16string& fileName);

}  // namespace pluvo::multifile
