#pragma once

#include "formats/format.h"
#include "walker.h"

#include <optional>
#include <string_view>
#include <vector>

namespace pluvo::rtf {

/// A document's protection, in words before its text and in groups.
class ProtectionReader {
 public:
  explicit ProtectionReader(std::string_view bytes) : bytes_(bytes) {}
  void word(const Token& token);
  void group(const SkippedGroup& group);
  std::optional<formats::Protection> finish() const;

 private:
  /// A password as a number, or as the bytes of a hash and how it came about.
  struct Kept {
    std::optional<std::uint32_t> key;
    std::vector<std::uint8_t> hash;
    explicit operator bool() const { return key || !hash.empty(); }
  };

  void info(const SkippedGroup& group);
  std::vector<std::uint8_t> bytesIn(const SkippedGroup& group) const;

  std::string_view bytes_;
  std::optional<word::WdProtectionType> type_;
  std::optional<bool> isEnforced_;
  Kept forEditing_;
  Kept forChanging_;
};

}  // namespace pluvo::rtf
