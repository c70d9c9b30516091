#pragma once

#include "base/bytes.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::formats {

/// Bytes that are changed in place, front to back: stretches of the old ones and new text. Bytes that are
/// not yet committed can be taken back.
template <class Offset>
class SplicedBytes {
 public:
  explicit SplicedBytes(base::ByteSpan source) : source_(source) {}
  SplicedBytes(const SplicedBytes&) = delete;
  SplicedBytes& operator=(const SplicedBytes&) = delete;

  std::string_view source(Offset from, Offset to) const {
    return {reinterpret_cast<const char*>(source_.data()) + from, std::size_t{to} - from};
  }

  /// The old bytes up to here were copied or left out.
  Offset copied() const { return copied_; }
  void copyTo(Offset to) {
    if (to <= copied_) return;
    into_->append(source(copied_, to));
    copied_ = to;
  }
  void leaveOutTo(Offset to) { copied_ = std::max(copied_, to); }
  /// New text, and old bytes copied since the last commitTo().
  std::string& text() { return *into_; }

  /// From here on text and copied bytes go into another buffer.
  void divertTo(std::string& buffer) {
    // While both are little, the memory that waits for more serves. Other memory would have to be cleared.
    constexpr std::size_t kLittle = 4096;
    if (std::max(text_.size(), buffer.size()) < kLittle && text_.capacity() > buffer.capacity()) {
      std::string text = text_;
      text_ = std::string_view(buffer);
      buffer.swap(text_);
      text_.swap(text);
    } else {
      buffer.reserve(std::min(text_.capacity(), source_.size()));
    }
    into_ = &buffer;
  }
  void comeBack() { into_ = &text_; }
  /// Adds a text and empties it. The longer of the two keeps its place: other memory would have to be
  /// cleared.
  void take(std::string& more) {
    if (more.size() > into_->size()) {
      into_->swap(more.insert(0, *into_));
    } else {
      into_->append(more);
    }
    more.clear();
  }

  /// Copies the old bytes up to here, as a rule without gathering them, for good.
  void commitTo(Offset to) {
    if (text_.size() > committed_) pieces_.push_back({&text_, committed_, text_.size()});
    committed_ = text_.size();
    if (to > copied_) pieces_.push_back({nullptr, copied_, to});
    copied_ = std::max(copied_, to);
  }

  /// Puts a text in, which must outlive this, at a place in the text committed.
  void insert(std::size_t at, const std::string& more) {
    const auto piece = std::ranges::find_if(
        pieces_, [&](const Piece& each) { return each.text == &text_ && each.from <= at && at <= each.to; });
    const Piece rest{&text_, at, piece->to};
    piece->to = at;
    pieces_.insert(piece + 1, {Piece{&more, 0, more.size()}, rest});
  }
  /// Adds what another made of the bytes that follow. Both are committed; that one must outlive this.
  void append(const SplicedBytes& next) {
    pieces_.insert(pieces_.end(), next.pieces_.begin(), next.pieces_.end());
    copied_ = next.copied_;
  }

  /// The new bytes. The spans hold as long as this and the old ones.
  std::vector<base::ByteSpan> finish() {
    commitTo(static_cast<Offset>(source_.size()));
    std::vector<base::ByteSpan> spans;
    for (const Piece& piece : pieces_) {
      const auto* const bytes =
          piece.text != nullptr ? reinterpret_cast<const std::uint8_t*>(piece.text->data()) : source_.data();
      spans.emplace_back(bytes + piece.from, piece.to - piece.from);
    }
    return spans;
  }

 private:
  struct Piece {
    const std::string* text;  ///< none for old bytes
    std::size_t from;
    std::size_t to;
  };

  base::ByteSpan source_;
  Offset copied_ = 0;
  std::string text_;
  std::string* into_ = &text_;
  std::size_t committed_ = 0;
  std::vector<Piece> pieces_;
};

}  // namespace pluvo::formats
