/// What a user sees of forms and does with them, by whatever toolkit they are shown.
#include "errors/fault.h"
#include "forms_shown/shown_form.h"

#include <functional>
#include <stdexcept>

namespace pluvo::forms {
namespace {

using testing::ElementsAre;

TEST_F(ShownForm, ShowsWhatTheControlsSay) {
  form.line.PasswordChar(u"*");
  form.line.Text(u"abc");
  form.lines.Text(u"one\rtwo\nthree\r\n<b>");
  form.check.Value(true);
  form.combo.Value(u"3");
  form.list.select(2);
  form.link.Enabled(false);
  user.open();
  EXPECT_EQ(user.title(), "A & B");
  EXPECT_THAT(seen(),
              ElementsAre("One & Two", "Find & Replace", "***", "one\ntwo\nthree\n<b>", "[x] Tick & tie",
                          "Delete of 2", "a & b|b|*c|d", "off: A <link> & so", "-", "Go"));
  EXPECT_EQ(form.lines.Text(), u"one\rtwo\nthree\r\n<b>") << "only the user's edit makes line ends alike";

  EXPECT_EQ(user.status(), "-");
  form.StatusText(u"A & B");
  user.settle();
  EXPECT_EQ(user.status(), "A & B");
  form.Caption(u"C");
  form.label.Visible(false);
  form.line.Text(u"");
  form.lines.Text(u"new");
  form.check.Caption(u"Now");
  form.check.Value(false);
  form.combo.Clear();
  form.combo.AddItem(u"Only", u"7");
  form.combo.Text(u"typed & kept");
  form.list.items({u"d"});
  form.button.Enabled(false);
  user.settle();
  EXPECT_EQ(user.title(), "C");
  EXPECT_THAT(seen(), ElementsAre("One & Two", "-", "", "new", "[ ] Now", "typed & kept of 1", "d",
                                  "off: A <link> & so", "-", "off: Go"));
  form.pages.Value(1);
  user.settle();
  EXPECT_THAT(seen(), ElementsAre("More", "-", "-", "-", "-", "-", "-", "-", "", "off: Go"));
}

TEST_F(ShownForm, ShowsTipsLetterForLetter) {
  const std::u16string tip =
      u"a <b> && c  (e.g. *.*), and so much more that it is not to be read on one line of any screen at all";
  form.lines.ControlTipText(tip);
  user.open();
  EXPECT_EQ(user.tip(form.lines), tip);
  EXPECT_EQ(user.tip(form.pages), u"Tip && so");
  form.lines.ControlTipText(u"new");
  EXPECT_EQ(user.tip(form.lines), u"new");
}

TEST_F(ShownForm, PassesOnWhatIsTyped) {
  std::vector<std::int16_t> keys;
  int changes = 0;
  form.line.KeyPress.handledBy([&](std::int16_t key) { keys.push_back(key); });
  form.line.Change.handledBy([&] { ++changes; });
  user.open();
  user.focus(form.line);
  user.type(u"a\u00E9");
  user.key(User::kEnter);
  EXPECT_EQ(form.line.Text(), u"a\u00E9");
  EXPECT_THAT(keys, ElementsAre(u'a', u'\u00E9', kEnterKey));
  EXPECT_EQ(changes, 2);

  user.focus(form.lines);
  for (const int shift : {int{kShift}, int{kControl}}) {
    user.type(u"x");
    user.key(User::kEnter, shift);
  }
  EXPECT_EQ(form.lines.Text(), u"x\r\nx\r\n");
  // A no-break space, a lone surrogate, a byte order mark and a cell's end.
  const std::u16string odd = u"\uFEFFx\u00A0y\xD800z\x07";
  form.lines.Text(odd);
  user.type(u"!");
  EXPECT_EQ(form.lines.Text(), odd + u'!');
  user.key('A', kControl);
  user.type(u"all");
  EXPECT_EQ(form.lines.Text(), u"all");
  form.lines.ReadOnly(true);
  user.type(u"y");
  EXPECT_EQ(form.lines.Text(), u"all");
}

TEST_F(ShownForm, PassesOnPressesAndTicks) {
  form.label.Click.handledBy([&] { pressed += 't'; });
  user.open();
  user.click(form.label);
  user.click(form.button);
  user.click(form.link);
  user.focus(form.link);
  user.key(User::kEnter);
  user.key('G', kAlt);
  EXPECT_EQ(pressed, "tbllb");
  std::string ticked;
  const auto each = [&](auto tick) {
    tick();
    ticked += form.check.Value() ? 'x' : '-';
    EXPECT_EQ(user.seen(form.check).substr(0, 4), form.check.Value() ? "[x] " : "[ ] ");
  };
  each([&] { user.click(form.check); });
  each([&] { user.key(' '); });
  each([&] { user.key('T', kAlt); });
  EXPECT_EQ(ticked, "x-x");
  form.check.Enabled(false);
  form.button.Enabled(false);
  user.click(form.check);
  user.click(form.button);
  user.key('G', kAlt);
  EXPECT_TRUE(form.check.Value());
  EXPECT_EQ(pressed, "tbllb");
}

TEST_F(ShownForm, PassesOnWhatIsChosen) {
  // What Change makes of a text is shown.
  form.combo.AddItem(u"(More...)", u"more");
  form.combo.Change.handledBy([&] {
    if (form.combo.Text() == u"(More...)") form.combo.Value(u"1");
  });
  user.open();
  user.choose(form.combo, 1);
  EXPECT_EQ(form.combo.Value(), u"3");
  user.choose(form.combo, 2);
  EXPECT_EQ(form.combo.Value(), u"1");
  EXPECT_EQ(user.seen(form.combo), "Insert of 3");

  const auto selected = [&] {
    std::string rows;
    for (std::size_t row = 0; row < form.list.ListCount(); ++row) rows += form.list.Selected(row) ? 'x' : '-';
    return rows;
  };
  user.clickRow(form.list, 1);
  user.clickRow(form.list, 3, kShift);
  EXPECT_EQ(selected(), "-xxx");
  user.clickRow(form.list, 2, kControl);
  EXPECT_EQ(selected(), "-x-x");
  form.list.retain([](bool isSelected) { return isSelected; });
  EXPECT_EQ(user.seen(form.list), "*b|*d");

  std::vector<std::size_t> opened;
  form.list.DblClick.handledBy([&](std::size_t row) { opened.push_back(row); });
  user.doubleClickRow(form.list, 1);
  user.key(User::kEnter);
  EXPECT_THAT(opened, ElementsAre(1U, 1U));

  user.turnTo(form.pages, 1);
  EXPECT_EQ(form.pages.Value(), 1U);
  EXPECT_EQ(user.seen(form.other), "");
}

/// However an edit is left, it is asked about once, and goes back where it is refused: then the focus stays,
/// and nothing is pressed.
TEST_F(ShownForm, AsksWhetherAnEditInAListStandsAsItIsLeft) {
  int asked = 0;
  form.combo.BeforeUpdate.handledBy([&](bool& refused) {
    ++asked;
    refused = !form.combo.Value();
    if (refused) boxes.show(u"no", Buttons::ok, u"title");
  });
  user.open();
  const struct {
    std::function<void()> leave;
    std::string focus;
    std::string pressed;
  } ways[] = {{[&] { user.key(User::kTab); }, "list", ""},
              {[&] { user.key(User::kEnter); }, "list", ""},
              {[&] { user.focus(form.line); }, "line", ""},
              {[&] { user.click(form.button); }, "button", "b"},
              {[&] { user.key('G', kAlt); }, "", "b"}};
  for (const auto& way : ways) {
    SCOPED_TRACE(way.focus);
    form.combo.Value(u"1");
    typeInto(form.combo, u"delete");
    EXPECT_EQ(form.combo.Text(), u"delete");
    EXPECT_EQ(std::exchange(asked, 0), 0) << "the user is not done yet";
    way.leave();
    EXPECT_EQ(form.combo.Value(), u"3") << "in small letters too";
    EXPECT_EQ(user.seen(form.combo), "Delete of 2");
    EXPECT_EQ(std::exchange(asked, 0), 1);
    if (!way.focus.empty()) {
      EXPECT_EQ(user.focused(), way.focus);
    }
    EXPECT_EQ(std::exchange(pressed, ""), way.pressed);

    typeInto(form.combo, u"nonsense");
    way.leave();
    EXPECT_EQ(form.combo.Text(), u"Delete");
    EXPECT_EQ(user.seen(form.combo), "Delete of 2");
    EXPECT_EQ(user.focused(), "combo");
    EXPECT_EQ(std::exchange(pressed, ""), "");
    EXPECT_EQ(std::exchange(boxes.shown, {}).size(), 1U);
    asked = 0;
  }
  typeInto(form.combo, u"nonsense");
  user.click(form.check);
  EXPECT_EQ(user.seen(form.check), "[ ] Tick & tie");
}

TEST_F(ShownForm, EndsTheEditInAListAsItCloses) {
  form.combo.BeforeUpdate.handledBy([&](bool& refused) { refused = !form.combo.Value(); });
  const std::function<void()> ways[] = {[&] { user.key(User::kEscape); }, [&] { user.closeWindow(); }};
  for (const auto& close : ways) {
    form.combo.Value(u"1");
    user.open();
    typeInto(form.combo, u"nonsense");
    close();
    EXPECT_EQ(user.title(), "-");
    EXPECT_EQ(form.combo.Text(), u"Insert");
    user.open();
    typeInto(form.combo, u"delete");
    close();
    EXPECT_EQ(form.combo.Text(), u"Delete");
  }
}

TEST_F(ShownForm, TellsOfThePasteWhereItsKeyComesUpAndOfMouseButtons) {
  std::vector<int> told;
  user.open();
  for (TextBox* box : {&form.line, &form.lines}) {
    box->KeyUp.handledBy([&](std::int16_t code, std::int16_t shift) {
      if (code == kVKey) told.push_back(shift);
    });
    box->MouseUp.handledBy([&](std::int16_t button) { told.push_back(10 * button); });
    user.focus(*box);
    user.key('V', kControl);
    user.key('V', kControl | kShift);
    user.keyDown('V', kControl);
    user.keyUp(User::kControlKey, kControl);
    user.keyUp('V', 0);
    user.key('V');
    user.click(*box);
    user.click(*box, kRight);
    EXPECT_THAT(std::exchange(told, {}),
                ElementsAre(kControl, kControl | kShift, kControl, 0, 10 * kLeft, 10 * kRight));
  }
}

TEST_F(ShownForm, KnowsTheKeysOfADialog) {
  int closed = 0;
  form.Closed.handledBy([&] { ++closed; });
  form.check.Enabled(false);
  form.lines.TabIndex(1);
  form.SetFocus(form.line);
  user.open();
  std::vector<std::string> reached;
  for (int stop = 0; stop < 7; ++stop) {
    reached.push_back(user.focused());
    user.key(User::kTab);
  }
  EXPECT_THAT(reached, ElementsAre("line", "combo", "list", "link", "lines", "button", "pages"));
  EXPECT_EQ(user.focused(), "line");
  user.key(User::kTab, kShift);
  EXPECT_EQ(user.focused(), "pages");

  // Enter moves on from what has no use for it, and presses nothing on the way.
  user.focus(form.line);
  for (const char* next : {"combo", "list", "link"}) {
    user.key(User::kEnter);
    EXPECT_EQ(user.focused(), next);
  }
  user.focus(form.lines);
  user.key(User::kEnter);
  EXPECT_EQ(user.focused(), "button");
  EXPECT_EQ(pressed, "");
  EXPECT_EQ(form.lines.Text(), u"");
  form.button.Default(true);
  for (const TextBox* box : {&form.line, &form.lines}) {
    user.focus(*box);
    user.key(User::kEnter);
    EXPECT_EQ(std::exchange(pressed, ""), "b");
  }

  std::vector<std::size_t> pages;
  for (const int key : {User::kTab, User::kPageUp, User::kPageUp, User::kPageDown}) {
    user.key(key, kControl);
    pages.push_back(form.pages.Value());
    user.focus(form.pages.Value() == 0 ? form.line : form.other);
  }
  EXPECT_THAT(pages, ElementsAre(1U, 0U, 1U, 0U));

  user.key(User::kEscape);
  EXPECT_EQ(closed, 1);
  EXPECT_FALSE(form.Visible());
  EXPECT_EQ(user.title(), "-");
  user.open();
  user.closeWindow();
  EXPECT_EQ(closed, 2);
  EXPECT_EQ(user.title(), "-");
}

TEST_F(ShownForm, TellsTheUserOfAFaultThatNobodyReported) {
  form.button.Click.handledBy([] { throw errors::Fault(76, u"no folder"); });
  form.line.Change.handledBy([] { throw std::runtime_error("odd"); });
  user.open();
  user.click(form.button);
  typeInto(form.line, u"x");
  ASSERT_EQ(boxes.shown.size(), 2U);
  EXPECT_EQ(boxes.shown[0].text, u"no folder");
  EXPECT_EQ(user.title(), "A & B") << "the dialog goes on";
}

TEST_F(ShownForm, PassesNothingOnOnceItIsHidden) {
  int asked = 0;
  form.combo.BeforeUpdate.handledBy([&](bool&) { ++asked; });
  form.line.KeyPress.handledBy([&](std::int16_t) { form.Hide(); });
  user.open();
  typeInto(form.combo, u"nonsense");
  form.Hide();
  user.settle();
  form.combo.Text(u"Delete");
  user.open();
  EXPECT_EQ(user.seen(form.combo), "Delete of 2");
  typeInto(form.line, u"x");
  EXPECT_EQ(user.title(), "-");
  EXPECT_EQ(form.line.Text(), u"") << "the key is no longer for it";
  EXPECT_EQ(asked, 0);
}

TEST_F(ShownForm, IsShutWhileAnotherIsWaitedForUnlessThatLeavesItUsable) {
  struct Inner : Form {
    Inner(FormHost& host, std::u16string name) : Form(host, std::move(name), u"Inner") { add(done); }
    CommandButton done{u"done", u"Done"};
  };
  user.host.leavesOthersUsable(u"frmBeside");
  user.open();
  for (const bool shut : {true, false}) {
    Inner inner(user.host, shut ? u"frmAbove" : u"frmBeside");
    inner.done.Click.handledBy([&] { inner.Hide(); });
    user.later([&] {
      user.click(form.button);
      user.form = &inner;
      EXPECT_EQ(user.title(), "Inner");
      user.click(inner.done);
    });
    inner.ShowModal();
    EXPECT_EQ(user.title(), "-");
    user.form = &form;
    EXPECT_EQ(std::exchange(pressed, ""), shut ? "" : "b");
    user.click(form.button);
    EXPECT_EQ(std::exchange(pressed, ""), "b") << "afterwards";
  }
}

}  // namespace
}  // namespace pluvo::forms
