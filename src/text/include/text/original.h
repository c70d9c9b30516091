#pragma once

#include "text/bytes_text.h"
#include "text/positions.h"

#include <algorithm>
#include <array>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pluvo::text {

/// A contiguous stretch of a text as it lies in memory, in one of two widths.
struct Stretch {
  const std::uint8_t* narrow = nullptr;  ///< one UTF-16 unit below 256 a byte, or
  const char16_t* wide = nullptr;        ///< UTF-16 units
  Position length = 0;
  /// Narrow stretches only: byte 10 stands for a paragraph mark. It does in the mapped bytes of a text file
  /// whose lines end in a line feed.
  bool lineFeedIsMark = false;

  char16_t operator[](Position i) const {
    if (wide != nullptr) return wide[i];
    const char16_t unit = narrow[i];
    return lineFeedIsMark && unit == u'\n' ? kParagraphMark : unit;
  }

  void copyTo(char16_t* out) const {
    if (wide != nullptr) {
      std::copy_n(wide, length, out);
    } else {
      std::copy_n(narrow, length, out);
      if (lineFeedIsMark) std::replace(out, out + length, u'\n', kParagraphMark);
    }
  }

  /// The units [from, to) of it.
  Stretch part(Position from, Position to) const {
    Stretch part = *this;
    if (wide != nullptr) part.wide += from;
    if (narrow != nullptr) part.narrow += from;
    part.length = to - from;
    return part;
  }
};

/// The text of a document as its reader found it; never changed. It lies in units of one width, narrow where
/// every unit is below 256, or in the bytes of its file.
class OriginalText {
 public:
  OriginalText() = default;
  explicit OriginalText(std::u16string units)
      : OriginalText(std::make_shared<const std::u16string>(std::move(units))) {}
  explicit OriginalText(std::vector<std::uint8_t> units)
      : OriginalText(std::make_shared<const std::vector<std::uint8_t>>(std::move(units))) {}
  /// Units held elsewhere (in a mapped file, say); owner keeps them alive.
  OriginalText(std::span<const std::uint8_t> bytes, bool lineFeedIsMark, std::shared_ptr<const void> owner)
      : whole_{bytes.data(), nullptr, static_cast<Position>(bytes.size()), lineFeedIsMark},
        owner_(std::move(owner)) {}
  OriginalText(std::span<const char16_t> units, std::shared_ptr<const void> owner)
      : whole_{nullptr, units.data(), static_cast<Position>(units.size()), false}, owner_(std::move(owner)) {}
  OriginalText(const Stretch& units, std::shared_ptr<const void> owner)
      : whole_(units), owner_(std::move(owner)) {}
  explicit OriginalText(std::shared_ptr<const BytesText> text)
      : whole_{nullptr, nullptr, text->length(), false}, inBytes_(std::move(text)) {}

  Position length() const { return whole_.length; }
  char16_t operator[](Position i) const { return inBytes_ == nullptr ? whole_[i] : (*inBytes_)[i]; }
  /// The bytes it lies in, or null.
  const BytesText* inBytes() const { return inBytes_.get(); }
  /// The same, where they are UTF-8.
  const BytesText* utf8() const {
    return inBytes_ != nullptr && inBytes_->coding() == nullptr ? inBytes_.get() : nullptr;
  }
  /// Of a text that lies in units.
  Stretch stretch(Position from, Position to) const { return whole_.part(from, to); }

  void copy(Position from, Position to, char16_t* out) const {
    if (inBytes_ == nullptr) return whole_.part(from, to).copyTo(out);
    inBytes_->copy(from, to, out);
  }

  /// The stretches that make up [from, to) in order, until visit(offset from there, const Stretch&) returns
  /// false; whether it did not. A stretch of a text in bytes lasts as long as the call.
  template <class Visit>
  bool forEachStretch(Position from, Position to, Visit visit) const {
    if (inBytes_ == nullptr) return visit(Position{0}, whole_.part(from, to));
    std::array<char16_t, 1024> units;
    for (Position at = from; at < to;) {
      const Position length = std::min(to - at, static_cast<Position>(units.size()));
      inBytes_->copy(at, at + length, units.data());
      if (!visit(at - from, Stretch{nullptr, units.data(), length, false})) return false;
      at += length;
    }
    return true;
  }

 private:
  explicit OriginalText(std::shared_ptr<const std::u16string> units)
      : whole_{nullptr, units->data(), static_cast<Position>(units->size()), false},
        owner_(std::move(units)) {}
  explicit OriginalText(std::shared_ptr<const std::vector<std::uint8_t>> units)
      : whole_{units->data(), nullptr, static_cast<Position>(units->size()), false},
        owner_(std::move(units)) {}

  Stretch whole_;
  std::shared_ptr<const void> owner_;
  std::shared_ptr<const BytesText> inBytes_;  ///< then whole_ has but its length
};

/// Gathers an original text front to back, in bytes until the first unit that needs more.
class OriginalTextBuilder {
 public:
  /// How many units may come at most; memory that is not filled is not taken.
  void expect(std::size_t most) { expected_ = most; }
  std::size_t size() const { return wide_.empty() ? narrow_.size() : wide_.size(); }

  void append(std::u16string_view units) {
    if (wide_.empty() && fitsBytes(units)) {
      makeRoom(units.size());
      narrow_.insert(narrow_.end(), units.begin(), units.end());
      return;
    }
    if (wide_.empty()) widen();
    wide_ += units;
  }

  void appendAscii(std::string_view text) {
    if (wide_.empty()) {
      makeRoom(text.size());
      narrow_.insert(narrow_.end(), text.begin(), text.end());
    } else {
      wide_.append(text.begin(), text.end());
    }
  }

  OriginalText finish() {
    return wide_.empty() ? OriginalText(std::move(narrow_)) : OriginalText(std::move(wide_));
  }

 private:
  static bool fitsBytes(std::u16string_view units) {
    unsigned allBits = 0;
    for (const char16_t unit : units) allBits |= unit;
    return allBits < 0x100;
  }
  /// Takes room for all that is expected once the text is not short. Most texts that turn wide do so before.
  /// The room for their bytes would lie unused.
  void makeRoom(std::size_t more) {
    constexpr std::size_t kShort = std::size_t{64} << 10U;
    if (narrow_.capacity() - narrow_.size() >= more || narrow_.capacity() >= expected_) return;
    narrow_.reserve(narrow_.size() + more <= kShort ? std::min(kShort, expected_) : expected_);
  }
  void widen() {
    wide_.reserve(std::max(expected_, narrow_.size()));
    wide_.assign(narrow_.begin(), narrow_.end());
    narrow_ = std::vector<std::uint8_t>();
  }

  std::size_t expected_ = 0;
  std::vector<std::uint8_t> narrow_;
  std::u16string wide_;
};

}  // namespace pluvo::text
