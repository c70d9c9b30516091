/// What Windows' forms do besides what forms_shown tests of all.
#include "base/at_end.h"
#include "base/names.h"
#include "base/utf.h"
#include "dialog/frmFAR.h"
#include "dialog/opened_dialog.h"
#include "errors/fault.h"
#include "forms_shown/shown_form.h"

#include <chrono>
#include <thread>

namespace pluvo::forms {
namespace {

using testing::ElementsAre;

TEST_F(ShownForm, ChoosesWhereTheListClosesAndHearsOfTheMouseOverItsBoxesOnly) {
  std::vector<int> buttons;
  form.lines.MouseUp.handledBy([&](std::int16_t button) { buttons.push_back(button); });
  user.open();
  HWND combo = user.widget(form.combo);
  User::send(combo, CB_SHOWDROPDOWN, TRUE);
  User::send(combo, CB_SETCURSEL, 1);
  user.notify(combo, CBN_SELCHANGE);
  EXPECT_EQ(form.combo.Text(), u"") << "the list is open yet";
  user.notify(combo, CBN_SELENDOK);
  User::send(combo, CB_SHOWDROPDOWN, FALSE);
  EXPECT_EQ(form.combo.Value(), u"3");

  user.post(user.widget(form.lines), WM_RBUTTONUP, 0, MAKELPARAM(-3, 3));
  user.click(form.lines);
  EXPECT_THAT(buttons, ElementsAre(kLeft)) << "not where the pointer was moved away";

  form.check.Enabled(false);
  user.post(user.widget(form.check), BM_CLICK);
  EXPECT_EQ(user.seen(form.check), "off: [ ] Tick & tie");

  form.Hide();
  user.post(user.widget(form.button), BM_CLICK);
  EXPECT_EQ(pressed, "") << "nothing arrives while the form is hidden";
}

TEST_F(ShownForm, KnowsTheKeysOfADialogInAnothersLoopToo) {
  user.open();
  typeInto(form.lines, u"ab");
  user.type(u"\x01x");  // Ctrl+A, for which boxes of several lines do nothing by themselves
  EXPECT_EQ(form.lines.Text(), u"x");
  user.focus(form.line);
  // One that leaves no keys to others.
  const auto throughOthersLoop = [](WPARAM code) {
    PostMessageW(GetFocus(), WM_KEYDOWN, code, 1);
    MSG message = {};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
      if (message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST) continue;
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  };
  throughOthersLoop(VK_TAB);
  EXPECT_EQ(user.focused(), "lines");
  throughOthersLoop('B');
  EXPECT_EQ(form.lines.Text(), u"xb");
  throughOthersLoop(VK_ESCAPE);
  EXPECT_FALSE(form.Visible());
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
      EXPECT_EQ(user.window(), nullptr);
      EXPECT_EQ(windowsOfThread(), before);
    }
    user.settle();
    ASSERT_LT(few, 100);
  }
  EXPECT_GT(few, 12) << "a window for each control, and theirs";
  typeInto(form.line, u"a");
  EXPECT_EQ(form.line.Text(), u"a");
}

TEST_F(ShownForm, IsWaitedForAgainAfterAFault) {
  {
    const FewWindows hold(3);
    EXPECT_THROW(form.ShowModal(), errors::Fault);
    EXPECT_FALSE(form.Visible());
  }
  user.open();
  form.Visible(false);
  EXPECT_EQ(user.title(), "-") << "a form that nobody waits for goes at once";
}

TEST_F(ShownForm, LeavesNothingBehind) {
  wchar_t kind[64] = {};
  WNDCLASSW known = {};
  const HINSTANCE module = GetModuleHandleW(nullptr);
  DWORD before = 0;
  for (int round = 0; round < 12; ++round) {
    forms_win32::Win32Forms host(boxes);
    SampleForm sample(host);
    sample.Visible(true);
    GetClassNameW(host.windowOf(sample), kind, 64);
    EXPECT_TRUE(GetClassInfoW(module, kind, &known));
    const DWORD objects = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS) +
                          GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
    if (round == 4) before = objects;
    EXPECT_LE(round > 4 ? objects : 0, before + 4) << "in round " << round;
  }
  EXPECT_FALSE(GetClassInfoW(module, kind, &known)) << "a class that outlives its DLL is called into nowhere";
}

