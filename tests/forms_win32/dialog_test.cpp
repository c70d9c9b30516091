#include "errors/fault.h"
#include "forms_win32/boxes.h"
#include "forms_win32/machine.h"
#include "host/frmFAR.h"
#include "host/opened_dialog.h"
#include "mirror.h"
#include "shown_form.h"

#include <functional>
#include <utility>

namespace pluvo::forms_win32 {
namespace {

using forms::Answer;
using forms::Buttons;
using testing::ElementsAre;

/// Does something a little later, from within whatever loop then deals with the thread's messages.
class Later {
 public:
  explicit Later(std::function<void()> doing) {
    doings.push_back(std::move(doing));
    SetTimer(nullptr, 0, 50, [](HWND, UINT, UINT_PTR timer, DWORD) {
      KillTimer(nullptr, timer);
      const auto next = doings.front();
      doings.erase(doings.begin());
      next();
    });
  }

 private:
  static inline std::vector<std::function<void()>> doings;
};

HWND topWindow(const wchar_t* title) {
  HWND found = FindWindowW(nullptr, title);
  EXPECT_NE(found, nullptr);
  return found;
}

class Modal : public ShownForm {};

TEST_F(Modal, OneAtATimeUnlessOthersAreToBeUsed) {
  HWND word = CreateWindowExW(0, L"STATIC", L"Word", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 400, 300,
                              nullptr, nullptr, nullptr, nullptr);
  host.owner = [&] { return word; };
  host.leavesOthersUsable(u"frmSample");
  struct Inner : forms::Form {
    explicit Inner(forms::FormHost& h) : Form(h, u"frmInner", u"Inner") { add(go); }
    forms::CommandButton go{u"go", u"Go"};
  } inner(host);
  inner.go.Click.handledBy([&] { inner.Hide(); });
  std::vector<bool> usable;
  form.button.Click.handledBy([&] {
    usable.push_back(IsWindowEnabled(word) != 0);
    EXPECT_EQ(GetWindow(window(), GW_OWNER), word);
    const Later press([&] {
      usable.push_back(IsWindowEnabled(word) != 0);
      usable.push_back(IsWindowEnabled(window()) != 0);
      usable.push_back(IsWindowEnabled(host.windowOf(inner)) != 0);
      PostMessageW(host.widgetOf(inner, u"go"), BM_CLICK, 0, 0);
    });
    inner.ShowModal();
    usable.push_back(IsWindowEnabled(word) != 0);
    usable.push_back(IsWindowEnabled(window()) != 0);
    form.Hide();
  });
  const Later start([&] { PostMessageW(widget(u"button"), BM_CLICK, 0, 0); });
  form.ShowModal();
  EXPECT_THAT(usable, ElementsAre(true, false, false, true, true, true));
  DestroyWindow(word);
}

TEST_F(Modal, OutlivesTheWindowItStandsAbove) {
  const auto document = [] {
    return CreateWindowExW(0, L"STATIC", L"Word", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 400, 300, nullptr,
                           nullptr, nullptr, nullptr);
  };
  HWND word = document();
  host.owner = [&] { return word; };
  host.leavesOthersUsable(u"frmSample");
  const Later close([&] {
    type(widget(u"line"), u"a");
    DestroyWindow(std::exchange(word, document()));
    const Later end([&] {
      EXPECT_TRUE(IsWindowVisible(window()));
      EXPECT_EQ(GetWindow(window(), GW_OWNER), word);
      EXPECT_EQ(text(widget(u"line")), "a");
      type(widget(u"line"), u"b");
      form.close();
    });
  });
  form.ShowModal();
  EXPECT_EQ(form.line.Text(), u"b") << "over what was marked as the focus came";
  DestroyWindow(word);
}

TEST_F(Modal, EndsWithTheProgram) {
  const Later quit([] { PostQuitMessage(3); });
  form.ShowModal();
  EXPECT_FALSE(form.Visible());
  MSG message = {};
  EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) << "so that Word ends too";
  EXPECT_EQ(message.wParam, 3U);
}

TEST(MessageBoxes, AnswerAsTheyAreAnswered) {
  Win32MessageBoxes boxes(u"Host");
  const struct {
    Buttons buttons;
    int pressed;
    Answer answer;
  } cases[] = {{Buttons::ok, IDOK, Answer::ok},          {Buttons::ok, IDCANCEL, Answer::ok},
               {Buttons::yesNo, IDYES, Answer::yes},     {Buttons::yesNo, IDNO, Answer::no},
               {Buttons::yesNoCancel, IDNO, Answer::no}, {Buttons::yesNoCancel, IDCANCEL, Answer::cancel}};
  for (const auto& [buttons, pressed, answer] : cases) {
    const Later press([pressed = pressed] {
      const HWND box = topWindow(L"Host");
      wchar_t text[40] = {};
      GetDlgItemTextW(box, 0xFFFF, text, 40);
      EXPECT_EQ(std::wstring(text), L"Find & Replace?");
      PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(pressed), 0);
    });
    EXPECT_EQ(boxes.show(u"Find & Replace?", buttons, std::nullopt), answer) << pressed;
  }
  const Later press([] { PostMessageW(topWindow(L"Own & title"), WM_COMMAND, IDOK, 0); });
  boxes.show(u"text", Buttons::ok, u"Own & title");
}

