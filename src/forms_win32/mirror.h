#pragma once

#include "forms/control.h"
#include "forms/user_actions.h"
#include "look.h"
#include "module.h"

#include <commctrl.h>
#include <windows.h>

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace pluvo::forms_win32 {

/// The state that controls of one form share.
struct Stage {
  const Module& module;
  forms::UserActions userActions;
  std::unique_ptr<Look> look;
  HWND tips = nullptr;
};

/// Posted to a panel: its controls are to have their places anew.
constexpr UINT kArrange = WM_APP + 10;
/// The same, of the widget in lParam: it has something to show.
constexpr UINT kReveal = WM_APP + 11;

/// One control and its window, its widget. The widget goes with its parent; from then on nothing arrives.
class Mirror {
 public:
  Mirror(const Mirror&) = delete;
  Mirror& operator=(const Mirror&) = delete;
  virtual ~Mirror();

  /// The mirror for the control's kind, its widget a child of the parent.
  static std::unique_ptr<Mirror> of(forms::Control& control, Stage& stage, HWND parent);

  forms::Control& control() const { return control_; }
  HWND widget() const { return widget_; }

  // For the grid, in pixels.
  /// Whether more height is of use to it.
  virtual bool grows() const { return false; }
  virtual int leastWidth() const = 0;
  virtual int heightFor(int width) const = 0;
  virtual int leastHeightFor(int width) const { return heightFor(width); }
  virtual void place(const RECT& place);

  /// The user presses it by a key for the form as a whole. Whether it can be pressed.
  virtual bool press() { return false; }
  /// Whether it has a use of its own for this key, which the form would take otherwise.
  virtual bool wants(WPARAM /*key*/) const { return false; }
  /// The mirrors of the controls on it.
  virtual std::vector<Mirror*> inner() const { return {}; }

  /// Shows the control's values anew.
  void refresh();
  /// The stage's look is another.
  virtual void lookChanged();

  // Messages to the widget's parent about it.
  virtual void commanded(WORD /*notification*/) {}
  virtual LRESULT notified(NMHDR& /*notification*/) { return 0; }
  virtual void draws(const DRAWITEMSTRUCT& /*item*/) {}
  /// Sets colours for the widget; its background.
  virtual HBRUSH colored(HDC surface);
  /// A message to the widget, before the widget gets it. Without a result, it gets it.
  virtual std::optional<LRESULT> received(UINT /*message*/, WPARAM /*wparam*/, LPARAM /*lparam*/) {
    return std::nullopt;
  }

 protected:
  Mirror(forms::Control& control, Stage& stage) : control_(control), stage_(stage) {}
  /// To be called once, at the beginning of the constructor of the kind.
  void mirrors(const wchar_t* kind, DWORD style, DWORD extended, HWND parent);
  /// The style of the kind, beside that of all.
  virtual void refreshKind() = 0;
  Stage& stage() const { return stage_; }
  forms::UserActions& userActions() const { return stage_.userActions; }
  Look& look() const { return *stage_.look; }
  HFONT font() const { return look().font(control_.Font()); }
  /// Sets the widget's text where it is another.
  void show(const std::u16string& text) const;
  LRESULT send(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const {
    return SendMessageW(widget_, message, wparam, lparam);
  }
  /// Rows are as high as their controls need be, and without controls take no room.
  void asksForArrangement() const { PostMessageW(GetParent(widget_), kArrange, 0, 0); }

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR,
                                    DWORD_PTR mirror);
  void addTips();
  void refreshTips();

  forms::Control& control_;
  Stage& stage_;
  HWND widget_ = nullptr;
  std::u16string tip_;
  /// For the control, which may hold on to it for longer.
  std::shared_ptr<Mirror*> self_ = std::make_shared<Mirror*>(this);
};

/// The mirror of a widget of this module; nothing for any other window.
Mirror* mirrorOf(HWND widget);

}  // namespace pluvo::forms_win32
