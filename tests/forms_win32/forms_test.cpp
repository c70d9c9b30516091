#include "errors/fault.h"
#include "shown_form.h"

namespace pluvo::forms_win32 {
namespace {

using testing::ElementsAre;

TEST_F(ShownForm, ShowsWhatTheControlsSay) {
  form.lines.Text(u"one\rtwo\nthree\r\n");
  form.line.PasswordChar(u"*");
  form.check.Value(true);
  form.combo.Value(u"3");
  form.link.Enabled(false);
  form.list.select(2);
  open();
  EXPECT_EQ(text(window()), "A & B");
  EXPECT_EQ(text(widget(u"label")), "Find & Replace");
  EXPECT_EQ(text(widget(u"lines")), "one\r\ntwo\r\nthree\r\n");
  EXPECT_EQ(text(widget(u"check")), "&Tick && tie");
  EXPECT_EQ(text(widget(u"button")), "&Go");
  EXPECT_EQ(text(widget(u"combo")), "Delete");
  EXPECT_EQ(send(widget(u"line"), EM_GETPASSWORDCHAR), L'*');
  EXPECT_EQ(send(widget(u"check"), BM_GETCHECK), BST_CHECKED);
  EXPECT_EQ(send(widget(u"combo"), CB_GETCOUNT), 2);
  EXPECT_EQ(send(widget(u"combo"), CB_GETCURSEL), 1);
  EXPECT_EQ(send(widget(u"list"), LB_GETSEL, 2), 1);
  EXPECT_EQ(send(widget(u"list"), LB_GETSELCOUNT), 1);
  EXPECT_FALSE(IsWindowEnabled(widget(u"link")));
  EXPECT_FALSE(IsWindowVisible(widget(u"other"))) << "on the page behind";

  // And whatever changes while it is shown.
  form.Caption(u"C");
  form.lines.Text(u"new");
  form.lines.ReadOnly(true);
  form.label.Visible(false);
  form.combo.Clear();
  form.combo.AddItem(u"Only", u"7");
  form.combo.Text(u"typed & kept");
  form.list.items({u"d"});
  form.pages.Value(1);
  pump();
  EXPECT_EQ(text(window()), "C");
  EXPECT_EQ(text(widget(u"lines")), "new");
  EXPECT_TRUE(GetWindowLongW(widget(u"lines"), GWL_STYLE) & ES_READONLY);
  EXPECT_EQ(send(widget(u"combo"), CB_GETCOUNT), 1);
  EXPECT_EQ(text(widget(u"combo")), "typed & kept");
  EXPECT_EQ(send(widget(u"list"), LB_GETCOUNT), 1);
  EXPECT_EQ(send(widget(u"list"), LB_GETSELCOUNT), 0);
  EXPECT_EQ(send(widget(u"pages"), TCM_GETCURSEL), 1);
  EXPECT_TRUE(IsWindowVisible(widget(u"other")));
  EXPECT_FALSE(IsWindowVisible(widget(u"lines")));
}

TEST_F(ShownForm, PassesOnWhatIsTyped) {
  std::vector<std::int16_t> keys;
  form.line.KeyPress.handledBy([&](std::int16_t key) { keys.push_back(key); });
  open();
  type(widget(u"line"), u"a\u00E9\r");
  EXPECT_EQ(form.line.Text(), u"a\u00E9");
  EXPECT_THAT(keys, ElementsAre(u'a', u'\u00E9', forms::kEnterKey));
  // A new line comes with Enter, whether Ctrl or Shift is down or not.
  type(widget(u"lines"), u"one\rtwo\nthree");
  EXPECT_EQ(form.lines.Text(), u"one\r\ntwo\r\nthree");
  type(widget(u"lines"), u"\x01x");
  EXPECT_EQ(form.lines.Text(), u"x") << "Ctrl+A marks it all";
  form.lines.ReadOnly(true);
  type(widget(u"lines"), u"y");
  EXPECT_EQ(form.lines.Text(), u"x");
}

TEST_F(ShownForm, PassesOnPressesAndTicks) {
  std::string pressed;
  form.button.Click.handledBy([&] { pressed += 'b'; });
  form.link.Click.handledBy([&] { pressed += 'l'; });
  open();
  post(widget(u"button"), BM_CLICK);
  post(widget(u"link"), BM_CLICK);
  key(widget(u"link"), VK_RETURN);
  EXPECT_EQ(pressed, "bll");
  post(widget(u"check"), BM_CLICK);
  EXPECT_TRUE(form.check.Value());
  key(widget(u"check"), VK_SPACE);
  EXPECT_FALSE(form.check.Value());
  form.check.Enabled(false);
  form.button.Enabled(false);
  post(widget(u"check"), BM_CLICK);
  post(widget(u"button"), BM_CLICK);
  EXPECT_FALSE(form.check.Value());
  EXPECT_EQ(send(widget(u"check"), BM_GETCHECK), BST_UNCHECKED);
  EXPECT_EQ(pressed, "bll");
}

TEST_F(ShownForm, PassesOnWhatIsChosen) {
  open();
  const HWND combo = widget(u"combo");
  send(combo, CB_SELECTSTRING, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(L"Del"));
  notify(combo, CBN_SELENDOK);
  EXPECT_EQ(form.combo.Value(), u"3");
  send(combo, CB_SHOWDROPDOWN, TRUE);
  send(combo, CB_SETCURSEL, 0);
  notify(combo, CBN_SELCHANGE);
  EXPECT_EQ(form.combo.Value(), u"3") << "the list is open yet";
  notify(combo, CBN_SELENDOK);
  send(combo, CB_SHOWDROPDOWN, FALSE);
  EXPECT_EQ(form.combo.Value(), u"1");

  const HWND list = widget(u"list");
  send(list, LB_SETSEL, TRUE, 0);
  send(list, LB_SETSEL, TRUE, 2);
  notify(list, LBN_SELCHANGE);
  EXPECT_TRUE(form.list.Selected(0) && !form.list.Selected(1) && form.list.Selected(2));
  send(list, LB_SETSEL, FALSE, 0);
  notify(list, LBN_SELCHANGE);
  EXPECT_FALSE(form.list.Selected(0));
  std::vector<std::size_t> opened;
  form.list.DblClick.handledBy([&](std::size_t row) { opened.push_back(row); });
  SetFocus(list);
  send(list, LB_SETCARETINDEX, 1);
  notify(list, LBN_DBLCLK);
  key(list, VK_RETURN);
  EXPECT_THAT(opened, ElementsAre(1, 1));

  send(widget(u"pages"), TCM_SETCURFOCUS, 1);
  pump();
  EXPECT_EQ(form.pages.Value(), 1U);
}

TEST_F(ShownForm, EndsAnEditInAListAsTheFocusLeaves) {
  int asked = 0;
  form.combo.BeforeUpdate.handledBy([&](bool& refused) {
    ++asked;
    refused = !form.combo.Value();
  });
  form.combo.Value(u"1");
  open();
  COMBOBOXINFO parts = {};
  parts.cbSize = sizeof parts;
  GetComboBoxInfo(widget(u"combo"), &parts);
  const auto edit = [&](const std::u16string& letters) {
    SetFocus(parts.hwndItem);
    SendMessageW(parts.hwndItem, EM_SETSEL, 0, -1);
    type(parts.hwndItem, letters);
  };
  edit(u"delete");
  EXPECT_EQ(form.combo.Text(), u"delete");
  EXPECT_EQ(asked, 0) << "the user is not done yet";
  SetFocus(widget(u"line"));
  pump();
  EXPECT_EQ(form.combo.Value(), u"3") << "in small letters too";
  EXPECT_EQ(text(widget(u"combo")), "Delete");
  EXPECT_EQ(GetFocus(), widget(u"line"));

  edit(u"nonsense");
  SetFocus(widget(u"line"));
  pump();
  EXPECT_EQ(form.combo.Text(), u"Delete") << "refused";
  EXPECT_EQ(text(widget(u"combo")), "Delete");
  EXPECT_EQ(GetParent(GetFocus()), widget(u"combo"));

  edit(u"insert");
  key(parts.hwndItem, VK_RETURN);
  EXPECT_EQ(form.combo.Value(), u"1");
  edit(u"nonsense");
  bool pressed = false;
  form.button.Click.handledBy([&] { pressed = true; });
  post(widget(u"button"), BM_CLICK);
  EXPECT_FALSE(pressed) << "an edit that is refused lets nothing happen behind it";
  EXPECT_EQ(form.combo.Text(), u"Insert");
}

TEST_F(ShownForm, TellsOfThePasteWhereItsKeyComesUp) {
  std::vector<int> released;
  form.lines.KeyUp.handledBy([&](std::int16_t code, std::int16_t shift) {
    released.insert(released.end(), {code, shift});
  });
  open();
  const HWND box = widget(u"lines");
  for (const bool controlFirst : {false, true}) {
    released.clear();
    hold(VK_CONTROL, true);
    post(box, WM_KEYDOWN, 'V', 1);
    hold(VK_CONTROL, !controlFirst);
    post(box, WM_KEYUP, 'V', 1);
    EXPECT_THAT(released, ElementsAre(forms::kVKey, forms::kControl)) << controlFirst;
  }
  hold(VK_CONTROL, true);
  hold(VK_SHIFT, true);
  released.clear();
  key(box, 'V');
  EXPECT_THAT(released, ElementsAre(forms::kVKey, forms::kControl | forms::kShift));
  hold(VK_CONTROL, false);
  hold(VK_SHIFT, false);

  std::vector<int> buttons;
  form.lines.MouseUp.handledBy([&](std::int16_t button) { buttons.push_back(button); });
  post(box, WM_RBUTTONUP, 0, MAKELPARAM(3, 3));
  post(box, WM_RBUTTONUP, 0, MAKELPARAM(-3, 3));
  post(box, WM_LBUTTONUP, 0, MAKELPARAM(3, 3));
  EXPECT_THAT(buttons, ElementsAre(forms::kRight, forms::kLeft)) << "not where the pointer was moved away";
}

TEST_F(ShownForm, KnowsTheKeysOfADialog) {
  int closed = 0;
  form.Closed.handledBy([&] { ++closed; });
  std::string pressed;
  form.button.Click.handledBy([&] { pressed += 'b'; });
  form.button.Default(true);
  form.check.Enabled(false);
  open();
  std::vector<HWND> reached;
  for (int stop = 0; stop < 6; ++stop) {
    HWND focus = GetFocus();
    reached.push_back(GetParent(focus) == widget(u"combo") ? widget(u"combo") : focus);
    key(focus, VK_TAB);
  }
  EXPECT_THAT(reached, ElementsAre(widget(u"line"), widget(u"lines"), widget(u"combo"), widget(u"list"),
                                   widget(u"link"), widget(u"button")));
  EXPECT_EQ(GetFocus(), widget(u"pages")) << "the tabs are a stop";
  hold(VK_SHIFT, true);
  key(GetFocus(), VK_TAB);
  hold(VK_SHIFT, false);
  EXPECT_EQ(GetFocus(), widget(u"button"));

  SetFocus(widget(u"line"));
  key(widget(u"line"), VK_RETURN);
  EXPECT_EQ(pressed, "b");
  SetFocus(widget(u"lines"));
  key(widget(u"lines"), VK_RETURN);
  EXPECT_EQ(pressed, "b") << "a box of several lines needs the key itself";
  post(widget(u"line"), WM_SYSCHAR, 'g', 1 << 29);
  EXPECT_EQ(pressed, "bb");

  hold(VK_CONTROL, true);
  key(widget(u"line"), VK_TAB);
  EXPECT_EQ(form.pages.Value(), 1U);
  key(widget(u"other"), VK_PRIOR);
  EXPECT_EQ(form.pages.Value(), 0U);
  hold(VK_CONTROL, false);

  key(widget(u"line"), VK_ESCAPE);
  EXPECT_EQ(closed, 1);
  EXPECT_FALSE(form.Visible());
  EXPECT_FALSE(IsWindowVisible(window()));
  post(widget(u"button"), BM_CLICK);
  EXPECT_EQ(pressed, "bb") << "nothing arrives while the form is hidden";
  open();
  post(window(), WM_CLOSE);
  EXPECT_EQ(closed, 2);
}

TEST_F(ShownForm, KnowsThemInAnothersLoopToo) {
  open();
  const auto throughOthersLoop = [&](WPARAM code) {
    PostMessageW(GetFocus(), WM_KEYDOWN, code, 1);
    MSG message = {};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  };
  EXPECT_EQ(GetFocus(), widget(u"line"));
  throughOthersLoop(VK_TAB);
  EXPECT_EQ(GetFocus(), widget(u"lines"));
  throughOthersLoop(VK_ESCAPE);
  EXPECT_FALSE(form.Visible());
}

TEST_F(ShownForm, ShowsTipsLetterForLetter) {
  form.lines.ControlTipText(u"a && b & c");
  open();
  HWND tips = FindWindowExW(nullptr, nullptr, TOOLTIPS_CLASSW, nullptr);
  for (; tips != nullptr && GetWindow(tips, GW_OWNER) != window();)
    tips = FindWindowExW(nullptr, tips, TOOLTIPS_CLASSW, nullptr);
  ASSERT_NE(tips, nullptr);
  EXPECT_TRUE(GetWindowLongW(tips, GWL_STYLE) & TTS_NOPREFIX);
  const auto tipOf = [&](HWND on, UINT_PTR id) {
    wchar_t shown[100] = {};
    TTTOOLINFOW tool = {};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.hwnd = on;
    tool.uId = id;
    tool.lpszText = shown;
    send(tips, TTM_GETTEXTW, 100, reinterpret_cast<LPARAM>(&tool));
    return std::wstring(shown);
  };
  const HWND lines = widget(u"lines");
  EXPECT_EQ(tipOf(GetParent(lines), reinterpret_cast<UINT_PTR>(lines)), L"a && b & c");
  EXPECT_EQ(tipOf(widget(u"pages"), 0), L"Tip && so");
  form.lines.ControlTipText(u"new");
  EXPECT_EQ(tipOf(GetParent(lines), reinterpret_cast<UINT_PTR>(lines)), L"new");
}

TEST_F(ShownForm, TellsTheUserOfAFaultThatNobodyReported) {
  form.button.Click.handledBy([] { throw errors::Fault(76, u"no folder"); });
  form.line.Change.handledBy([] { throw std::runtime_error("odd"); });
  open();
  post(widget(u"button"), BM_CLICK);
  type(widget(u"line"), u"x");
  ASSERT_EQ(boxes.shown.size(), 2U);
  EXPECT_EQ(boxes.shown[0].text, u"no folder");
  EXPECT_TRUE(IsWindowVisible(window())) << "the dialog goes on";
}

/// Closes the form by what a handler does in the middle of a message.
TEST_F(ShownForm, GoesInTheMiddleOfAMessage) {
  form.line.KeyPress.handledBy([&](std::int16_t) { form.Hide(); });
  open();
  type(widget(u"line"), u"x");
  EXPECT_FALSE(IsWindowVisible(window()));
  EXPECT_EQ(form.line.Text(), u"") << "the key is no longer for it";
}

/// Lets so many windows of this thread come into being and no others, as where Windows has no more.
class FewWindows {
 public:
  explicit FewWindows(int few)
      : hook_((left = few, SetWindowsHookExW(WH_CBT, refuse, nullptr, GetCurrentThreadId()))) {}
  FewWindows(const FewWindows&) = delete;
  FewWindows& operator=(const FewWindows&) = delete;
  ~FewWindows() { UnhookWindowsHookEx(hook_); }