TEST(InputBoxes, GiveWhatIsTypedUnlessTheyAreCancelled) {
  forms::ScriptedBoxes boxes;
  Win32Forms host(boxes);
  Win32InputBoxes inputs(host);
  for (const WPARAM end : {WPARAM{VK_RETURN}, WPARAM{VK_ESCAPE}}) {
    const Later type([&] {
      EXPECT_TRUE(IsWindowVisible(topWindow(L"How far?")));
      PostMessageW(GetFocus(), WM_CHAR, L'7', 1);
      PostMessageW(GetFocus(), WM_KEYDOWN, end, 1);
    });
    EXPECT_EQ(inputs.ask(u"A number", u"How far?"), end == VK_RETURN ? u"7" : u"");
  }
}

TEST(Yielding, DealsWithWhatWaits) {
  forms::ScriptedBoxes boxes;
  Win32Forms host(boxes);
  Win32Yielding yielding(host);
  int done = 0;
  const Later first([&] {
    ++done;
    yielding.yield();  // within another, nothing
  });
  for (int wait = 0; wait < 100 && done == 0; ++wait) {
    Sleep(5);
    yielding.yield();
  }
  EXPECT_EQ(done, 1);

  // A fault in the midst of it does not end all yielding.
  struct Fails : forms::Form {
    explicit Fails(forms::FormHost& h) : Form(h, u"frmFails", u"Fails") {}
  } form(host);
  form.Visible(true);
  host.owner = []() -> HWND { throw errors::Fault(4605, u"no window"); };
  DestroyWindow(host.windowOf(form));
  PostMessageW(nullptr, WM_NULL, 0, 0);
  EXPECT_THROW(yielding.yield(), errors::Fault) << "the form cannot be brought back";
  host.owner = {};
  PostMessageW(nullptr, WM_NULL, 0, 0);
  yielding.yield();
  EXPECT_TRUE(IsWindowVisible(host.windowOf(form)));
}

TEST(Launcher, StartsProgramsAndTellsWhatItCannotStart) {
  const files::Scratch scratch;
  Win32Launcher launcher;
  const std::u16string made = errors::nameText(scratch.path("made"));
  launcher.launchHidden(u"cmd.exe /c mkdir \"" + made + u"\"");
  for (int wait = 0; wait < 200 && scratch.names().empty(); ++wait) Sleep(50);
  EXPECT_THAT(scratch.names(), ElementsAre("made")) << "nobody waits for it";
  try {
    launcher.launchHidden(u"pluvo-is-not-there http://www.pluvo.example/");
    FAIL() << "there is no such program";
  } catch (const errors::Fault& fault) {
    EXPECT_EQ(fault.number, 53);
    EXPECT_NE(fault.description.find(u"pluvo-is-not-there http://www.pluvo.example/"), std::u16string::npos);
  }
}

/// The whole dialog on screen, over a document in memory.
class WholeDialog : public host::OpenedDialog, public testing::Test {
 protected:
  WholeDialog() {
    document("one (a) two (a)¶three (b)¶");
    dialog_.Visible(true);
    pump();
  }
  void pump() {
    MSG message = {};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) host_.dispatch(message);
  }
  HWND widget(std::u16string_view name) { return host_.widgetOf(dialog_, name); }
  void type(std::u16string_view name, const std::u16string& text) {
    for (const char16_t letter : text) PostMessageW(widget(name), WM_CHAR, letter, 1);
    pump();
  }
  void choose(std::u16string_view name, const wchar_t* row) {
    const HWND combo = widget(name);
    SendMessageW(combo, CB_SELECTSTRING, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(row));
    SendMessageW(GetParent(combo), WM_COMMAND, MAKEWPARAM(0, CBN_SELENDOK), reinterpret_cast<LPARAM>(combo));
    pump();
  }

  Win32Forms host_{boxes};
  host::Surroundings here_{
      [this] { return word; },    host_, boxes, inputs, clock, yielding, launcher, random,
      u16(folder.path("program"))};
  host::frmFAR dialog_{here_};
};

