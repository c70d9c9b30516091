#include "message_policy.h"

namespace pluvo::cli {

/// A temporary file is not skipped here, since the store refuses it with the code for it; a password for
/// opening that was wrong once is not tried again. What is read-only is gone on with, and what no password of
/// the run unlocks is skipped.
forms::Answer RunBoxes::answerAboutFile(const std::optional<std::u16string>& title) {
  if (title == u"Potential Temporary File" || title == u"Incorrect Open/Modify Password")
    return forms::Answer::no;
  if (title == u"Incorrect Password") {
    if (prompts_.hasMore()) return forms::Answer::no;
    passwordWrong_ = true;
  }
  return forms::Answer::yes;
}

forms::Answer RunBoxes::show(const std::u16string& /*text*/, forms::Buttons buttons,
                             const std::optional<std::u16string>& title) {
  if (buttons == forms::Buttons::ok) return forms::Answer::ok;
  if (watcher_ == nullptr) return answerAboutFile(title);
  // In quiet mode a pass asks nothing but whether to change the block it stands at.
  return interviewer_ == nullptr ? forms::Answer::cancel : answerAboutBlock();
}

forms::Answer RunBoxes::answerAboutBlock() {
  if (restIsLeft_) return forms::Answer::no;
  switch (interviewer_->ask(path_, watcher_->current())) {
    case Answer::yes:
      return forms::Answer::yes;
    case Answer::no:
      return forms::Answer::no;
    case Answer::restOfDocument:
      restIsLeft_ = true;
      return forms::Answer::no;
    case Answer::stop:
      break;
  }
  stopped_ = true;
  return forms::Answer::cancel;
}

void FirstReport::show(const std::u16string& text, const std::optional<std::u16string>& /*title*/) {
  if (!text_) text_ = text;
}

}  // namespace pluvo::cli
