#include "base/json_value.h"

#include "base/utf.h"

#include <charconv>
#include <cstddef>

namespace pluvo::base {

/// Reads from the front of a text. Each function is false where the text begins with something else.
class JsonValue::Reader {
 public:
  explicit Reader(std::string_view json) : rest_(json) {}

  bool value(JsonValue& value, int levels) {
    skipBlanks();
    if (rest_.empty() || levels == 0) return false;
    switch (rest_.front()) {
      case '{':
        return object(value, levels);
      case '[':
        return array(value, levels);
      case '"':
        value.kind_ = Kind::text;
        return text(value.text_);
      case 't':
        value.kind_ = Kind::yes;
        return take("true");
      case 'f':
        value.kind_ = Kind::no;
        return take("false");
      case 'n':
        return take("null");
      default:
        value.kind_ = Kind::number;
        return number(value.number_);
    }
  }

  bool isAtEnd() {
    skipBlanks();
    return rest_.empty();
  }

 private:
  void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\r\n"), rest_.size())); }

  bool take(std::string_view word) {
    if (!rest_.starts_with(word)) return false;
    rest_.remove_prefix(word.size());
    return true;
  }

  /// The values between brackets, with commas between.
  template <class Item>
  bool list(char end, Item item) {
    rest_.remove_prefix(1);
    skipBlanks();
    if (take({&end, 1})) return true;
    do {
      if (!item()) return false;
      skipBlanks();
    } while (take(","));
    return take({&end, 1});
  }

  bool array(JsonValue& array, int levels) {
    array.kind_ = Kind::array;
    return list(']', [&] { return value(array.items_.emplace_back(), levels - 1); });
  }

  bool object(JsonValue& object, int levels) {
    object.kind_ = Kind::object;
    return list('}', [&] {
      auto& [name, member] = object.members_.emplace_back();
      skipBlanks();
      if (!text(name)) return false;
      skipBlanks();
      return take(":") && value(member, levels - 1);
    });
  }

  bool number(std::int64_t& number) {
    const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
    if (error != std::errc()) return false;
    rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
    rest_.remove_prefix(std::min(rest_.find_first_not_of("0123456789.eE+-"), rest_.size()));
    return true;
  }

  bool unit(char16_t& unit) {
    unsigned value = 0;
    if (rest_.size() < 6 || !rest_.starts_with("\\u")) return false;
    const char* const end = rest_.data() + 6;
    if (std::from_chars(rest_.data() + 2, end, value, 16).ptr != end) return false;
    unit = static_cast<char16_t>(value);
    rest_.remove_prefix(6);
    return true;
  }

  bool escape(std::string& text) {
    constexpr std::string_view kSigns = "\"\\/bfnrt";
    constexpr std::string_view kMeanings = "\"\\/\b\f\n\r\t";
    if (rest_.size() < 2) return false;
    if (const std::size_t sign = kSigns.find(rest_[1]); sign != std::string_view::npos) {
      text += kMeanings[sign];
      rest_.remove_prefix(2);
      return true;
    }
    char16_t first = 0;
    if (!unit(first)) return false;
    // U+DC00 plus a byte stands for a byte that is no UTF-8.
    if (first >= 0xDC80 && first <= 0xDCFF) {
      text += static_cast<char>(first & 0xFFU);
      return true;
    }
    std::u16string units(1, first);
    if (isHighSurrogate(first)) {
      char16_t second = 0;
      if (!unit(second)) return false;
      units += second;
    }
    text += utf8(units);
    return true;
  }

  bool text(std::string& text) {
    if (!take("\"")) return false;
    while (!rest_.empty() && rest_.front() != '"') {
      const std::size_t plain = std::min(rest_.find_first_of("\"\\"), rest_.size());
      text += rest_.substr(0, plain);
      rest_.remove_prefix(plain);
      if (rest_.starts_with('\\') && !escape(text)) return false;
    }
    return take("\"");
  }

  std::string_view rest_;
};

std::optional<JsonValue> JsonValue::from(std::string_view json) {
  constexpr int kMostLevels = 32;
  JsonValue value;
  Reader reader(json);
  if (!reader.value(value, kMostLevels) || !reader.isAtEnd()) return std::nullopt;
  return value;
}

const JsonValue& JsonValue::none() {
  static const JsonValue none;
  return none;
}

const JsonValue& JsonValue::operator[](std::string_view member) const {
  for (const auto& [name, value] : members_)
    if (name == member) return value;
  return none();
}

}  // namespace pluvo::base