std::string box(const forms::Form& form, const char16_t* name) {
  return errors::utf8(form.get<forms::TextBox>(name).Text());
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
  HGDIOBJ before = SelectObject(surface, reinterpret_cast<HGDIOBJ>(SendMessageW(widget, WM_GETFONT, 0, 0)));
  RECT needed = {0, 0, place.right - place.left - (button ? 6 : 0), 0};
  DrawTextW(surface, text, -1, &needed, DT_CALCRECT | DT_WORDBREAK | (button ? 0U : UINT{DT_NOPREFIX}));
  SelectObject(surface, before);
  ReleaseDC(widget, surface);
  return needed.right <= place.right - place.left && needed.bottom <= place.bottom - place.top;
}

/// What does not fit where it stands, or does not stand within its parent.
std::vector<std::string> cutOff(const Win32Forms& host, const forms::Form& form) {
  std::vector<std::string> faults;
  const auto& pages = *dynamic_cast<const forms::MultiPage*>(form.control(u"MultiPage1"));
  for (const auto& page : pages.Pages()) {
    for (const forms::Control* control : page->controls()) {
      if (!control->Visible()) continue;
      const HWND widget = host.widgetOf(form, control->Name());
      const Mirror& mirror = *mirrorOf(widget);
      RECT place = {};
      RECT around = {};
      GetWindowRect(widget, &place);
      GetWindowRect(GetParent(widget), &around);
      const int width = place.right - place.left;
      const bool inside = place.left >= around.left && place.right <= around.right &&
                          place.top >= around.top && place.bottom <= around.bottom;
      if (!inside || !showsItsText(widget, place) || width < mirror.leastWidth() ||
          place.bottom - place.top < mirror.leastHeightFor(width))
        faults.push_back(errors::utf8(control->Name()));
    }
  }
  return faults;
}

TEST_F(WholeDialog, CutsNothingOffAtAnyResolution) {
  for (const WORD dots : {WORD{96}, WORD{120}, WORD{144}, WORD{96}}) {
    const RECT place = {0, 0, 660 * dots / 96, 490 * dots / 96};
    SendMessageW(host_.windowOf(dialog_), 0x02E0, MAKEWPARAM(dots, dots), reinterpret_cast<LPARAM>(&place));
    pump();
    EXPECT_THAT(cutOff(host_, dialog_), testing::IsEmpty()) << dots << " dots per inch";
  }
}

TEST_F(WholeDialog, IsWorkedByItsWindows) {
  type(u"txtBeginText", u"(");
  EXPECT_FALSE(IsWindowEnabled(widget(u"txtInsideText1")));
  type(u"txtEndText", u")");
  EXPECT_TRUE(IsWindowEnabled(widget(u"txtInsideText1")));
  type(u"txtInsideText1", u"a");
  choose(u"cboxProcOperation1", L"Replace");
  type(u"txtTextToEnter", u"-\r-");
  PostMessageW(widget(u"chkQuiteMode"), BM_CLICK, 0, 0);
  PostMessageW(widget(u"cmdExecuteFAR"), BM_CLICK, 0, 0);
  pump();
  EXPECT_EQ(OpenedDialog::document(), "one -¶- two -¶-¶three (b)¶");
  EXPECT_THAT(told(), testing::IsEmpty());
  type(u"txtTextToEnter", u"\x01");
  select(0, 3);
  boxes.answers = {forms::Answer::yes};
  PostMessageW(widget(u"txtTextToEnter"), WM_RBUTTONUP, 0, MAKELPARAM(3, 3));
  pump();
  EXPECT_THAT(told(), ElementsAre("Insert Highlighted Data? | Right-Click Paste Selection Operation"));
  EXPECT_EQ(forms_win32::box(dialog_, u"txtTextToEnter"), "one");
}

}  // namespace
}  // namespace pluvo::forms_win32
