#pragma once

#include <cstddef>
#include <string>
#include <utility>

namespace pluvo::base {

/// Overwrites what memory holds, also where a compiler sees no later use of it.
void wipe(void* memory, std::size_t size);

/// The same for all that a text or row of bytes has room for; it is empty then.
template <class Characters>
void wipe(Characters& characters) {
  characters.resize(characters.capacity());
  wipe(characters.data(), characters.size() * sizeof(characters[0]));
  characters.clear();
}

/// A password, whose memory is wiped when it goes. It moves and is not copied.
class SecretText {
 public:
  SecretText() = default;
  /// Wipes the text it is given.
  explicit SecretText(std::u16string&& text) : text_(std::move(text)) { wipe(text); }
  SecretText(SecretText&& other) noexcept : text_(std::move(other.text_)) { wipe(other.text_); }
  SecretText& operator=(SecretText&& other) noexcept {
    if (this == &other) return *this;
    wipe(text_);
    text_ = std::move(other.text_);
    wipe(other.text_);
    return *this;
  }
  ~SecretText() { wipe(text_); }

  const std::u16string& text() const { return text_; }

 private:
  std::u16string text_;
};

}  // namespace pluvo::base
