#pragma once

#include "forms/doubles.h"
#include "forms/form.h"
#include "user.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pluvo::forms {

/// One of each kind on two pages, and a button on the form itself.
class SampleForm final : public Form {
 public:
  explicit SampleForm(FormHost& host) : Form(host, u"frmSample", u"A & B") {
    pages.add(first);
    for (Control* control :
         std::vector<Control*>{&label, &line, &lines, &check, &combo, &list, &link, &picture})
      first.add(*control);
    pages.add(second);
    second.add(other);
    int row = 0;
    for (Control* control : first.controls()) control->Cell({row++, 0, 1, 12});
    lines.MultiLine(true);
    link.IsLink(true);
    combo.AddItem(u"Insert", u"1");
    combo.AddItem(u"Delete", u"3");
    list.MultiSelect(true);
    list.items({u"a & b", u"b", u"c", u"d"});
    add(pages);
    add(button);
  }

  MultiPage pages{u"pages"};
  Page first{u"pgOne", u"One & Two", u"Tip && so"};
  Page second{u"pgTwo", u"&More", u""};
  Label label{u"label", u"Find & Replace"};
  TextBox line{u"line"};
  TextBox lines{u"lines"};
  CheckBox check{u"check", u"&Tick && tie"};
  ComboBox combo{u"combo"};
  ListBox list{u"list"};
  Label link{u"link", u"A <link> & so"};
  Picture picture{u"picture", u"*"};
  TextBox other{u"other"};
  CommandButton button{u"button", u"&Go"};
};

/// The sample before a user, whose means each renderer's tests bring (user.h). What the user does goes the
/// widgets' own way, and all that comes of it is done when the call returns. Keys go to what has the focus.
///
/// The look of a control in words: its text without the marks of keys. "[x] " stands before a ticked one, "*"
/// before selected rows, " of 3" after a text with rows to choose from. "off: " stands before what cannot be
/// used, "-" where there is nothing.
///
/// Each press is written down: "b" for the button, "l" for the link.
class ShownForm : public testing::Test {
 protected:
  ShownForm() {
    user.form = &form;
    form.button.Click.handledBy([this] { pressed += 'b'; });
    form.link.Click.handledBy([this] { pressed += 'l'; });
  }
  /// All but the picture.
  std::vector<std::string> seen() {
    std::vector<std::string> all;
    for (const Control* control :
         std::vector<const Control*>{&form.pages, &form.label, &form.line, &form.lines, &form.check,
                                     &form.combo, &form.list, &form.link, &form.other, &form.button})
      all.push_back(user.seen(*control));
    return all;
  }
  void typeInto(const Control& box, const std::u16string& text) {
    user.focus(box);
    user.markAll();
    user.type(text);
  }

  ScriptedBoxes boxes;
  User user{boxes};
  SampleForm form{user.host};
  std::string pressed;
};

}  // namespace pluvo::forms
