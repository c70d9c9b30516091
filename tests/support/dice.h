#pragma once

#include <algorithm>
#include <random>
#include <string>
#include <string_view>

namespace pluvo {

/// Chance that is the same every time.
class Dice {
 public:
  explicit Dice(unsigned seed) : engine_(seed) {}
  /// From 0 to n, which counts.
  int upTo(std::ptrdiff_t n) { return static_cast<int>(engine_() % (static_cast<unsigned>(n) + 1)); }
  bool oneIn(int n) { return upTo(n - 1) == 0; }
  template <class Choices>
  const auto& of(const Choices& choices) {
    return std::data(choices)[upTo(std::ssize(choices) - 1)];
  }
  std::u16string text(std::ptrdiff_t length, std::u16string_view letters) {
    std::u16string text(static_cast<std::size_t>(length), u' ');
    std::ranges::generate(text, [&] { return of(letters); });
    return text;
  }

 private:
  std::mt19937 engine_;
};

}  // namespace pluvo
