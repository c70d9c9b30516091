#include "mirror.h"

#include "combo_mirror.h"
#include "list_mirror.h"
#include "multi_page_mirror.h"
#include "simple_mirrors.h"
#include "text.h"
#include "text_box_mirror.h"

namespace pluvo::forms_win32 {

namespace {

constexpr UINT_PTR kSubclass = 1;
constexpr const wchar_t* kMirror = L"PLUVO mirror";

TTTOOLINFOW toolFor(HWND window, HWND parent) {
  TTTOOLINFOW tool = {};
  tool.cbSize = TTTOOLINFOW_V2_SIZE;
  tool.uFlags = TTF_SUBCLASS | TTF_IDISHWND;
  tool.hwnd = parent;
  tool.uId = reinterpret_cast<UINT_PTR>(window);
  return tool;
}

/// The same place in the window's parent, which gets the pointer's messages while the window is off.
TTTOOLINFOW toolUnder(HWND window) {
  TTTOOLINFOW tool = toolFor(window, GetParent(window));
  tool.uFlags = TTF_SUBCLASS;
  tool.uId += 1;  // no window has that number
  return tool;
}

std::vector<TTTOOLINFOW> toolsOf(HWND window) {
  std::vector<TTTOOLINFOW> tools = {toolFor(window, GetParent(window)), toolUnder(window)};
  COMBOBOXINFO parts = {};
  parts.cbSize = sizeof parts;
  if (GetComboBoxInfo(window, &parts) != 0 && parts.hwndItem != nullptr && parts.hwndItem != window)
    tools.push_back(toolFor(parts.hwndItem, window));
  return tools;
}

}  // namespace

Mirror* mirrorOf(HWND widget) {
  return widget == nullptr ? nullptr : static_cast<Mirror*>(GetPropW(widget, kMirror));
}

std::unique_ptr<Mirror> Mirror::of(forms::Control& control, Stage& stage, HWND parent) {
  using forms::ControlKind;
  switch (control.kind()) {
    case ControlKind::label: {
      auto& label = static_cast<forms::Label&>(control);
      if (label.IsLink()) return std::make_unique<LinkMirror>(label, stage, parent);
      return std::make_unique<LabelMirror>(label, stage, parent);
    }
    case ControlKind::commandButton:
      return std::make_unique<ButtonMirror>(static_cast<forms::CommandButton&>(control), stage, parent);
    case ControlKind::textBox:
      return std::make_unique<TextBoxMirror>(static_cast<forms::TextBox&>(control), stage, parent);
    case ControlKind::checkBox:
      return std::make_unique<CheckBoxMirror>(static_cast<forms::CheckBox&>(control), stage, parent);
    case ControlKind::comboBox:
      return std::make_unique<ComboMirror>(static_cast<forms::ComboBox&>(control), stage, parent);
    case ControlKind::listBox:
      return std::make_unique<ListMirror>(static_cast<forms::ListBox&>(control), stage, parent);
    case ControlKind::picture:
      return std::make_unique<PictureMirror>(static_cast<forms::Picture&>(control), stage, parent);
    case ControlKind::multiPage:
      break;
  }
  return std::make_unique<MultiPageMirror>(static_cast<forms::MultiPage&>(control), stage, parent);
}

Mirror::~Mirror() {
  *self_ = nullptr;
  if (widget_ != nullptr) DestroyWindow(widget_);
}

void Mirror::mirrors(const wchar_t* kind, DWORD style, DWORD extended, HWND parent) {
  widget_ = stage_.module.makeWidget(kind, L"", style | WS_CHILD | WS_CLIPSIBLINGS, extended, parent);
  if (SetPropW(widget_, kMirror, this) == 0 ||
      SetWindowSubclass(widget_, procedure, kSubclass, reinterpret_cast<DWORD_PTR>(this)) == 0)
    throw noMoreWindows();
  send(WM_SETFONT, reinterpret_cast<WPARAM>(font()), FALSE);
  addTips();
  control_.changed.handledBy([self = self_] {
    if (*self != nullptr && (*self)->widget_ != nullptr) (*self)->refresh();
  });
}

LRESULT CALLBACK Mirror::procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR,
                                   DWORD_PTR data) {
  auto& mirror = *reinterpret_cast<Mirror*>(data);
  if (message == WM_NCDESTROY) {
    RemovePropW(window, kMirror);
    RemoveWindowSubclass(window, procedure, kSubclass);
    mirror.widget_ = nullptr;
    return DefSubclassProc(window, message, wparam, lparam);
  }
  try {
    if (const auto result = mirror.received(message, wparam, lparam)) return *result;
  } catch (...) {
    return 0;  // nothing may leave for the system
  }
  return DefSubclassProc(window, message, wparam, lparam);
}

void Mirror::refresh() {
  const bool enabled = control_.Enabled();
  if ((IsWindowEnabled(widget_) != 0) != enabled) EnableWindow(widget_, enabled ? TRUE : FALSE);
  const bool visible = (GetWindowLongW(widget_, GWL_STYLE) & WS_VISIBLE) != 0;
  if (visible != control_.Visible()) {
    ShowWindow(widget_, control_.Visible() ? SW_SHOWNA : SW_HIDE);
    asksForArrangement();
  }
  refreshTips();
  refreshKind();
  InvalidateRect(widget_, nullptr, TRUE);
}

void Mirror::lookChanged() {
  send(WM_SETFONT, reinterpret_cast<WPARAM>(font()), TRUE);
  refresh();
}

void Mirror::place(const RECT& place) {
  SetWindowPos(widget_, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
               SWP_NOZORDER | SWP_NOACTIVATE);
  TTTOOLINFOW tool = toolUnder(widget_);
  tool.rect = place;
  SendMessageW(stage_.tips, TTM_NEWTOOLRECTW, 0, reinterpret_cast<LPARAM>(&tool));
}

void Mirror::show(const std::u16string& text) const {
  if (textOf(widget_) != text) SetWindowTextW(widget_, wide(text));
}

HBRUSH Mirror::colored(HDC surface) {
  SetTextColor(surface, GetSysColor(control_.Enabled() ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
  SetBkColor(surface, GetSysColor(COLOR_3DFACE));
  return GetSysColorBrush(COLOR_3DFACE);
}

void Mirror::addTips() {
  std::u16string empty;
  for (TTTOOLINFOW& tool : toolsOf(widget_)) {
    tool.lpszText = wide(empty);
    SendMessageW(stage_.tips, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  }
}

void Mirror::refreshTips() {
  if (tip_ == control_.ControlTipText()) return;
  tip_ = control_.ControlTipText();
  for (TTTOOLINFOW& tool : toolsOf(widget_)) {
    tool.lpszText = wide(tip_);
    SendMessageW(stage_.tips, TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&tool));
  }
}

}  // namespace pluvo::forms_win32
