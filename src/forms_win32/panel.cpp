#include "panel.h"

#include "base/at_end.h"

#include <algorithm>

namespace pluvo::forms_win32 {

Panel::Panel(const std::vector<forms::Control*>& controls, Stage& stage, HWND parent) : stage_(stage) {
  window_ = stage.module.makeWindow(*this, L"", WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS,
                                    WS_EX_CONTROLPARENT, parent);
  try {
    for (forms::Control* control : controls) mirrors_.push_back(Mirror::of(*control, stage, window_));
  } catch (...) {
    DestroyWindow(window_);  // which calls this panel
    throw;
  }
}

Panel::~Panel() {
  mirrors_.clear();
  if (window_ != nullptr) DestroyWindow(window_);
}

std::vector<Mirror*> Panel::kept() const {
  std::vector<Mirror*> kept;
  for (const auto& mirror : mirrors_) {
    if (mirror->control().StaysInSight()) kept.push_back(mirror.get());
  }
  return kept;
}

void Panel::arrange() {
  if (arranging_ || window_ == nullptr) return;
  arranging_ = true;
  const base::AtEnd arranged([this] { arranging_ = false; });
  RECT inside = {};
  GetClientRect(window_, &inside);
  const std::vector<Mirror*> kept = this->kept();
  const bool low = !kept.empty() && grid().heightFor(inside.right, true) > inside.bottom;
  stripHeight_ = 0;
  for (const Mirror* mirror : kept) {
    if (!low) break;
    const int each = static_cast<int>(inside.right) / static_cast<int>(kept.size());
    stripHeight_ =
        std::max(stripHeight_, mirror->heightFor(each - stage_.look->px(20)) + 2 * stage_.look->px(7));
  }
  const Grid grid = this->grid(low);
  SCROLLINFO bar = {};
  bar.cbSize = sizeof bar;
  bar.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
  int room = 0;
  // The bar takes from the width, on which the height depends.
  for (int pass = 0; pass < 2; ++pass) {
    const int needed = grid.heightFor(inside.right, true);
    room = std::max(0, static_cast<int>(inside.bottom) - stripHeight_);
    top_ = std::clamp(top_, 0, std::max(0, needed - room));
    bar.nMax = needed > room ? needed - 1 : 0;
    bar.nPage = static_cast<UINT>(room);
    bar.nPos = top_;
    SetScrollInfo(window_, SB_VERT, &bar, TRUE);
    GetClientRect(window_, &inside);
  }
  grid.arrange(inside.right, std::max(room, bar.nMax + 1), top_);
  placeKept({0, room, inside.right, inside.bottom});
  InvalidateRect(window_, nullptr, TRUE);
}

void Panel::placeKept(const RECT& strip) {
  if (stripHeight_ == 0) {
    if (strip_ != nullptr) ShowWindow(strip_, SW_HIDE);
    return;
  }
  if (strip_ == nullptr) strip_ = stage_.module.makeWidget(WC_STATICW, L"", WS_CHILD, 0, window_);
  const std::vector<Mirror*> kept = this->kept();
  SetWindowPos(strip_, HWND_TOP, strip.left, strip.top, strip.right - strip.left, strip.bottom - strip.top,
               SWP_NOACTIVATE | SWP_SHOWWINDOW);
  const LONG gap = stage_.look->px(7);
  const auto count = static_cast<LONG>(kept.size());
  const LONG each = (strip.right - strip.left - (count + 1) * gap) / count;
  LONG left = strip.left + gap;
  for (Mirror* mirror : kept) {
    mirror->place({left, strip.top + gap, left + each, strip.bottom - gap});
    SetWindowPos(mirror->widget(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    left += each + gap;
  }
}

void Panel::scrollTo(int top) {
  top_ = top;
  arrange();
}

void Panel::scrolls(WORD how) {
  SCROLLINFO bar = {};
  bar.cbSize = sizeof bar;
  bar.fMask = SIF_ALL;
  GetScrollInfo(window_, SB_VERT, &bar);
  const int line = stage_.look->px(20);
  switch (how) {
    case SB_LINEUP:
      return scrollTo(top_ - line);
    case SB_LINEDOWN:
      return scrollTo(top_ + line);
    case SB_PAGEUP:
      return scrollTo(top_ - static_cast<int>(bar.nPage));
    case SB_PAGEDOWN:
      return scrollTo(top_ + static_cast<int>(bar.nPage));
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
      return scrollTo(bar.nTrackPos);
    default:
      return;
  }
}

void Panel::reveal(HWND widget) {
  RECT place = {};
  RECT inside = {};
  GetWindowRect(widget, &place);
  MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&place), 2);
  GetClientRect(window_, &inside);
  if (stripHeight_ > 0 && mirrorOf(widget)->control().StaysInSight()) return;
  inside.bottom -= stripHeight_;
  if (place.top < 0) return scrollTo(top_ + place.top);
  if (place.bottom > inside.bottom) scrollTo(top_ + std::min(place.bottom - inside.bottom, place.top));
}

LRESULT Panel::receives(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  const auto widget = [&] { return mirrorOf(reinterpret_cast<HWND>(lparam)); };
  switch (message) {
    case WM_SIZE:
      arrange();
      return 0;
    case kArrange: {
      MSG same = {};
      while (PeekMessageW(&same, window, kArrange, kArrange, PM_REMOVE) != 0) {
      }
      arrange();
      return 0;
    }
    case kReveal:
      if (widget() != nullptr) reveal(widget()->widget());
      return 0;
    case WM_VSCROLL:
      if (lparam == 0) scrolls(LOWORD(wparam));
      return 0;
    case WM_MOUSEWHEEL:
      if ((GetWindowLongW(window, GWL_STYLE) & WS_VSCROLL) == 0) break;
      scrollTo(top_ - GET_WHEEL_DELTA_WPARAM(wparam) * stage_.look->px(60) / WHEEL_DELTA);
      return 0;
    case WM_COMMAND:
      if (Mirror* mirror = widget(); mirror != nullptr && stage_.userActions.listening())
        mirror->commanded(HIWORD(wparam));
      return 0;
    case WM_NOTIFY: {
      auto& notification = *reinterpret_cast<NMHDR*>(lparam);
      Mirror* mirror = mirrorOf(notification.hwndFrom);
      return mirror == nullptr ? 0 : mirror->notified(notification);
    }
    case WM_DRAWITEM: {
      const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lparam);
      if (Mirror* mirror = mirrorOf(item.hwndItem)) mirror->draws(item);
      return TRUE;
    }
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
      if (Mirror* mirror = widget())
        return reinterpret_cast<LRESULT>(mirror->colored(reinterpret_cast<HDC>(wparam)));
      break;
    case WM_NCDESTROY:
      window_ = nullptr;
      break;
    default:
      break;
  }
  return DefWindowProcW(window, message, wparam, lparam);
}

}  // namespace pluvo::forms_win32
