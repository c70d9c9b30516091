#pragma once

#include "base/bytes.h"
#include "formats/spliced_bytes.h"
#include "new_text.h"
#include "tokens.h"

#include <optional>
#include <string_view>
#include <vector>

namespace pluvo::rtf {

/// Whether bytes end in a \'hh that lacks digits, which stands for nothing.
inline bool endsInCutByte(std::string_view bytes) {
  if (!bytes.empty() && isHexDigit(bytes.back())) bytes.remove_suffix(1);
  if (!bytes.ends_with('\'')) return false;
  const std::size_t slashes = bytes.size() - 1 - (bytes.find_last_not_of('\\', bytes.size() - 2) + 1);
  return slashes % 2 == 1;
}

/// Old bytes and new ones, joined so that no control word runs into the bytes after it.
class SplicedTokens {
 public:
  /// From there on.
  explicit SplicedTokens(std::string_view source, std::size_t from = 0)
      : source_(source),
        bytes_({reinterpret_cast<const std::uint8_t*>(source.data()), source.size()}),
        from_(from) {
    leaveOutTo(from);
  }

  std::size_t copied() const { return bytes_.copied(); }
  /// Whether new bytes, and none of the old ones, came last.
  bool endsInNew() const { return endsInNew_; }

  /// Copies the old bytes up to there. Whether they end in a word without a blank, and in what a following
  /// byte would be taken for a part of.
  void copyTo(std::size_t to, bool isOpenEnded) {
    if (to <= bytes_.copied()) return;
    if (!first_) first_ = bytes_.copied() == from_ ? '{' : source_[bytes_.copied()];
    if (isSeam_) join(source_[bytes_.copied()]);
    // The bytes that went stood before a word that names the group's kind where it comes first.
    if (isSeam_ && endsInBrace_ && beginsGroup(source_.substr(bytes_.copied()))) bytes_.text() += "{}";
    endsInBrace_ = source_[to - 1] == '{';
    left_ = source_.substr(0, to);
    isSeam_ = false;
    constexpr std::size_t kWorthAPiece = 1024;
    if (to - bytes_.copied() >= kWorthAPiece) {
      bytes_.commitTo(to);
    } else {
      bytes_.copyTo(to);
    }
    isOpenEnded_ = isOpenEnded;
    endsInNew_ = isHalf_ = false;
  }
  void leaveOutTo(std::size_t to) {
    isSeam_ = isSeam_ || to > bytes_.copied();
    bytes_.leaveOutTo(to);
  }
  /// The bytes copied last were half of a character, to which nothing may be added.
  void isHalf() { isHalf_ = true; }

  /// New bytes, whose last token is complete.
  void put(std::string_view text) {
    if (text.empty()) return;
    if (!first_) first_ = text.front();
    join(text.front());
    bytes_.text() += text;
    isOpenEnded_ = endsInBrace_ = false;
    left_ = {};
    isSeam_ = endsInNew_ = true;
  }

  /// Whether the first byte is another than before, and would be taken for a part of a word in front of it.
  bool continuesWord() const { return first_ && goesOnInWord(*first_); }

  std::vector<base::ByteSpan> finish() {
    copyTo(source_.size(), false);
    return bytes_.finish();
  }

 private:
  void join(char next) {
    if (isOpenEnded_ && goesOnInWord(next)) bytes_.text() += ' ';
    if (isHalf_ || (isHexDigit(next) && endsInCutByte(left_))) bytes_.text() += "{}";
    isOpenEnded_ = isHalf_ = false;
  }

  std::string_view source_;
  formats::SplicedBytes<std::size_t> bytes_;
  std::size_t from_;
  std::optional<char> first_;
  std::string_view left_;  ///< the old bytes up to those copied last; nothing where new ones came after them
  bool isSeam_ = false;
  bool isOpenEnded_ = false;
  bool isHalf_ = false;
  bool endsInNew_ = false;
  bool endsInBrace_ = false;
};

}  // namespace pluvo::rtf
