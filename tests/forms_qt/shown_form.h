#pragma once

#include "forms/doubles.h"
#include "forms/form.h"
#include "forms_qt/forms.h"

#include <QtTest/QtTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pluvo::forms_qt {

/// A form with the controls a test adds, and the user who works its widgets.
class ShownForm : public testing::Test {
 protected:
  class TestForm final : public forms::Form {
   public:
    explicit TestForm(forms::FormHost& host) : Form(host, u"form", u"A Form") {}
    using Form::add;
  };

  /// A control that lives as long as the form.
  template <class Control, class... Arguments>
  Control& with(Arguments&&... arguments) {
    auto control = std::make_unique<Control>(std::forward<Arguments>(arguments)...);
    Control& added = *control;
    controls_.push_back(std::move(control));
    form->add(added);
    return added;
  }

  void show() {
    form->Visible(true);
    ASSERT_TRUE(QTest::qWaitForWindowActive(window()->window()));
  }
  QWidget* window() const { return host.windowOf(*form); }
  template <class Widget = QWidget>
  Widget& widget(const forms::Control& control) const {
    return *window()->findChild<Widget*>(QString::fromStdU16String(control.Name()));
  }
  /// What the widget is doing later is done.
  static void settle() {
    for (int rounds = 0; rounds < 3; ++rounds) QCoreApplication::processEvents();
  }
  static void type(QWidget& into, const char* text) {
    into.setFocus();
    QTest::keyClicks(&into, QString::fromUtf8(text));
  }
  static void key(QWidget& into, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    into.setFocus();
    QTest::keyClick(&into, key, modifiers);
    settle();
  }

  std::vector<std::unique_ptr<forms::Control>> controls_;

 public:
  forms::ScriptedBoxes boxes;
  QtForms host{boxes};
  std::unique_ptr<TestForm> form = std::make_unique<TestForm>(host);

 protected:
  // Controls outlive the form here, which must do no harm.
  ~ShownForm() override { form.reset(); }
};

}  // namespace pluvo::forms_qt
