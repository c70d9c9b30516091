#pragma once

#include "forms/form.h"
#include "forms/user_actions.h"
#include "page_panel.h"

#include <QBoxLayout>
#include <QEventLoop>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>

namespace pluvo::forms_qt {

using forms::UserActions;

class QtForms;

/// One form on screen: its controls on a panel, and the window or the program's container the panel stands
/// in.
class FormWindow {
 public:
  FormWindow(QtForms& host, forms::Form& form);
  FormWindow(const FormWindow&) = delete;
  FormWindow& operator=(const FormWindow&) = delete;
  ~FormWindow();

  void show();
  void hide();
  /// Until the form is hidden.
  void run();
  void repaint();
  QWidget* window() const;
  /// The form's own values are others.
  void formChanged() { refresh(); }

  // What the widgets tell.
  /// Whether the key meant something to the form as a whole.
  bool pressed(const QKeyEvent& key);
  void closed();
  void activated();
  void looksChanged();
  void admissionChanged();

 private:
  void build();
  void addStatus(QBoxLayout& below);
  void refresh();
  void refreshWindowState();
  void focus();
  void moveOn();
  /// As large as all of it needs, if the screen is.
  QSize wholeSize() const;
  /// Copies the marked text of a label, or the text of all labels, to the clipboard.
  bool copies() const;
  std::vector<Mirror*> all() const;
  template <class Passes>
  Mirror* find(Passes passes) const;

  QtForms& host_;
  forms::Form& form_;
  UserActions userActions_;
  QPointer<QWidget> frame_;      ///< nothing where the form stands in a container
  QPointer<QWidget> container_;  ///< and the reverse
  QPointer<PagePanel> panel_;
  QPointer<QLabel> status_;
  QPointer<QEventLoop> loop_;
  const forms::Control* focused_ = nullptr;
  int windowState_ = 0;
  bool wasShown_ = false;
};

}  // namespace pluvo::forms_qt
