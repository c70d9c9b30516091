#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace pluvo::files {

using ByteSpan = std::span<const std::uint8_t>;

/// The bytes of a file, held for as long as somebody refers to them: mapped, read, or made by a test.
///
/// One byte more, kBehind, follows the view in the same memory: a text whose last line has no end is given a
/// paragraph mark where it lies.
struct Bytes {
  static constexpr std::uint8_t kBehind = '\r';

  ByteSpan view;
  std::shared_ptr<const void> owner;
  /// Asks whether part of the file went missing under the view (a mapped file cut short by somebody else);
  /// such a part reads as zeros. Empty where that cannot happen.
  std::function<bool()> vanished;

  static Bytes of(std::vector<std::uint8_t> bytes) {
    bytes.push_back(kBehind);
    auto held = std::make_shared<const std::vector<std::uint8_t>>(std::move(bytes));
    return {ByteSpan(held->data(), held->size() - 1), held, {}};
  }
};

/// Where a writer puts a document's bytes, front to back. A failure to write is a DocumentError (io).
class Output {
 public:
  virtual ~Output() = default;
  virtual void write(ByteSpan bytes) = 0;
};

/// An output that keeps what it is given.
class MemoryOutput : public Output {
 public:
  void write(ByteSpan bytes) override { bytes_.insert(bytes_.end(), bytes.begin(), bytes.end()); }
  std::vector<std::uint8_t>& bytes() { return bytes_; }

 private:
  std::vector<std::uint8_t> bytes_;
};

}  // namespace pluvo::files
