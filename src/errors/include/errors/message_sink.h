#pragma once

#include <optional>
#include <string>

namespace pluvo::errors {

/// Where the reporter shows its box (text, an OK button, no icon). Without a title the host's own shows.
class MessageSink {
 public:
  virtual ~MessageSink() = default;
  virtual void show(const std::u16string& text, const std::optional<std::u16string>& title) = 0;
};

}  // namespace pluvo::errors
