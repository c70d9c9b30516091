#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pluvo::base {

/// A JSON string, controls of every kind escaped. A byte that is not part of well-formed UTF-8 becomes the
/// escape of the lone surrogate U+DC00 plus the byte. Python's os.fsencode, among others, turns it back, so a
/// name survives whole.
std::string jsonQuoted(std::string_view bytes);

/// Members of a JSON object, in the order in which they are added. Names are ASCII without quotes.
class JsonObject {
 public:
  JsonObject& text(std::string_view name, std::string_view value) { return json(name, jsonQuoted(value)); }
  JsonObject& number(std::string_view name, std::int64_t value) { return json(name, std::to_string(value)); }
  JsonObject& truth(std::string_view name, bool value) { return json(name, value ? "true" : "false"); }
  JsonObject& none(std::string_view name) { return json(name, "null"); }
  /// A value that is JSON already.
  JsonObject& json(std::string_view name, std::string_view value);

  bool empty() const { return members_.empty(); }
  /// Without the braces, for an object that is written in parts.
  const std::string& members() const { return members_; }
  std::string str() const { return "{" + members_ + "}"; }

 private:
  std::string members_;
};

/// Values of a JSON array that are JSON already.
class JsonArray {
 public:
  void add(std::string_view value);
  bool empty() const { return values_.empty(); }
  std::string str() const { return "[" + values_ + "]"; }

 private:
  std::string values_;
};

}  // namespace pluvo::base
