#pragma once

#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

namespace pluvo::forms {

/// Raised to its handlers in the order in which they were added; nothing happens where there is none.
template <class... Arguments>
class Event {
 public:
  using Handler = std::function<void(Arguments...)>;
  void handledBy(Handler handler) { handlers_.push_back(std::move(handler)); }
  bool isHandled() const { return !handlers_.empty(); }
  void raise(Arguments... arguments) const {
    for (const Handler& handler : handlers_) handler(arguments...);
  }

 private:
  std::vector<Handler> handlers_;
};

}  // namespace pluvo::forms
