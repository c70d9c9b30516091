#include "form_window.h"

#include "base/at_end.h"
#include "forms/default_button.h"
#include "forms_win32/forms.h"
#include "text.h"

#include <algorithm>
#include <utility>

namespace pluvo::forms_win32 {

namespace {

constexpr DWORD kStyle = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
constexpr DWORD kExtended = WS_EX_CONTROLPARENT;
constexpr UINT kResolutionChanged = 0x02E0;  // WM_DPICHANGED, not in older headers' reach
constexpr const wchar_t* kForm = L"PLUVO form";
constexpr int kTipWidth = 320;
constexpr int kShowsTipFor = 30000;
constexpr int kLetters = 60;
constexpr int kLettersOfPages = 130;

bool isDown(int key) { return (static_cast<unsigned short>(GetKeyState(key)) & 0x8000U) != 0; }

RECT workAreaBeside(HWND window) {
  MONITORINFO screen = {};
  screen.cbSize = sizeof screen;
  GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTOPRIMARY), &screen);
  return screen.rcWork;
}

bool canTakeFocus(const Mirror& mirror) {
  return (GetWindowLongW(mirror.widget(), GWL_STYLE) & WS_TABSTOP) != 0 &&
         IsWindowVisible(mirror.widget()) != 0 && IsWindowEnabled(mirror.widget()) != 0;
}

std::vector<Mirror*> byTabIndex(std::vector<Mirror*> mirrors) {
  std::ranges::stable_sort(mirrors, {}, [](const Mirror* mirror) { return mirror->control().TabIndex(); });
  return mirrors;
}

/// The mirror of the window, or of the one it is part of.
Mirror* mirrorAround(HWND window) {
  Mirror* mirror = mirrorOf(window);
  return mirror != nullptr ? mirror : mirrorOf(GetParent(window));
}

}  // namespace

FormWindow::FormWindow(Win32Forms& host, forms::Form& form)
    : host_(host),
      form_(form),
      stage_{*host.module_, forms::UserActions(host.boxes_, [](const forms::Control*) { return true; }),
             std::make_unique<Look>(96), nullptr} {}

FormWindow::~FormWindow() {
  host_.windows_.erase(&form_);
  stage_.userActions.listening(false);
  waits_.reset();
  unmake();
}

FormWindow* FormWindow::of(HWND window) {
  return window == nullptr ? nullptr : static_cast<FormWindow*>(GetPropW(window, kForm));
}

void FormWindow::build() {
  window_ = stage_.module.makeWindow(*this, wide(form_.Caption()), kStyle, kExtended, nullptr);
  if (SetPropW(window_, kForm, this) == 0) throw noMoreWindows();
  stage_.look = std::make_unique<Look>(Look::dotsPerInch(window_));
  stage_.tips = stage_.module.makeWidget(TOOLTIPS_CLASSW, L"", WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX,
                                         WS_EX_TOPMOST, window_);
  SendMessageW(stage_.tips, TTM_SETMAXTIPWIDTH, 0, stage_.look->px(kTipWidth));
  SendMessageW(stage_.tips, TTM_SETDELAYTIME, TTDT_AUTOPOP, kShowsTipFor);
  panel_ = std::make_unique<Panel>(form_.controls(), stage_, window_);
  ShowWindow(panel_->window(), SW_SHOWNA);
  status_ = stage_.module.makeWidget(STATUSCLASSNAMEW, L"", WS_CHILD | SBARS_SIZEGRIP, 0, window_);
  SendMessageW(status_, WM_SETFONT, reinterpret_cast<WPARAM>(stage_.look->font({})), FALSE);
}

void FormWindow::refreshStatus() {
  const bool shown = !form_.StatusText().empty();
  const bool wasShown = statusHeight() > 0;
  if (textOf(status_) != form_.StatusText()) SetWindowTextW(status_, wide(form_.StatusText()));
  if (shown == wasShown) return;
  ShowWindow(status_, shown ? SW_SHOWNA : SW_HIDE);
  placePanel();
}

