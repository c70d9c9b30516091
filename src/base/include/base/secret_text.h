#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

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

/// As long as there is one, a crash of the program leaves no image of its memory on a disk.
class NoMemoryImage {
 public:
  NoMemoryImage();
  NoMemoryImage(const NoMemoryImage& /*other*/) : NoMemoryImage() {}
  NoMemoryImage& operator=(const NoMemoryImage&) = default;
  ~NoMemoryImage();
};

/// A text or row of bytes whose memory is wiped when it goes, and that is in no image of a crash. It moves
/// and is copied by name alone.
template <class Characters>
class Secret {
 public:
  Secret() = default;
  /// Wipes its argument.
  explicit Secret(Characters&& characters) { take(characters); }
  Secret(Secret&& other) noexcept { take(other.characters_); }
  Secret& operator=(Secret&& other) noexcept {
    if (this == &other) return *this;
    wipe(characters_);
    take(other.characters_);
    return *this;
  }
  ~Secret() { wipe(characters_); }

  const Characters& text() const { return characters_; }
  Secret copy() const { return Secret(Characters(characters_)); }

 private:
  /// A short text lies in the object itself, so that a swap copies it: the other is wiped.
  void take(Characters& characters) {
    characters_.swap(characters);
    wipe(characters);
  }

  NoMemoryImage noImage_;
  Characters characters_;
};

/// A password.
using SecretText = Secret<std::u16string>;
/// A key derived from a password.
using SecretBytes = Secret<std::vector<std::uint8_t>>;

}  // namespace pluvo::base
