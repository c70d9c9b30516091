#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace pluvo::files {

using ByteSpan = std::span<const std::uint8_t>;

/// The bytes of a file, held for as long as somebody refers to them: mapped, read, or made by a test.
struct Bytes {
  ByteSpan view;
  std::shared_ptr<const void> owner;

  static Bytes of(std::vector<std::uint8_t> bytes) {
    auto held = std::make_shared<const std::vector<std::uint8_t>>(std::move(bytes));
    return {ByteSpan(*held), held};
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