  static inline int left = 0;

 private:
  static LRESULT CALLBACK refuse(int code, WPARAM wparam, LPARAM lparam) {
    if (code == HCBT_CREATEWND && --left < 0) return 1;
    return CallNextHookEx(nullptr, code, wparam, lparam);
  }
  HHOOK hook_;
};

int windowsOfThread() {
  int count = 0;
  EnumThreadWindows(
      GetCurrentThreadId(), [](HWND, LPARAM counted) { return ++*reinterpret_cast<int*>(counted), TRUE; },
      reinterpret_cast<LPARAM>(&count));
  return count;
}

TEST_F(ShownForm, IsThereWholeOrNotAtAll) {
  const int before = windowsOfThread();
  int few = 0;
  for (bool whole = false; !whole; ++few) {
    SCOPED_TRACE(few);
    const FewWindows hold(few);
    try {
      form.Visible(true);
      whole = true;
    } catch (const errors::Fault& fault) {
      EXPECT_EQ(fault.number, errors::kOutOfMemory);
      EXPECT_FALSE(form.Visible());
      EXPECT_EQ(window(), nullptr);
      EXPECT_EQ(windowsOfThread(), before);
    }
    pump();
    ASSERT_LT(few, 100);
  }
  EXPECT_GT(few, 12) << "a window for each control, and theirs";
  type(widget(u"line"), u"a");
  EXPECT_EQ(form.line.Text(), u"a");
}

TEST_F(ShownForm, IsWaitedForAgainAfterAFault) {
  {
    const FewWindows hold(3);
    EXPECT_THROW(form.ShowModal(), errors::Fault);
    EXPECT_FALSE(form.Visible());
  }
  form.Visible(true);
  form.Visible(false);
  EXPECT_FALSE(IsWindowVisible(window())) << "a form that nobody waits for goes at once";
}

TEST(Win32Forms, LeaveNothingBehind) {
  forms::ScriptedBoxes boxes;
  wchar_t kind[64] = {};
  const HINSTANCE module = GetModuleHandleW(nullptr);
  const auto objects = [] {
    return GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS) +
           GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
  };
  DWORD before = 0;
  for (int round = 0; round < 12; ++round) {
    Win32Forms host(boxes);
    SampleForm form(host);
    form.Visible(true);
    GetClassNameW(host.windowOf(form), kind, 64);
    WNDCLASSW known = {};
    EXPECT_TRUE(GetClassInfoW(module, kind, &known));
    if (round == 4) before = objects();
    EXPECT_LE(round > 4 ? objects() : 0, before + 4) << "in round " << round;
  }
  WNDCLASSW known = {};
  EXPECT_FALSE(GetClassInfoW(module, kind, &known)) << "a class that outlives its DLL is called into nowhere";
}

}  // namespace
}  // namespace pluvo::forms_win32
