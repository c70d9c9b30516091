#pragma once

#include "formats/format.h"
#include "walker.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace pluvo::rtf {

/// A password as a number, or as the bytes of a hash and how it came about.
struct PasswordInGroups {
  std::optional<std::uint32_t> key;
  std::vector<std::uint8_t> hash;
  explicit operator bool() const { return key || !hash.empty(); }
};

/// A document's protection, and what it asks before it is saved under its own name: in words before its text
/// and in groups.
class ProtectionReader {
 public:
  explicit ProtectionReader(std::string_view bytes) : bytes_(bytes) {}
  void word(const Token& token);
  void group(const SkippedGroup& group);
  std::optional<formats::Protection> protection() const;
  std::optional<formats::Reservation> reservation() const;

 private:
  void info(const SkippedGroup& group);
  std::vector<std::uint8_t> bytesIn(const SkippedGroup& group) const;

  std::string_view bytes_;
  std::optional<word::WdProtectionType> type_;
  std::optional<bool> isEnforced_;
  bool recommendsReading_ = false;
  PasswordInGroups forEditing_;
  PasswordInGroups forChanging_;
};

}  // namespace pluvo::rtf
