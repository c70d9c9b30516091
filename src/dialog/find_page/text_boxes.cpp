#include "text_boxes.h"

#include "placing.h"

#include <memory>
#include <utility>

namespace pluvo::dialog {

namespace {

std::shared_ptr<word::Selection> selectionOf(word::Application& application) {
  auto selection = application.Selection();
  if (selection == nullptr) throw errors::objectNotSet();
  return selection;
}

}  // namespace

TextBoxes::TextBoxes(Pages& pages, errors::Context& context, forms::MessageBoxes& boxes,
                     WordProcessor application)
    : pages_(pages), context_(context), boxes_(boxes), application_(std::move(application)) {
  FindPage& find = pages_.pgFindAndReplace;
  handleChange(find.txtBeginText, u"FF:30");
  handle(find.txtBeginText, u"FF:31", u"FF:32");
  handleChange(find.txtEndText, u"FF:33");
  handle(find.txtEndText, u"FF:34", u"FF:35");
  handle(find.txtInsideText1, u"FF:37", u"FF:38");
  handle(find.txtTextToEnter, u"FF:39", u"FF:40");
}

void TextBoxes::handle(forms::TextBox& box, std::u16string_view keyUpTag, std::u16string_view mouseUpTag) {
  box.KeyUp.handledBy([this, &box, keyUpTag](std::int16_t code, std::int16_t shift) {
    errors::guarded(context_, keyUpTag, [&] { keyUp(box, code, shift); });
  });
  box.MouseUp.handledBy([this, &box, mouseUpTag](std::int16_t button) {
    errors::guarded(context_, mouseUpTag, [&] { mouseUp(box, button); });
  });
}

void TextBoxes::handleChange(forms::TextBox& box, std::u16string_view tag) {
  box.Change.handledBy([this, tag] {
    errors::guarded(context_, tag, [&] {
      FindPage& find = pages_.pgFindAndReplace;
      switchOn(find.txtInsideText1, !find.txtBeginText.Text().empty() && !find.txtEndText.Text().empty());
    });
  });
}

/// The box has already taken the clipboard's text when the key comes up; the selection replaces it.
void TextBoxes::keyUp(forms::TextBox& box, std::int16_t code, std::int16_t shift) {
  if (!pages_.Options.chkControlVButton.Value() || shift != forms::kControl) return;
  if (code != forms::kVKey) return;
  constexpr std::int32_t kFewest = 2;  // an insertion point counts one
  const auto selection = selectionOf(application_());
  if (selection->Characters().Count() >= kFewest) box.Text(selection->Text());
}

void TextBoxes::mouseUp(forms::TextBox& box, std::int16_t button) {
  if (button != forms::kRight) return;
  const forms::BoxAnswer answer = boxes_.show(u"Insert Highlighted Data?", forms::Buttons::yesNo,
                                              u"Right-Click Paste Selection Operation");
  if (answer == forms::BoxAnswer::yes) box.Text(selectionOf(application_())->Text());
}

}  // namespace pluvo::dialog
