#pragma once

#include "forms/form.h"
#include "mirror.h"
#include "module.h"
#include "multi_page_mirror.h"
#include "panel.h"
#include "thread_windows.h"

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace pluvo::forms_win32 {

class Win32Forms;

/// One form on screen: a window, and its controls on a panel in it.
class FormWindow final : public Receiver {
 public:
  FormWindow(Win32Forms& host, forms::Form& form);
  FormWindow(const FormWindow&) = delete;
  FormWindow& operator=(const FormWindow&) = delete;
  ~FormWindow() override;

  void show();
  void hide();
  /// Until the form is hidden.
  void run();
  void repaint();
  /// The form's own values are others.
  void refresh();
  HWND window() const { return window_; }
  /// The form whose window it is; nothing for any other.
  static FormWindow* of(HWND window);
  /// Whether the form is shown without a caller that waits for it.
  bool isBeside() const { return isShown_ && loops_ == 0; }
  bool isShown() const { return isShown_; }
  bool isBusy() const { return loops_ > 0 || stage_.userActions.isDoing(); }
  /// Without ending the edit under way.
  void closeUnasked();
  /// In front of all, as it was before it was out of the way, above the window its user works in.
  void bringForward();
  /// The user works in that window now, which may be a document's.
  void follow(HWND document);
  /// That window is destroyed, and would take along windows above it.
  void leave(HWND document);
  Win32Forms& host() const { return host_; }
  /// Whether the form is shown but its window went with the one it stood above: Word's go with their
  /// documents.
  bool isLost() const { return isShown_ && window_ == nullptr; }
  Mirror* mirror(std::u16string_view control) const;

  /// Whether the message, to this window or one in it, meant something to the form as a whole.
  bool takes(MSG& message);

  LRESULT receives(HWND window, UINT message, WPARAM wparam, LPARAM lparam) override;

 private:
  void build();
  void refreshStatus();
  void placePanel();
  int statusHeight() const;
  void unmake();
  int widthAtFirst() const;
  void setSize();
  HWND ownerNow() const;
  void standAbove(HWND document);
  void putInPlace(SIZE size);
  void refreshWindowState();
  void focus();
  void focusOn(const Mirror& mirror);
  void moveFocus(bool back);
  bool pressed(WPARAM key, bool repeated);
  bool pressEnter(Mirror* mirror);
  void closed();
  void wentAway();
  void activates(bool on);
  void keepLeastSize(MINMAXINFO& limits) const;
  void changeResolution(UINT dotsPerInch, const RECT& place);
  SIZE around(SIZE inside) const;
  std::vector<Mirror*> all() const;
  MultiPageMirror* pages() const;

  Win32Forms& host_;
  forms::Form& form_;
  Stage stage_;
  HWND window_ = nullptr;
  HWND status_ = nullptr;
  std::unique_ptr<Panel> panel_;
  std::optional<ThreadWindows> waits_;
  const forms::Control* focused_ = nullptr;
  HWND lastFocus_ = nullptr;
  int windowState_ = 0;
  int loops_ = 0;
  bool isShown_ = false;
  bool wasShown_ = false;
};

}  // namespace pluvo::forms_win32
