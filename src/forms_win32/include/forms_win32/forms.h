#pragma once

#include "forms/form.h"
#include "forms/message_boxes.h"

#include <windows.h>

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace pluvo::forms_win32 {

class FormWindow;
class Module;

/// Shows forms as windows, by kind of control: the form's values are shown, and what the user does
/// arrives as calls on the controls. All of it happens on one thread, the word processor's.
///
/// A form that was shown keeps its window, hidden between showings, until the form goes. All forms go before
/// this host. While a form is hidden its controls can be changed, and nothing arrives from its windows. Where
/// the window that a shown form stands above goes, the form gets another.
class Win32Forms final : public forms::FormHost {
 public:
  /// The boxes show the faults that even the reporter could not report.
  explicit Win32Forms(forms::MessageBoxes& boxes);
  Win32Forms(const Win32Forms&) = delete;
  Win32Forms& operator=(const Win32Forms&) = delete;
  ~Win32Forms() override;

  /// Shows the form and deals with the thread's messages until it is hidden, or the program is to end.
  /// Meanwhile no other window of the thread takes anything, unless leavesOthersUsable was told of the form.
  void runModal(forms::Form& form) override;
  void visibleChanged(forms::Form& form) override;
  void repaint(forms::Form& form) override;

  /// Windows of forms stand above this one, the word processor's; asked for when a form is first shown.
  std::function<HWND()> owner;
  /// Whether that is such a window: the forms that leave others usable go along where the user goes to
  /// another of them. Without it they stay where they are.
  std::function<bool(HWND)> isOwner;
  /// The form of that name, where it is shown, comes to the front, also where it was out of the way.
  void bringForward(std::u16string_view form);
  /// Each form that is shown is closed as its user would close it, and nothing is asked about an edit in it.
  void closeAll();
  /// Whether forms are waited for, or something that the user did is being dealt with: the host may not go
  /// then.
  bool isBusy() const;
  /// The loop that runs this thread was told to end.
  std::function<void()> programEnds;

  /// The user goes to and fro between this form and the documents. To be said before it is first shown.
  void leavesOthersUsable(std::u16string form) { modeless_.insert(std::move(form)); }

  /// Has a message fetched in a loop of this host's own.
  template <class Fetch>
  BOOL pull(Fetch&& fetch) {
    const bool before = std::exchange(pulls_, true);
    const BOOL got = std::forward<Fetch>(fetch)();
    pulls_ = before;
    return got;
  }
  /// Deals with a message of the thread: keys mean something to a form as a whole.
  void dispatch(MSG& message);

  /// Nothing before the form was first shown, or where there is no such control.
  HWND windowOf(const forms::Form& form) const;
  HWND widgetOf(const forms::Form& form, std::u16string_view control) const;

 private:
  friend class FormWindow;
  FormWindow& shownBy(forms::Form& form);
  bool isForm(HWND window) const;
  void listen();
  void bringBack();
  static LRESULT CALLBACK heard(int code, WPARAM wparam, LPARAM message);
  static LRESULT CALLBACK activated(int code, WPARAM wparam, LPARAM lparam);

  forms::MessageBoxes& boxes_;
  std::set<std::u16string> modeless_;
  std::unique_ptr<Module> module_;
  /// While forms are shown: keys that come through loops of others, the word processor's.
  HHOOK keys_ = nullptr;
  HHOOK activations_ = nullptr;
  bool pulls_ = false;
  /// Each is owned by its form's changed event, and so lives as long as the form.
  std::map<const forms::Form*, FormWindow*> windows_;
};

}  // namespace pluvo::forms_win32
