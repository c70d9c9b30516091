#include "forms_win32/boxes.h"

#include "forms/text_box.h"
#include "text.h"
#include "thread_windows.h"

namespace pluvo::forms_win32 {

namespace {

UINT kindOf(forms::Buttons buttons) {
  switch (buttons) {
    case forms::Buttons::yesNo:
      return MB_YESNO | MB_ICONQUESTION;
    case forms::Buttons::yesNoCancel:
      return MB_YESNOCANCEL | MB_ICONQUESTION;
    case forms::Buttons::ok:
      break;
  }
  return MB_OK;
}

/// One question, answered with a text.
class InputForm final : public forms::Form {
 public:
  InputForm(forms::FormHost& host, const std::u16string& prompt, const std::u16string& title)
      : Form(host, u"InputBox", title), prompt_(u"lblPrompt", prompt) {
    ok_.Default(true);
    add(prompt_);
    add(text_);
    add(ok_);
    add(cancel_);
    ok_.Click.handledBy([this] {
      answer_ = text_.Text();
      Hide();
    });
    cancel_.Click.handledBy([this] { Hide(); });
    SetFocus(text_);
  }
  const std::u16string& answer() const { return answer_; }

 private:
  forms::Label prompt_;
  forms::TextBox text_{u"txtAnswer"};
  forms::CommandButton ok_{u"cmdOK", u"OK"};
  forms::CommandButton cancel_{u"cmdCancel", u"Cancel"};
  std::u16string answer_;
};

}  // namespace

forms::Answer Win32MessageBoxes::show(const std::u16string& text, forms::Buttons buttons,
                                      const std::optional<std::u16string>& title) {
  HWND above = GetActiveWindow();
  if (above == nullptr && owner) above = owner();
  const std::u16string& caption = title ? *title : title_;
  const ThreadWindows others(above);
  switch (MessageBoxW(above, wide(text), wide(caption), kindOf(buttons) | MB_SETFOREGROUND)) {
    case IDYES:
      return forms::Answer::yes;
    case IDNO:
      return forms::Answer::no;
    case IDOK:
      return forms::Answer::ok;
    default:
      break;
  }
  // Closed, or there is no box to be had.
  if (buttons == forms::Buttons::ok) return forms::Answer::ok;
  return buttons == forms::Buttons::yesNo ? forms::Answer::no : forms::Answer::cancel;
}

std::u16string Win32InputBoxes::ask(const std::u16string& prompt, const std::u16string& title) {
  InputForm form(host_, prompt, title);
  form.ShowModal();
  return form.answer();
}

}  // namespace pluvo::forms_win32
