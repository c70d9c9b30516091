#pragma once

#include "forms/machine.h"
#include "forms/message_boxes.h"
#include "work.h"

#include <chrono>
#include <optional>
#include <string>
#include <thread>

namespace pluvo::desktop {

/// Boxes that work in another thread shows, too, and waits for.
class WorkBoxes final : public forms::MessageBoxes {
 public:
  WorkBoxes(Work& work, forms::MessageBoxes& boxes) : work_(work), boxes_(boxes) {}

  forms::BoxAnswer show(const std::u16string& text, forms::Buttons buttons,
                        const std::optional<std::u16string>& title) override {
    forms::BoxAnswer answer{};
    work_.show([&] { answer = boxes_.show(text, buttons, title); });
    return answer;
  }

 private:
  Work& work_;
  forms::MessageBoxes& boxes_;
};

/// Work waits while the windows live without it.
class WorkYielding final : public forms::Yielding {
 public:
  void yield() override { std::this_thread::sleep_for(std::chrono::milliseconds(10)); }
};

}  // namespace pluvo::desktop
