#pragma once

#include "errors/text.h"
#include "forms/doubles.h"
#include "forms_win32/forms.h"

#include <commctrl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

namespace pluvo::forms_win32 {

/// One of each kind on two pages, and a button on the form itself.
class SampleForm final : public forms::Form {
 public:
  explicit SampleForm(forms::FormHost& host) : Form(host, u"frmSample", u"A & B") {
    forms::Page& first = pages.add(u"pgOne", u"One & Two", u"Tip && so");
    for (forms::Control* control :
         std::vector<forms::Control*>{&label, &line, &lines, &check, &combo, &list, &link, &picture})
      first.add(*control);
    pages.add(u"pgTwo", u"&More", u"").add(other);
    int row = 0;
    for (forms::Control* control : first.controls()) control->Cell({row++, 0, 1, 12});
    lines.MultiLine(true);
    link.IsLink(true);
    combo.AddItem(u"Insert", u"1");
    combo.AddItem(u"Delete", u"3");
    list.MultiSelect(true);
    list.items({u"a & b", u"b", u"c"});
    add(pages);
    add(button);
  }

  forms::MultiPage pages{u"pages"};
  forms::Label label{u"label", u"Find & Replace"};
  forms::TextBox line{u"line"};
  forms::TextBox lines{u"lines"};
  forms::CheckBox check{u"check", u"&Tick && tie"};
  forms::ComboBox combo{u"combo"};
  forms::ListBox list{u"list"};
  forms::Label link{u"link", u"A & link"};
  forms::Picture picture{u"picture", u"*"};
  forms::TextBox other{u"other"};
  forms::CommandButton button{u"button", u"&Go"};
};

/// The sample on screen, and a user who works it by window messages.
class ShownForm : public testing::Test {
 protected:
  HWND widget(std::u16string_view name) const { return host.widgetOf(form, name); }
  HWND window() const { return host.windowOf(form); }
  void open() {
    form.Visible(true);
    pump();
  }

  /// Deals with all messages that wait, those that come of them included.
  void pump() {
    MSG message = {};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) host.dispatch(message);
  }
  void post(HWND to, UINT message, WPARAM wparam = 0, LPARAM lparam = 0) {
    PostMessageW(to, message, wparam, lparam);
    pump();
  }
  void key(HWND to, WPARAM code) {
    post(to, WM_KEYDOWN, code, 1);
    post(to, WM_KEYUP, code, 1);
  }
  void type(HWND to, const std::u16string& text) {
    for (const char16_t letter : text) post(to, WM_CHAR, letter, 1);
  }
  /// The thread's keyboard, as the windows see it.
  static void hold(int code, bool down) {
    BYTE keys[256] = {};
    GetKeyboardState(keys);
    keys[code] = down ? 0x80 : 0;
    SetKeyboardState(keys);
  }
  /// What the parent is told of a widget's doing.
  void notify(HWND from, WORD code) {
    SendMessageW(GetParent(from), WM_COMMAND, MAKEWPARAM(0, code), reinterpret_cast<LPARAM>(from));
    pump();
  }

  static std::string text(HWND of) {
    std::u16string text(200, u'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(of, reinterpret_cast<wchar_t*>(text.data()), 200)));
    return errors::utf8(text);
  }
  static LRESULT send(HWND to, UINT message, WPARAM wparam = 0, LPARAM lparam = 0) {
    return SendMessageW(to, message, wparam, lparam);
  }

  forms::ScriptedBoxes boxes;
  Win32Forms host{boxes};
  SampleForm form{host};
};

}  // namespace pluvo::forms_win32
