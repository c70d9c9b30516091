#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pluvo::base {

/// A value read from JSON. Where the JSON has no such value, a member is empty: no text, 0, false.
class JsonValue {
 public:
  /// Reads one JSON value. Nothing where the text is not well-formed, or nests deeper than 32 levels.
  static std::optional<JsonValue> from(std::string_view json);

  const JsonValue& operator[](std::string_view member) const;
  bool has(std::string_view member) const { return &(*this)[member] != &none(); }
  /// Names and values in their order.
  const std::vector<std::pair<std::string, JsonValue>>& members() const { return members_; }
  const std::vector<JsonValue>& items() const { return items_; }

  bool isObject() const { return kind_ == Kind::object; }
  bool isText() const { return kind_ == Kind::text; }
  /// Bytes, as jsonQuoted was given them.
  const std::string& text() const { return text_; }
  std::int64_t number() const { return number_; }  ///< whole; others are cut
  bool isTrue() const { return kind_ == Kind::yes; }

 private:
  enum class Kind : std::uint8_t { null, yes, no, number, text, array, object };
  class Reader;
  static const JsonValue& none();

  Kind kind_ = Kind::null;
  std::int64_t number_ = 0;
  std::string text_;
  std::vector<JsonValue> items_;
  std::vector<std::pair<std::string, JsonValue>> members_;
};

}  // namespace pluvo::base
