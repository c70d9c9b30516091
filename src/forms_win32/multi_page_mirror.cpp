#include "multi_page_mirror.h"

#include "text.h"

#include <algorithm>

namespace pluvo::forms_win32 {

MultiPageMirror::MultiPageMirror(forms::MultiPage& pages, Stage& stage, HWND parent)
    : Mirror(pages, stage), pages_(pages) {
  mirrors(WC_TABCONTROLW, WS_TABSTOP | TCS_MULTILINE | WS_CLIPCHILDREN, WS_EX_CONTROLPARENT, parent);
  for (const auto& page : pages.Pages()) {
    std::u16string caption = marked(page->Caption());
    TCITEMW tab = {};
    tab.mask = TCIF_TEXT;
    tab.pszText = wide(caption);
    send(TCM_INSERTITEMW, panels_.size(), reinterpret_cast<LPARAM>(&tab));
    panels_.push_back(std::make_unique<Panel>(page->controls(), stage, widget()));
    std::u16string tip = page->ControlTipText();
    if (tip.empty()) continue;
    TTTOOLINFOW tool = tipOf(panels_.size() - 1);
    tool.lpszText = wide(tip);
    SendMessageW(stage.tips, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  }
}

MultiPageMirror::~MultiPageMirror() = default;

TTTOOLINFOW MultiPageMirror::tipOf(std::size_t page) const {
  TTTOOLINFOW tool = {};
  tool.cbSize = TTTOOLINFOW_V2_SIZE;
  tool.uFlags = TTF_SUBCLASS;
  tool.hwnd = widget();
  tool.uId = page;
  send(TCM_GETITEMRECT, page, reinterpret_cast<LPARAM>(&tool.rect));
  return tool;
}

SIZE MultiPageMirror::frame(int width) const {
  constexpr LONG kTall = 1000;
  RECT place = {0, 0, width, kTall};
  send(TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&place));
  return {width - (place.right - place.left), kTall - (place.bottom - place.top)};
}

int MultiPageMirror::leastWidth() const {
  int least = 0;
  for (const auto& panel : panels_) least = std::max(least, panel->leastWidth());
  return least + frame(least).cx;
}

int MultiPageMirror::heightFor(int width, bool least) const {
  const SIZE frame = this->frame(width);
  int height = 0;
  for (const auto& panel : panels_) height = std::max(height, panel->heightFor(width - frame.cx, least));
  // The pages scroll, not the form with all of them.
  constexpr int kLeast = 240;
  if (least) height = std::min(height, look().px(kLeast));
  return height + frame.cy;
}

void MultiPageMirror::place(const RECT& place) {
  Mirror::place(place);
  RECT inside = {0, 0, place.right - place.left, place.bottom - place.top};
  send(TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&inside));
  for (std::size_t page = 0; page < panels_.size(); ++page) {
    TTTOOLINFOW tool = tipOf(page);
    SendMessageW(stage().tips, TTM_NEWTOOLRECTW, 0, reinterpret_cast<LPARAM>(&tool));
  }
  for (const auto& panel : panels_) {
    MoveWindow(panel->window(), inside.left, inside.top, inside.right - inside.left,
               inside.bottom - inside.top, TRUE);
    panel->arrange();
  }
}

std::vector<Mirror*> MultiPageMirror::inner() const {
  std::vector<Mirror*> all;
  for (const auto& panel : panels_) {
    for (const auto& mirror : panel->mirrors()) all.push_back(mirror.get());
  }
  return all;
}

LRESULT MultiPageMirror::notified(NMHDR& notification) {
  if (notification.code == TCN_SELCHANGE && userActions().listening())
    chosen(static_cast<std::size_t>(send(TCM_GETCURSEL)));
  return 0;
}

void MultiPageMirror::turn(int by) {
  const auto count = static_cast<int>(pages_.Pages().size());
  if (count > 0) chosen(static_cast<std::size_t>((static_cast<int>(pages_.Value()) + by + count) % count));
}

void MultiPageMirror::chosen(std::size_t page) {
  userActions().decides([&] { pages_.choose(page); });
  refresh();
}

void MultiPageMirror::reveal(const Mirror& mirror) {
  for (std::size_t page = 0; page < panels_.size(); ++page) {
    if (panels_[page]->window() != GetParent(mirror.widget())) continue;
    panels_[page]->reveal(mirror.widget());
  }
}

void MultiPageMirror::lookChanged() {
  Mirror::lookChanged();
  for (Mirror* mirror : inner()) mirror->lookChanged();
}

void MultiPageMirror::refreshKind() {
  if (static_cast<std::size_t>(send(TCM_GETCURSEL)) != pages_.Value()) send(TCM_SETCURSEL, pages_.Value());
  for (std::size_t page = 0; page < panels_.size(); ++page) {
    const bool front = page == pages_.Value();
    if (front != ((GetWindowLongW(panels_[page]->window(), GWL_STYLE) & WS_VISIBLE) != 0))
      ShowWindow(panels_[page]->window(), front ? SW_SHOWNA : SW_HIDE);
  }
}

}  // namespace pluvo::forms_win32
