// A user with mouse and keyboard who does what a file says: one step a line, its words between bars.
//
//   window|TITLE           waits for a window and works in it from now on
//   seen|TITLE             waits until there is such a window
//   gone|TITLE             waits until there is no such window
//   press|CAPTION          a button, tick or link
//   type|LABEL|TEXT        into the text box or list of a label; what is there goes
//   choose|LABEL|TEXT      an entry of that list
//   page|NUMBER            a page of the tabs, counted from 0
//   strike|KEY             Tab, Return, Escape, Delete, or a letter with Ctrl, "Ctrl+C"
//   holds|LABEL|TEXT       waits until the text box or list of a label holds this
//   read|TEXT              waits until the window says this
//   close                  the window by its cross
//   wait|MILLISECONDS      does nothing
//   shut|TITLE             closes a window as another program would, also one that waits for another
//
// Names between percent signs are the environment's.
//
// Writes "done" to the second file named, or what could not be done.

// clang-format off
#include <windows.h>
#include <commctrl.h>
// clang-format on

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr DWORD kPatience = 30000;
constexpr DWORD kPause = 20;

std::wstring textOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
  const auto length = SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<std::size_t>(length));
  return text;
}

/// A caption without the sign that marks its key.
std::wstring captionOf(HWND window) {
  std::wstring caption;
  const std::wstring text = textOf(window);
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == L'&' && i + 1 < text.size()) ++i;
    caption += text[i];
  }
  return caption;
}

bool isOf(HWND window, const wchar_t* kind) {
  wchar_t name[64] = {};
  GetClassNameW(window, name, 64);
  return CompareStringOrdinal(name, -1, kind, -1, TRUE) == CSTR_EQUAL;
}

bool isField(HWND window) {
  return isOf(window, L"ComboBox") || (isOf(window, L"Edit") && !isOf(GetParent(window), L"ComboBox"));
}

std::vector<HWND> childrenOf(HWND window) {
  std::vector<HWND> children;
  EnumChildWindows(
      window,
      [](HWND child, LPARAM all) -> BOOL {
        reinterpret_cast<std::vector<HWND>*>(all)->push_back(child);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&children));
  return children;
}

/// Not one that is minimized.
HWND windowWith(const std::wstring& title) {
  struct Search {
    const std::wstring& title;
    HWND found = nullptr;
  } search{title};
  EnumWindows(
      [](HWND window, LPARAM parameter) -> BOOL {
        auto& wanted = *reinterpret_cast<Search*>(parameter);
        if (!IsWindowVisible(window) || textOf(window) != wanted.title) return TRUE;
        if (IsIconic(window)) return TRUE;
        wanted.found = window;
        return FALSE;
      },
      reinterpret_cast<LPARAM>(&search));
  return search.found;
}

/// As the system has a thread hear of keys and of the mouse, in order, and whether it is in front or not.
void post(HWND window, UINT message, WPARAM wide, LPARAM point) {
  PostMessageW(window, message, wide, point);
  Sleep(kPause);
}

void key(HWND window, WORD code) {
  const LPARAM scan = static_cast<LPARAM>(MapVirtualKeyW(code, MAPVK_VK_TO_VSC)) << 16;
  post(window, WM_KEYDOWN, code, scan | 1);
  post(window, WM_KEYUP, code, scan | 0xC0000001);
}

/// A list is clicked on in its text: its arrow would open it.
void click(HWND window) {
  HWND target = window;
  if (isOf(window, L"ComboBox")) target = GetWindow(window, GW_CHILD);
  RECT inside{};
  GetClientRect(target, &inside);
  const LPARAM point = MAKELPARAM(inside.right / 2, inside.bottom / 2);
  post(target, WM_LBUTTONDOWN, MK_LBUTTON, point);
  post(target, WM_LBUTTONUP, 0, point);
}

/// The window that typing arrives in.
HWND focusedIn(HWND window) {
  GUITHREADINFO info{};
  info.cbSize = sizeof(info);
  GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info);
  return info.hwndFocus;
}

class User {
 public:
  void follow(const std::vector<std::wstring>& step) {
    const std::wstring& verb = step[0];
    if (verb == L"window") return work(step.at(1));
    if (verb == L"seen") return seen(step.at(1));
    if (verb == L"gone") return gone(step.at(1));
    if (verb == L"press") return press(step.at(1));
    if (verb == L"type") return type(field(step.at(1)), step.at(2));
    if (verb == L"choose") return choose(field(step.at(1)), step.at(2));
    if (verb == L"page") return page(std::stoi(step.at(1)));
    if (verb == L"read") return read(step.at(1));
    if (verb == L"strike") return strike(step.at(1));
    if (verb == L"holds") return holds(step.at(1), step.at(2));
    if (verb == L"shut") return post(windowWith(step.at(1)), WM_CLOSE, 0, 0);
    if (verb == L"wait") return Sleep(static_cast<DWORD>(std::stoi(step.at(1))));
    if (verb == L"close") return post(window_, WM_SYSCOMMAND, SC_CLOSE, 0);
    throw std::runtime_error("no such step");
  }

 private:
  template <class Found>
  static auto await(Found found) {
    for (DWORD waited = 0; waited < kPatience; waited += kPause) {
      if (const auto result = found()) return result;
      Sleep(kPause);
    }
    throw std::runtime_error("waited in vain");
  }

  void work(const std::wstring& title) {
    window_ = await([&]() -> HWND {
      const HWND window = windowWith(title);
      return window != nullptr && IsWindowEnabled(window) ? window : nullptr;
    });
  }

