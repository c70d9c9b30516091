#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace pluvo::base {

using ByteSpan = std::span<const std::uint8_t>;

/// A file of which bytes are mapped, not read.
class MappedFile {
 public:
  virtual ~MappedFile() = default;
  /// Whether part of the file went missing under the bytes (it was cut short, the disk failed); such a
  /// part reads as zeros.
  virtual bool vanished() const = 0;
  /// Whether anybody wrote into the file since it was mapped, wherever it lies now.
  virtual bool overwritten() const = 0;
  /// Gives back memory that is filled again from the file when the bytes are next looked at.
  virtual void release() const = 0;
};

/// The bytes of a file, held as long as references exist: mapped, read, or made by a test.
///
/// One more byte, kBehind, lies after a whole file in the same memory. A last line without an end gets its
/// paragraph mark there.
struct Bytes {
  static constexpr std::uint8_t kBehind = '\r';

  ByteSpan view;
  std::shared_ptr<const void> owner;
  std::shared_ptr<const MappedFile> file;  ///< null where there is none

  bool vanished() const { return file != nullptr && file->vanished(); }
  void release() const {
    if (file != nullptr) file->release();
  }

  static Bytes of(std::vector<std::uint8_t> bytes) {
    bytes.push_back(kBehind);
    auto held = std::make_shared<const std::vector<std::uint8_t>>(std::move(bytes));
    return {ByteSpan(held->data(), held->size() - 1), held, nullptr};
  }
};

/// Where a writer puts a document's bytes, front to back. A failure to write is a DocumentError (io).
class Output {
 public:
  virtual ~Output() = default;
  virtual void write(ByteSpan bytes) = 0;
};

/// An output that keeps its bytes in memory.
class MemoryOutput : public Output {
 public:
  void write(ByteSpan bytes) override { bytes_.insert(bytes_.end(), bytes.begin(), bytes.end()); }
  std::vector<std::uint8_t>& bytes() { return bytes_; }

 private:
  std::vector<std::uint8_t> bytes_;
};

}  // namespace pluvo::base
