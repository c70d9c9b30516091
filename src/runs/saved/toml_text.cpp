#include "saved/toml_text.h"

#include "base/utf.h"
#include "runs/colors.h"
#include "runs/written_request.h"

#include <array>
#include <cstdio>

namespace pluvo::runs {
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

std::string word(std::string_view name) { return "\"" + std::string(name) + "\""; }

}  // namespace

std::string tomlOf(const engine::Request& request) {
  std::string toml = "[[request]]\n";
  const auto line = [&](bool wanted, std::string_view key, const std::string& value) {
    if (wanted) toml += std::string(key) + " = " + value + "\n";
  };
  const bool inserts = request.operation == engine::kInsert;
  line(true, "command", word(nameOf(request.operation)));
  line(true, "begin", quoted(request.begin));
  line(!request.end.empty(), "end", quoted(request.end));
  line(!request.inside.empty(), "inside", quoted(request.inside));
  line(request.distance != 0, "apart", std::to_string(request.distance));
  line(request.unit != engine::kParagraphs, "unit", word(kUnitNames[request.unit]));
  line(request.stories != word::kMainTextAlone, "in", word(placesIn(request)));
  line(request.location != engine::kSelection && !request.end.empty(), "on",
       word(kLocationNames[request.location]));
  line(inserts || request.operation == engine::kReplace, "text", quoted(request.text));
  line(inserts, request.place == engine::kAfter ? "after" : "before", "true");
  line(request.extraSpace, "extra-space", "true");
  line(request.operation == engine::kHighlight, "color",
       word(nameOf(static_cast<word::WdColorIndex>(request.highlightColour))));
  line(request.matchCase, "match-case", "true");
  line(request.wholeWords, "whole-words", "true");
  line(request.showFieldCodes, "field-codes", "true");
  return toml;
}

}  // namespace pluvo::runs