  static void seen(const std::wstring& title) {
    await([&] { return windowWith(title) != nullptr; });
  }

  static void gone(const std::wstring& title) {
    await([&] { return windowWith(title) == nullptr; });
  }

  void press(const std::wstring& caption) const {
    const HWND pressed = await([&]() -> HWND {
      for (const HWND child : childrenOf(window_)) {
        if (captionOf(child) == caption && IsWindowVisible(child) && IsWindowEnabled(child)) return child;
      }
      return nullptr;
    });
    const bool isTick =
        (GetWindowLongW(pressed, GWL_STYLE) & BS_TYPEMASK) == BS_AUTOCHECKBOX && isOf(pressed, L"Button");
    const LRESULT before = SendMessageW(pressed, BM_GETCHECK, 0, 0);
    click(pressed);
    if (isTick) await([&] { return SendMessageW(pressed, BM_GETCHECK, 0, 0) != before; });
  }

  HWND field(const std::wstring& label) const {
    return await([&]() -> HWND {
      bool after = false;
      for (const HWND child : childrenOf(window_)) {
        if (after && isField(child))
          return IsWindowVisible(child) && IsWindowEnabled(child) ? child : nullptr;
        after = after || captionOf(child) == label;
      }
      return nullptr;
    });
  }

  static HWND focusOn(HWND field) {
    click(field);
    return await([&]() -> HWND {
      const HWND focused = focusedIn(field);
      return focused == field || IsChild(field, focused) ? focused : nullptr;
    });
  }

  static void type(HWND field, const std::wstring& text) {
    const HWND edit = focusOn(field);
    SendMessageW(edit, EM_SETSEL, 0, -1);
    key(edit, VK_DELETE);
    for (const wchar_t unit : text) post(edit, WM_CHAR, unit, 1);
    await([&] { return textOf(field) == text; });
  }

  static void choose(HWND list, const std::wstring& text) {
    const HWND edit = focusOn(list);
    const auto chosen = [&] { return static_cast<int>(SendMessageW(list, CB_GETCURSEL, 0, 0)); };
    const auto step = [&](WORD code, int last) {
      const int before = chosen();
      if (before == last) return false;
      key(edit, code);
      await([&] { return chosen() != before; });
      return true;
    };
    while (step(VK_UP, 0)) {
    }
    const auto rows = static_cast<int>(SendMessageW(list, CB_GETCOUNT, 0, 0));
    while (textOf(list) != text) {
      if (!step(VK_DOWN, rows - 1)) throw std::runtime_error("the list has no such entry");
    }
    key(edit, VK_TAB);
  }

  /// By the keyboard itself, since only that tells the system which keys are held; it goes to what is in
  /// front.
  void strike(const std::wstring& name) const {
    await([&] { return GetForegroundWindow() == window_; });
    const bool control = name.starts_with(L"Ctrl+");
    const WORD code = name == L"Tab"      ? VK_TAB
                      : name == L"Return" ? VK_RETURN
                      : name == L"Escape" ? VK_ESCAPE
                      : name == L"Delete" ? VK_DELETE
                                          : static_cast<WORD>(name.back());
    std::vector<INPUT> events;
    const auto add = [&](WORD key, DWORD flags) {
      INPUT event{};
      event.type = INPUT_KEYBOARD;
      event.ki.wVk = key;
      event.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
      event.ki.dwFlags = flags;
      events.push_back(event);
    };
    if (control) add(VK_CONTROL, 0);
    add(code, 0);
    add(code, KEYEVENTF_KEYUP);
    if (control) add(VK_CONTROL, KEYEVENTF_KEYUP);
    SendInput(static_cast<UINT>(events.size()), events.data(), sizeof(INPUT));
    Sleep(kPause);
  }

  void holds(const std::wstring& label, const std::wstring& text) const {
    const HWND held = field(label);
    await([&] { return textOf(held) == text; });
  }

  void page(int number) const {
    for (const HWND child : childrenOf(window_)) {
      if (!isOf(child, WC_TABCONTROLW)) continue;
      SendMessageW(child, TCM_SETCURFOCUS, static_cast<WPARAM>(number), 0);
      await([&] { return SendMessageW(child, TCM_GETCURSEL, 0, 0) == number; });
      return;
    }
    throw std::runtime_error("there are no pages");
  }

  void read(const std::wstring& text) const {
    await([&] {
      for (const HWND child : childrenOf(window_)) {
        if (IsWindowVisible(child) && textOf(child).find(text) != std::wstring::npos) return true;
      }
      return false;
    });
  }

  HWND window_ = nullptr;
};

std::vector<std::wstring> wordsOf(const std::string& line) {
  wchar_t expanded[1024] = {};
  ExpandEnvironmentStringsW(std::wstring(line.begin(), line.end()).c_str(), expanded, 1024);
  std::vector<std::wstring> words;
  std::wstringstream stream(expanded);
  for (std::wstring word; std::getline(stream, word, L'|');) words.push_back(word);
  // An empty last word.
  if (line.back() == '|') words.emplace_back();
  return words;
}

std::string perform(const std::filesystem::path& steps) {
  std::ifstream file(steps);
  if (!file) return "there are no steps";
  User user;
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty() || line[0] == '#') continue;
    try {
      user.follow(wordsOf(line));
    } catch (const std::exception& error) {
      return line + ": " + error.what();
    }
  }
  return "done";
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
  int count = 0;
  LPWSTR* const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  if (count != 3) return 2;
  const std::string outcome = perform(arguments[1]);
  std::ofstream(std::filesystem::path(arguments[2])) << outcome << std::endl;
  return outcome == "done" ? 0 : 1;
}