int FormWindow::statusHeight() const {
  if (status_ == nullptr || (GetWindowLongW(status_, GWL_STYLE) & WS_VISIBLE) == 0) return 0;
  RECT place = {};
  GetWindowRect(status_, &place);
  return place.bottom - place.top;
}

/// Above the status line, which keeps itself at the bottom.
void FormWindow::placePanel() {
  SendMessageW(status_, WM_SIZE, 0, 0);
  RECT inside = {};
  GetClientRect(window_, &inside);
  MoveWindow(panel_->window(), 0, 0, inside.right, std::max<LONG>(inside.bottom - statusHeight(), 0), TRUE);
}

void FormWindow::unmake() {
  panel_.reset();
  if (stage_.tips != nullptr) DestroyWindow(std::exchange(stage_.tips, nullptr));
  if (window_ != nullptr) DestroyWindow(window_);
}

void FormWindow::show() {
  // Where not all of it can be made, the rest is destroyed: the next showing begins anew.
  bool isThere = window_ != nullptr;
  const base::AtEnd undone([&] {
    if (!isThere) unmake();
  });
  if (!isThere) build();
  SetWindowLongPtrW(window_, GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(ownerNow()));
  for (Mirror* mirror : all()) mirror->refresh();
  refresh();
  setSize();
  stage_.userActions.listening(true);
  ShowWindow(window_, IsIconic(window_) != 0 ? SW_RESTORE : SW_SHOWNORMAL);
  SetForegroundWindow(window_);
  wasShown_ = true;
  isShown_ = true;
  isThere = true;
  focus();
  host_.listen();
}

void FormWindow::bringForward() {
  if (!isShown_) return;
  if (window_ == nullptr) return show();
  form_.WindowState(0);
  if (IsIconic(window_) != 0) ShowWindow(window_, SW_RESTORE);
  if (host_.owner) standAbove(host_.owner());
  SetForegroundWindow(window_);
  focus();
}

void FormWindow::follow(HWND document) {
  const bool goes = isShown_ && window_ != nullptr && host_.modeless_.contains(form_.Name());
  if (goes && host_.isOwner && host_.isOwner(document)) standAbove(document);
}

void FormWindow::leave(HWND document) {
  if (!isShown_ || window_ == nullptr || GetWindow(window_, GW_OWNER) != document) return;
  if (host_.isOwner && host_.isOwner(document)) SetWindowLongPtrW(window_, GWLP_HWNDPARENT, 0);
}

