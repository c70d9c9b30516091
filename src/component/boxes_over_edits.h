#pragma once

#include "forms/message_boxes.h"
#include "word/word_processor.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace pluvo::component {

/// Boxes behind which the user sees the document as it is, also in the middle of a pass, which Word does not
/// draw.
class BoxesOverEdits final : public forms::MessageBoxes {
 public:
  /// The word processor may be null, as long as there is none.
  BoxesOverEdits(forms::MessageBoxes& boxes, std::function<std::shared_ptr<word::Application>()> application)
      : boxes_(boxes), application_(std::move(application)) {}

  /// Word is closing: no box is shown from now on, and each answer is that of a box that is
  /// closed.
  void silence() { silent_ = true; }

  forms::BoxAnswer show(const std::u16string& text, forms::Buttons buttons,
                        const std::optional<std::u16string>& title) override {
    if (silent_) return forms::closedAnswer(buttons);
    const std::shared_ptr<word::Application> application = application_();
    const auto shown = application ? application->showEdits() : nullptr;
    return boxes_.show(text, buttons, title);
  }

 private:
  bool silent_ = false;
  forms::MessageBoxes& boxes_;
  std::function<std::shared_ptr<word::Application>()> application_;
};

}  // namespace pluvo::component