/// The word processor's windows go with their documents, and take those along that stand above them.
TEST_F(ShownForm, StandsAboveADocumentAndOutlivesIt) {
  const auto document = [] {
    return CreateWindowExW(0, L"STATIC", L"Word", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 400, 300, nullptr,
                           nullptr, nullptr, nullptr);
  };
  HWND word = document();
  user.host.owner = [&] { return word; };
  user.host.leavesOthersUsable(u"frmSample");
  User::later([&] {
    EXPECT_TRUE(IsWindowEnabled(word));
    EXPECT_EQ(GetWindow(user.window(), GW_OWNER), word);
    typeInto(form.line, u"a");
    DestroyWindow(std::exchange(word, document()));
    User::later([&] {
      EXPECT_EQ(user.title(), "A & B");
      EXPECT_EQ(GetWindow(user.window(), GW_OWNER), word);
      EXPECT_EQ(user.seen(form.line), "a");
      user.type(u"b");
      form.close();
    });
  });
  form.ShowModal();
  EXPECT_EQ(form.line.Text(), u"b") << "over what was marked as the focus came";
  DestroyWindow(word);
}

/// Each document has a window of its own, and the user goes from one to the other.
TEST_F(ShownForm, GoesWhereTheUserGoesAndComesToTheFront) {
  std::vector<HWND> documents;
  for (int i = 0; i < 2; ++i)
    documents.push_back(CreateWindowExW(0, L"STATIC", L"Word", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 400,
                                        300, nullptr, nullptr, nullptr, nullptr));
  user.host.owner = [&] { return documents[0]; };
  user.host.isOwner = [&](HWND window) { return std::ranges::find(documents, window) != documents.end(); };
  user.host.leavesOthersUsable(u"frmSample");
  User::later([&] {
    SetActiveWindow(documents[1]);
    EXPECT_EQ(GetWindow(user.window(), GW_OWNER), documents[1]);
    HWND shown = user.window();
    DestroyWindow(documents[1]);
    EXPECT_EQ(user.window(), shown) << "it does not go with the document";
    form.WindowState(1);
    EXPECT_TRUE(IsIconic(user.window()));
    user.host.bringForward(u"frmSample");
    EXPECT_FALSE(IsIconic(user.window()));
    EXPECT_EQ(GetActiveWindow(), user.window());
    EXPECT_EQ(GetWindow(user.window(), GW_OWNER), documents[0]) << "the one that was said to be in front";
    form.close();
  });
  form.ShowModal();
  DestroyWindow(documents[0]);
}

TEST_F(ShownForm, EndsWithTheProgram) {
  int told = 0;
  user.host.programEnds = [&] { ++told; };
  User::later([] { PostQuitMessage(3); });
  form.ShowModal();
  EXPECT_EQ(told, 1);
  EXPECT_FALSE(form.Visible());
  MSG message = {};
  EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) << "so that Word ends too";
  EXPECT_EQ(message.wParam, 3U);
}

TEST_F(ShownForm, YieldsToWhatWaitsButNotWithinAYield) {
  const auto yieldUntil = [&](auto done, int waits) {
    for (int wait = 0; wait < waits && !done(); ++wait) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
      user.yielding.yield();
    }
  };
  int done = 0;
  user.later([&] {
    user.later([&] { ++done; });
    yieldUntil([&] { return done > 0; }, 40);
    EXPECT_EQ(done++, 0);
  });
  yieldUntil([&] { return done == 2; }, 12'000);
  EXPECT_EQ(done, 2);
}

TEST_F(ShownForm, YieldsAgainAfterAFaultInTheMidstOfIt) {
  user.open();
  user.host.owner = []() -> HWND { throw errors::Fault(4605, u"no window"); };
  DestroyWindow(user.window());
  PostMessageW(nullptr, WM_NULL, 0, 0);
  EXPECT_THROW(user.yielding.yield(), errors::Fault) << "the form cannot be brought back";
  user.host.owner = {};
  PostMessageW(nullptr, WM_NULL, 0, 0);
  user.yielding.yield();
  EXPECT_EQ(user.title(), "A & B");
}