void FormWindow::standAbove(HWND document) {
  if (document == nullptr || GetWindow(window_, GW_OWNER) == document) return;
  SetWindowLongPtrW(window_, GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(document));
  SetWindowPos(window_, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void FormWindow::hide() {
  stage_.userActions.listening(false);
  stage_.userActions.begun({});
  focused_ = nullptr;
  isShown_ = false;
  // First, or the window that is to come to the front cannot.
  waits_.reset();
  host_.listen();
  if (window_ == nullptr) return;
  ShowWindow(window_, SW_HIDE);
  // The window above which it stands may go before it does.
  SetWindowLongPtrW(window_, GWLP_HWNDPARENT, 0);
}

void FormWindow::run() {
  // The loop may be one of several, one within the other, of which the innermost deals with all messages.
  ++loops_;
  const base::AtEnd ended([this] {
    if (--loops_ == 0) hide();
  });
  show();
  if (!host_.modeless_.contains(form_.Name())) waits_.emplace(window_);
  MSG message = {};
  while (form_.Visible()) {
    const BOOL got = host_.pull([&] { return GetMessageW(&message, nullptr, 0, 0); });
    if (got <= 0) {
      // The program is to end: the loops further out have to hear of it.
      PostQuitMessage(static_cast<int>(message.wParam));
      break;
    }
    host_.dispatch(message);
  }
}

void FormWindow::repaint() {
  if (window_ == nullptr) return;
  panel_->arrange();  // labels that came or grew have their places first
  RedrawWindow(window_, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void FormWindow::refresh() {
  if (window_ == nullptr) return;
  if (textOf(window_) != form_.Caption()) SetWindowTextW(window_, wide(form_.Caption()));
  refreshStatus();
  refreshWindowState();
  if (wasShown_ && form_.Visible() && focused_ != form_.ActiveControl()) focus();
}

void FormWindow::refreshWindowState() {
  if (windowState_ == form_.WindowState()) return;
  windowState_ = form_.WindowState();
  if (IsWindowVisible(window_) != 0) ShowWindow(window_, windowState_ == 1 ? SW_MINIMIZE : SW_RESTORE);
}

std::vector<Mirror*> FormWindow::all() const {
  std::vector<Mirror*> all;
  if (!panel_) return all;
  std::vector<Mirror*> outer;
  for (const auto& mirror : panel_->mirrors()) outer.push_back(mirror.get());
  for (Mirror* mirror : byTabIndex(std::move(outer))) {
    all.push_back(mirror);
    const std::vector<Mirror*> inner = byTabIndex(mirror->inner());
    all.insert(all.end(), inner.begin(), inner.end());
  }
  return all;
}

Mirror* FormWindow::mirror(std::u16string_view control) const {
  for (Mirror* mirror : all()) {
    if (mirror->control().Name() == control) return mirror;
  }
  return nullptr;
}

MultiPageMirror* FormWindow::pages() const {
  if (!panel_) return nullptr;
  for (const auto& mirror : panel_->mirrors()) {
    if (auto* pages = dynamic_cast<MultiPageMirror*>(mirror.get())) return pages;
  }
  return nullptr;
}

// Size and place

SIZE FormWindow::around(SIZE inside) const {
  const RECT frame = stage_.look->framed({0, 0, inside.cx, inside.cy}, kStyle, kExtended);
  return {frame.right - frame.left, frame.bottom - frame.top};
}

int FormWindow::widthAtFirst() const {
  const int letters = pages() != nullptr ? kLettersOfPages : kLetters;
  return std::max(panel_->leastWidth(), stage_.look->letterWidth(stage_.look->font({})) * letters);
}

void FormWindow::setSize() {
  const int width = widthAtFirst();
  RECT now = {};
  GetClientRect(window_, &now);
  if (wasShown_) {
    // The form's texts may have grown; the size is the user's otherwise.
    const int height = panel_->heightFor(now.right, true) + statusHeight();
    if (height <= now.bottom || IsIconic(window_) != 0 || IsZoomed(window_) != 0) return;
    const SIZE size = around({now.right, height});
    SetWindowPos(window_, nullptr, 0, 0, size.cx, size.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    return;
  }
  putInPlace(around({width, panel_->heightFor(width, false) + statusHeight()}));
}

/// A form that is waited for stands above the form in front. Any other stands above the word processor, so
/// that it does not follow that form.
HWND FormWindow::ownerNow() const {
  HWND front = GetActiveWindow();
  if (loops_ > 0 && front != window_ && host_.isForm(front) && IsWindowVisible(front) != 0 &&
      IsIconic(front) == 0)
    return front;
  return host_.owner ? host_.owner() : nullptr;
}

void FormWindow::putInPlace(SIZE size) {
  HWND owner = GetWindow(window_, GW_OWNER);
  const RECT screen = workAreaBeside(owner != nullptr ? owner : window_);
  RECT around = screen;
  if (owner != nullptr && IsIconic(owner) == 0) GetWindowRect(owner, &around);
  size.cx = std::min(size.cx, screen.right - screen.left);
  size.cy = std::min(size.cy, screen.bottom - screen.top);
  LONG left = (around.left + around.right - size.cx) / 2;
  LONG top = (around.top + around.bottom - size.cy) / 2;
  const auto isOther = [this](const auto& each) { return each.second != this && each.second->isShown(); };
  const bool isMain = host_.modeless_.contains(form_.Name()) && std::ranges::none_of(host_.windows_, isOther);
  if (loops_ == 0 && !isMain) {
    // A form without a waiting caller stands beside its subject: below, to the right.
    left = around.right - size.cx - stage_.look->px(40);
    top = around.bottom - size.cy - stage_.look->px(40);
  }
  left = std::clamp(left, screen.left, screen.right - size.cx);
  top = std::clamp(top, screen.top, screen.bottom - size.cy);
  SetWindowPos(window_, nullptr, left, top, size.cx, size.cy, SWP_NOZORDER | SWP_NOACTIVATE);
}

void FormWindow::keepLeastSize(MINMAXINFO& limits) const {
  if (!panel_) return;
  const RECT screen = workAreaBeside(window_);
  // Its texts need more lines where it is narrower; then, and on a small screen, it scrolls.
  const SIZE least = around({panel_->leastWidth(), panel_->heightFor(widthAtFirst(), true) + statusHeight()});
  limits.ptMinTrackSize.x = std::min(least.cx, screen.right - screen.left);
  limits.ptMinTrackSize.y = std::min({least.cy, screen.bottom - screen.top, LONG{stage_.look->px(500)}});
}

void FormWindow::changeResolution(UINT dotsPerInch, const RECT& place) {
  const auto before = std::exchange(stage_.look, std::make_unique<Look>(dotsPerInch));
  for (const auto& mirror : panel_->mirrors()) mirror->lookChanged();
  SendMessageW(stage_.tips, TTM_SETMAXTIPWIDTH, 0, stage_.look->px(kTipWidth));
  SendMessageW(status_, WM_SETFONT, reinterpret_cast<WPARAM>(stage_.look->font({})), TRUE);
  SetWindowPos(window_, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
               SWP_NOZORDER | SWP_NOACTIVATE);
  panel_->arrange();
}

// Keys and the focus

void FormWindow::focus() {
  focused_ = form_.ActiveControl();
  const std::vector<Mirror*> all = this->all();
  const auto wanted = std::ranges::find_if(all, [&](const Mirror* mirror) {
    return focused_ != nullptr ? &mirror->control() == focused_
                               : mirror->inner().empty() && canTakeFocus(*mirror);
  });
  if (wanted == all.end()) return;
  lastFocus_ = (*wanted)->widget();
  if (GetActiveWindow() == window_) focusOn(**wanted);
}

void FormWindow::focusOn(const Mirror& mirror) {
  SetFocus(mirror.widget());
  if (MultiPageMirror* pages = this->pages()) pages->reveal(mirror);
  // As in any dialog, a box of one line that is come to by key is marked whole.
  wchar_t kind[8] = {};
  GetClassNameW(mirror.widget(), kind, 8);
  if (lstrcmpiW(kind, WC_EDITW) == 0 && (GetWindowLongW(mirror.widget(), GWL_STYLE) & ES_MULTILINE) == 0)
    SendMessageW(mirror.widget(), EM_SETSEL, 0, -1);
}

void FormWindow::moveFocus(bool back) {
  std::vector<Mirror*> stops = all();
  const Mirror* now = mirrorAround(GetFocus());
  std::erase_if(stops, [&](const Mirror* mirror) { return mirror != now && !canTakeFocus(*mirror); });
  if (back) std::ranges::reverse(stops);
  const auto here = std::ranges::find(stops, now);
  if (here != stops.end()) std::rotate(stops.begin(), here + 1, stops.end());
  if (stops.empty() || stops.front() == now || !stage_.userActions.endEdit()) return;
  focusOn(*stops.front());
}

bool FormWindow::takes(MSG& message) {
  const bool repeated = (message.lParam & (LPARAM{1} << 30)) != 0;
  if (message.message == WM_KEYDOWN && pressed(message.wParam, repeated)) return true;
  // Keys in captions; other keys of a dialog are handled above.
  const bool forDialog = message.message == WM_SYSCHAR || message.message == WM_SYSKEYDOWN;
  return forDialog && IsDialogMessageW(window_, &message) != 0;
}

bool FormWindow::pressed(WPARAM key, bool repeated) {
  if (isDown(VK_MENU) || !stage_.userActions.listening()) return false;
  Mirror* mirror = mirrorAround(GetFocus());
  if (mirror != nullptr && mirror->wants(key)) return false;
  const bool control = isDown(VK_CONTROL);
  switch (key) {
    case VK_ESCAPE:
      if (control) return false;
      closed();
      return true;
    case VK_TAB:
    case VK_PRIOR:
    case VK_NEXT: {
      const bool back = key == VK_PRIOR || (key == VK_TAB && isDown(VK_SHIFT));
      if (!control) {
        if (key == VK_TAB) moveFocus(back);
        return key == VK_TAB;
      }
      if (MultiPageMirror* pages = this->pages()) pages->turn(back ? -1 : 1);
      return true;
    }
    case VK_RETURN:
      // A key held down is one step.
      return repeated || (!control && pressEnter(mirror));
    default:
      return false;
  }
}

bool FormWindow::pressEnter(Mirror* mirror) {
  if (!stage_.userActions.endEdit()) return true;
  if (mirror != nullptr) {
    if (auto* box = dynamic_cast<forms::TextBox*>(&mirror->control()))
      stage_.userActions.does([&] { box->pressKey(forms::kEnterKey); });
  }
  if (!stage_.userActions.listening()) return true;
  for (Mirror* each : all()) {
    if (!forms::isPressedByEnter(each->control()) || IsWindowVisible(each->widget()) == 0) continue;
    each->press();
    return true;
  }
  moveFocus(false);
  return true;
}

void FormWindow::closed() {
  // An edit that is refused is undone, and the form goes all the same.
  stage_.userActions.endEdit();
  stage_.userActions.does([this] { form_.close(); });
}

void FormWindow::closeUnasked() {
  stage_.userActions.begun({});
  stage_.userActions.does([this] { form_.close(); });
}

void FormWindow::activates(bool on) {
  if (!on) {
    HWND focus = GetFocus();
    if (focus != nullptr && IsChild(window_, focus) != 0) lastFocus_ = focus;
    return;
  }
  stage_.userActions.does([this] { form_.activate(); });
}

/// The windows on it go with it, and nothing of theirs is left to be ended.
void FormWindow::wentAway() {
  window_ = nullptr;
  status_ = nullptr;
  stage_.tips = nullptr;
  stage_.userActions.begun({});
  lastFocus_ = nullptr;
  windowState_ = 0;
  wasShown_ = false;
}

LRESULT FormWindow::receives(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_CLOSE:
      closed();
      return 0;
    case WM_SIZE:
      if (panel_ && wparam != SIZE_MINIMIZED) placePanel();
      return 0;
    case WM_GETMINMAXINFO:
      keepLeastSize(*reinterpret_cast<MINMAXINFO*>(lparam));
      return 0;
    case WM_ACTIVATE:
      activates(LOWORD(wparam) != WA_INACTIVE);
      break;
    case WM_SETFOCUS:
      if (lastFocus_ != nullptr && IsChild(window_, lastFocus_) != 0) SetFocus(lastFocus_);
      return 0;
    case kResolutionChanged:
      if (panel_) changeResolution(HIWORD(wparam), *reinterpret_cast<const RECT*>(lparam));
      return 0;
    case WM_SETTINGCHANGE:
    case WM_SYSCOLORCHANGE:
      for (Mirror* mirror : all()) SendMessageW(mirror->widget(), message, wparam, lparam);
      break;
    case WM_NCDESTROY:
      RemovePropW(window, kForm);
      wentAway();
      break;
    default:
      break;
  }
  return DefWindowProcW(window, message, wparam, lparam);
}

}  // namespace pluvo::forms_win32
