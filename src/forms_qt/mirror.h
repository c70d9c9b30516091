#pragma once

#include "forms/control.h"
#include "forms/user_actions.h"

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace pluvo::forms_qt {

using forms::UserActions;

/// One control and its widget. The widget belongs to its parent; when the mirror goes first, nothing arrives
/// from it any more.
class Mirror : public QObject {
 public:
  ~Mirror() override = default;

  /// The mirror for the control's kind, its widget a child of the parent.
  static std::unique_ptr<Mirror> of(forms::Control& control, UserActions& userActions, QWidget& parent);

  forms::Control& control() const { return control_; }
  QWidget* widget() const { return widget_; }
  /// Whether more height is of use to it.
  virtual bool grows() const { return false; }
  /// The user presses it by a key for the form as a whole. Whether it can be pressed.
  virtual bool press() { return false; }
  /// The caption with its marks, where a key can lead to the control.
  virtual QString keyText() const { return {}; }
  void key(QChar letter) {
    key_ = letter;
    refresh();
  }
  /// The same for the controls on it.
  virtual void giveInnerKeys(std::set<QChar>& /*taken*/) {}
  /// Controls on it that stay in sight are seen however low it is.
  virtual void keepInSight() {}
  /// The mirrors of the controls on it.
  virtual std::vector<Mirror*> inner() const { return {}; }
  /// A label says what the control is for.
  void namedBy(const forms::Control& label);
  /// Shows the control's values anew.
  void refresh();
  /// The system's fonts or colours are others.
  void looksChanged();
  /// A button or a link is off while the program would not admit its press.
  void admissionChanged();

 protected:
  Mirror(forms::Control& control, UserActions& userActions) : control_(control), userActions_(userActions) {}
  /// To be called once, at the end of the constructor of the kind.
  void mirrors(QWidget& widget);
  /// Brings the properties of this kind alone up to date.
  virtual void refreshKind() = 0;
  /// Where its colours are shown.
  virtual void dress();
  UserActions& userActions() const { return userActions_; }
  /// The text as the widget shows it, the key marked.
  QString keyed() const;
  /// The control is being told what its widget shows already.
  bool telling_ = false;

 private:
  forms::Control& control_;
  UserActions& userActions_;
  bool isOffered_ = true;
  QPointer<QWidget> widget_;
  std::optional<forms::Font> font_;  ///< that the widget has
  QString spokenName_;
  QChar key_;
};

}  // namespace pluvo::forms_qt
