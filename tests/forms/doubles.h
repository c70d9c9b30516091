#pragma once

#include "forms/form.h"
#include "forms/input_boxes.h"
#include "forms/message_boxes.h"

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace pluvo::forms {

/// Message boxes that keep what they show and answer as a test has written.
class ScriptedBoxes final : public MessageBoxes {
 public:
  struct Box {
    std::u16string text;
    Buttons buttons;
    std::optional<std::u16string> title;
    bool operator==(const Box&) const = default;
  };

  BoxAnswer show(const std::u16string& text, Buttons buttons,
                 const std::optional<std::u16string>& title) override {
    shown.push_back({text, buttons, title});
    if (beforeAnswer) beforeAnswer();
    if (buttons == Buttons::ok) return BoxAnswer::ok;
    if (answers.empty()) {
      ADD_FAILURE() << "a question without an answer";
      return BoxAnswer::cancel;
    }
    const BoxAnswer answer = answers.front();
    answers.pop_front();
    return answer;
  }

  /// How the next questions are answered: y for yes, n for no.
  void answer(std::string_view letters) {
    for (const char letter : letters) answers.push_back(letter == 'y' ? BoxAnswer::yes : BoxAnswer::no);
  }

  std::vector<Box> shown;
  std::deque<BoxAnswer> answers;
  std::function<void()> beforeAnswer;
};

/// Input boxes that keep their prompts and answer as a test has written.
class ScriptedInputs final : public InputBoxes {
 public:
  std::u16string ask(const std::u16string& prompt, const std::u16string& title) override {
    prompts.push_back(title + u": " + prompt);
    return answer;
  }

  std::vector<std::u16string> prompts;
  std::u16string answer;
};

/// Forms before a user who does as a test has written.
class ScriptedForms final : public FormHost {
 public:
  void runModal(Form& form) override {
    ++modalRuns;
    if (user) user(form);
    EXPECT_FALSE(form.Visible()) << "the user left a modal form open";
  }
  void visibleChanged(Form& form) override {
    if (changes) changes(form);
    if (form.Name() == watched) visibility.push_back(form.Visible());
    std::erase(beside, &form);
    if (form.Visible()) beside.push_back(&form);
  }
  void repaint(Form& form) override {
    ++repaints;
    if (painted) painted(form);
  }

  std::function<void(Form&)> user;
  int modalRuns = 0;
  int repaints = 0;
  std::function<void(Form&)> painted;
  /// Before a form without anybody waiting for it comes or goes.
  std::function<void(Form&)> changes;
  /// The form whose coming and going is written down.
  std::u16string watched;
  std::vector<bool> visibility;
  /// Forms that show without anybody waiting for them.
  std::vector<Form*> beside;
};

/// The user presses a button of a form.
inline void press(Form& form, std::u16string_view name) {
  auto* button = dynamic_cast<CommandButton*>(form.control(name));
  ASSERT_NE(button, nullptr);
  button->press();
}

}  // namespace pluvo::forms
