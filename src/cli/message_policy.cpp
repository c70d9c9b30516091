#include "message_policy.h"

namespace pluvo::cli {

forms::Answer PassBoxes::show(const std::u16string& /*text*/, forms::Buttons buttons,
                              const std::optional<std::u16string>& /*title*/) {
  if (buttons == forms::Buttons::ok) return forms::Answer::ok;
  // In quiet mode a pass asks nothing but whether to change the block it stands at.
  if (interviewer_ == nullptr) return forms::Answer::cancel;
  switch (interviewer_->ask(path_, watcher_.current())) {
    case Answer::yes:
      return forms::Answer::yes;
    case Answer::no:
      return forms::Answer::no;
    case Answer::stop:
      break;
  }
  return forms::Answer::cancel;
}

void FirstReport::show(const std::u16string& text, const std::optional<std::u16string>& /*title*/) {
  if (!text_) text_ = text;
}

}  // namespace pluvo::cli
