#pragma once

#include "forms/form.h"
#include "forms/message_boxes.h"

#include <QPointer>
#include <QWidget>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>

namespace pluvo::forms_qt {

class FormWindow;

/// Shows forms as Qt windows, by kind of control. It shows the form's values, and passes the user's actions
/// on as calls on the controls. A widget's objectName is its control's name.
///
/// A form that was shown keeps its window, hidden between showings, until the form goes. All forms go before
/// this host, and this host before the QApplication.
///
/// While a form is hidden its controls can be changed, and nothing arrives from its widgets.
class QtForms final : public forms::FormHost {
 public:
  /// The boxes show the faults that even the reporter could not report.
  explicit QtForms(forms::MessageBoxes& boxes);
  ~QtForms() override;

  /// Shows the form and lets a nested event loop run until it is hidden, or the application quits. Meanwhile
  /// no other window takes anything, unless leavesOthersUsable or standsIn was told of the form.
  void runModal(forms::Form& form) override;
  void visibleChanged(forms::Form& form) override;
  /// Draws it at once, with layouts brought up to date; no other event is dealt with.
  void repaint(forms::Form& form) override;

  // What the program says of forms before they are first shown; a form is known by its name.

  /// Windows of forms stand above this one. Nothing: they stand alone.
  void owner(QWidget* window) { owner_ = window; }
  void leavesOthersUsable(std::u16string form) { modeless_.insert(std::move(form)); }
  /// The form fills this widget of the program, which gets a layout if it has none, and has no window of its
  /// own. The container is shown and hidden with the form; it may go before the form does.
  void standsIn(std::u16string form, QWidget& container) { containers_[std::move(form)] = &container; }

  /// Called with a form's own window when it is about to be shown and has its size; may move it.
  std::function<void(const forms::Form&, QWidget& window)> placing;
  /// Asked before a press of a button or a link, and before a form is closed by the user (without a control).
  /// False: nothing comes of it.
  std::function<bool(const forms::Form&, const forms::Control*)> admits;
  /// The answers of `admits` may have changed: buttons and links that would do nothing are off until it
  /// changes again.
  void admissionChanged();
  /// A form's WindowState was set. For a window of its own 1 makes an icon of it unless this is here, which
  /// then acts.
  std::function<void(const forms::Form&)> windowStateChanged;

  /// The window of a form, or the widget that stands for it in a container. Nothing before the form was first
  /// shown.
  QWidget* windowOf(const forms::Form& form) const;

 private:
  friend class FormWindow;
  FormWindow& shownBy(forms::Form& form);

  forms::MessageBoxes& boxes_;
  QPointer<QWidget> owner_;
  std::set<std::u16string> modeless_;
  std::map<std::u16string, QPointer<QWidget>> containers_;
  /// Each is owned by its form's changed event, and so lives as long as the form.
  std::map<const forms::Form*, FormWindow*> windows_;
};

}  // namespace pluvo::forms_qt