/// Programs of these names lie in the current folder; they are no programs, and starting them is a fault.
TEST(Win32Launcher, StartsTheSystemsOwnProgramsAndOpensPages) {
  files::Scratch scratch;
  files::Scratch planted;
  for (const char* name : {"cmd.exe", "start.exe", "other.exe"}) planted.put(name, "MZ");
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(planted.path(""));
  const base::AtEnd back([&] { std::filesystem::current_path(before); });
  std::vector<std::string> opened;
  forms_win32::Win32Launcher launcher([&](const std::u16string& page) {
    opened.push_back(base::utf8(page));
    return opened.size() == 1 ? 0UL : 1155UL;
  });
  launcher.launchHidden(u"start http://www.pluvo.example/");
  for (const char16_t* wrong :
       {u"start http://x.example/", u"start start.exe", u"other.exe /c", u".\\cmd.exe /c"})
    EXPECT_THROW(launcher.launchHidden(wrong), errors::Fault) << base::utf8(wrong);
  EXPECT_THAT(opened, ElementsAre("http://www.pluvo.example/", "http://x.example/"));
  launcher.launchHidden(u"cmd.exe /c mkdir \"" + base::nameText(scratch.path("made")) + u"\"");
  for (int wait = 0; wait < 1'200 && scratch.names().empty(); ++wait) Sleep(50);
  EXPECT_THAT(scratch.names(), ElementsAre("made"));
}

/// By its own font, on its own surface. Buttons need something around their text.
bool showsItsText(HWND widget, const RECT& place) {
  wchar_t kind[16] = {};
  GetClassNameW(widget, kind, 16);
  const bool button = lstrcmpiW(kind, WC_BUTTONW) == 0;
  if (!button && lstrcmpiW(kind, WC_STATICW) != 0) return true;
  wchar_t text[400] = {};
  GetWindowTextW(widget, text, 400);
  HDC surface = GetDC(widget);
  HGDIOBJ before = SelectObject(surface, reinterpret_cast<HGDIOBJ>(User::send(widget, WM_GETFONT)));
  RECT needed = {0, 0, place.right - place.left - (button ? 6 : 0), 0};
  DrawTextW(surface, text, -1, &needed, DT_CALCRECT | DT_WORDBREAK | (button ? 0U : UINT{DT_NOPREFIX}));
  SelectObject(surface, before);
  ReleaseDC(widget, surface);
  return needed.right <= place.right - place.left && needed.bottom <= place.bottom - place.top;
}

/// What does not fit where it stands, or does not stand within its parent.
std::vector<std::string> cutOff(const User& user) {
  std::vector<std::string> faults;
  for (const auto& page : user.form->get<MultiPage>(u"MultiPage1").Pages()) {
    for (const Control* control : page->controls()) {
      if (!control->Visible()) continue;
      HWND widget = user.widget(*control);
      const forms_win32::Mirror& mirror = *forms_win32::mirrorOf(widget);
      RECT place = {};
      RECT around = {};
      GetWindowRect(widget, &place);
      GetWindowRect(GetParent(widget), &around);
      const int width = place.right - place.left;
      // A page that is too high for its place can be scrolled.
      const bool scrolls = (GetWindowLongW(GetParent(widget), GWL_STYLE) & WS_VSCROLL) != 0;
      const bool inside = place.left >= around.left && place.right <= around.right &&
                          (scrolls || (place.top >= around.top && place.bottom <= around.bottom));
      if (!inside || !showsItsText(widget, place) || width < mirror.leastWidth() ||
          place.bottom - place.top < mirror.leastHeightFor(width))
        faults.push_back(base::utf8(control->Name()));
    }
  }
  return faults;
}

class WholeDialog : public dialog::OpenedDialog, public testing::Test {};

TEST_F(WholeDialog, CutsNothingOffAtAnyResolution) {
  User user(boxes);
  dialog::DialogServices here = services();
  dialog::frmFAR dialog(
      {here.application, user.host, boxes, inputs, clock, yielding, launcher, random, here.componentFolder});
  user.form = &dialog;
  // Captions are longer in some faces, and in other words.
  for (const char16_t* name : {u"cmdViewOperation", u"chkConfirmEach", u"lblInstructions", u"cmdBrowse"}) {
    auto& control = dialog.get<Control>(name);
    control.Caption(control.Caption() + u" with many more words than there is a place for in one line");
  }
  user.open();
  for (const WORD dots : {WORD{96}, WORD{144}, WORD{192}, WORD{96}}) {
    for (const SIZE size : {SIZE{660, 490}, SIZE{1, 900}}) {  // and as narrow as it gets
      if (size.cx == 1 && dots == 192) continue;              // which is wider than the screen of tests
      const RECT place = {0, 0, size.cx * dots / 96, size.cy * dots / 96};
      constexpr UINT kResolutionChanged = 0x02E0;
      User::send(user.window(), kResolutionChanged, MAKEWPARAM(dots, dots), reinterpret_cast<LPARAM>(&place));
      user.settle();
      EXPECT_THAT(cutOff(user), testing::IsEmpty()) << dots << " dots per inch, " << size.cx;
    }
  }
  const auto seen = [&](const char16_t* name) {
    HWND widget = user.host.widgetOf(dialog, name);
    RECT place = {};
    RECT page = {};
    GetWindowRect(widget, &place);
    GetWindowRect(GetParent(widget), &page);
    return place.top >= page.top && place.bottom <= page.bottom;
  };
  SetWindowPos(user.window(), nullptr, 0, 0, 800, 400, SWP_NOMOVE | SWP_NOZORDER);
  user.settle();
  EXPECT_TRUE(seen(u"cmdExecuteFAR"));
  EXPECT_FALSE(seen(u"txtOperationDisplay"));
  user.click(dialog.get<Control>(u"cmdViewOperation"));
  EXPECT_TRUE(seen(u"txtOperationDisplay")) << "it has something to show";
}

}  // namespace
}  // namespace pluvo::forms
