#pragma once

#include "base/at_end.h"
#include "forms/control.h"
#include "forms/message_boxes.h"
#include "forms/unreported.h"

#include <functional>
#include <utility>

namespace pluvo::forms {

/// Carries the user's actions from the widgets of one form to its controls.
class UserActions {
 public:
  using Admits = std::function<bool(const Control*)>;
  UserActions(MessageBoxes& boxes, Admits admits) : boxes_(boxes), admits_(std::move(admits)) {}

  /// Nothing arrives from widgets while the form is hidden.
  void listening(bool value) { listening_ = value; }
  bool listening() const { return listening_; }

  /// Something that needs no edit to be done with: typing, a key, the mouse.
  template <class Doing>
  void does(Doing&& doing) {
    if (!listening_) return;
    ++doing_;
    const base::AtEnd done([this] { --doing_; });
    userDid(boxes_, std::forward<Doing>(doing));
  }
  /// Whether something that the user did is being dealt with.
  bool isDoing() const { return doing_ > 0; }
  /// A press or a choice. An edit that was begun elsewhere is ended first; where that is refused, nothing
  /// comes of it.
  template <class Doing>
  void decides(Doing&& doing) {
    if (listening_ && endEdit()) does(std::forward<Doing>(doing));
  }
  /// Whether the program lets this happen now; without a control, the form's closing.
  bool admits(const Control* control) const { return listening_ && admits_(control); }

  /// Whether a press would be admitted, so that a renderer can show it.
  bool offers(const Control& control) const { return admits_(&control); }

  /// An edit has begun; the call ends it, and tells whether it stands.
  void begun(std::function<bool()> end) { end_ = std::move(end); }
  /// Ends the edit under way, if there is one.
  bool endEdit() {
    const auto end = std::exchange(end_, {});
    return !end || !listening_ || end();
  }

 private:
  MessageBoxes& boxes_;
  Admits admits_;
  bool listening_ = false;
  int doing_ = 0;
  std::function<bool()> end_;
};

}  // namespace pluvo::forms
