#include "saved/toml_text.h"

#include "base/utf.h"
#include "colors.h"

#include <array>
#include <cstdio>

namespace pluvo::cli {
namespace {

/// A basic string of TOML. A paragraph mark is a line feed, as on the command line.
std::string quoted(const std::u16string& text) {
  std::u16string lines = text;
  for (char16_t& unit : lines) {
    if (unit == u'\r') unit = u'\n';
  }
  std::string toml = "\"";
  for (const char c : base::utf8(lines)) {
    if (c == '"' || c == '\\') {
      toml += std::string("\\") + c;
    } else if (c == '\n') {
      toml += "\\n";
    } else if (c == '\t') {
      toml += "\\t";
    } else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
      std::array<char, 8> escape = {};
      (void)std::snprintf(escape.data(), escape.size(), "\\u%04X", static_cast<unsigned>(c));
      toml += escape.data();
    } else {
      toml += c;
    }
  }
  return toml + '"';
}

std::string word(std::string_view text) { return "\"" + std::string(text) + "\""; }

constexpr std::array<std::string_view, 4> kUnits = {"word", "sentence", "paragraph", "document"};
constexpr std::array<std::string_view, 4> kPlaces = {"block", "begin", "end", "inside"};

}  // namespace

bool namesTextFile(const Option& option) {
  return option.valueName == "FILE" && (option.group == kBlockGroup || option.group == kChangeGroup);
}

bool isPartOfRequest(const Option& option) {
  const bool isAbout =
      option.group == kBlockGroup || option.group == kChangeGroup || option.group == kMatchingGroup;
  return isAbout && !namesTextFile(option);
}

std::string tomlOf(const Request& request) {
  std::string toml = "[[request]]\n";
  const auto line = [&](bool wanted, std::string_view key, const std::string& value) {
    if (wanted) toml += std::string(key) + " = " + value + "\n";
  };
  const bool takesText = request.command == Command::insert || request.command == Command::replace;
  line(true, "command", word(nameOf(request.command)));
  line(true, "begin", quoted(request.begin));
  line(!request.end.empty(), "end", quoted(request.end));
  line(!request.inside.empty(), "inside", quoted(request.inside));
  line(request.apart != u"Same", "apart", base::utf8(request.apart));
  line(request.unit != Unit::paragraph, "unit", word(kUnits.at(static_cast<std::size_t>(request.unit))));
  line(request.place != Place::block && !request.end.empty(), "on",
       word(kPlaces.at(static_cast<std::size_t>(request.place))));
  line(takesText, "text", quoted(request.text));
  line(request.command == Command::insert, request.after ? "after" : "before", "true");
  line(request.extraSpace, "extra-space", "true");
  line(request.command == Command::highlight, "color", word(nameOf(request.color)));
  line(request.matchCase, "match-case", "true");
  line(request.wholeWords, "whole-words", "true");
  line(request.fieldCodes, "field-codes", "true");
  return toml;
}

}  // namespace pluvo::cli
