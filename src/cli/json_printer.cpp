#include "printer.h"
#include "unicode.h"

#include <array>
#include <cstdio>

namespace pluvo::cli {
namespace {

std::string escaped(unsigned unit) {
  std::array<char, 8> buffer{};
  (void)std::snprintf(buffer.data(), buffer.size(), "\\u%04x", unit);
  return buffer.data();
}

/// A JSON string. A byte that is not part of well-formed UTF-8 becomes the escape of the lone surrogate
/// U+DC00 plus the byte, which Python's os.fsencode, among others, turns back into the byte: a name survives
/// whole.
std::string quoted(std::string_view bytes) {
  std::string json = "\"";
  std::size_t sound = wellFormedLength(bytes);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const auto c = static_cast<unsigned char>(bytes[i]);
    if (i >= sound) {
      const std::size_t more = wellFormedLength(bytes.substr(i));
      if (more == 0) {
        json += escaped(0xDC00U + c);
        continue;
      }
      sound = i + more;
    }
    if (c == '"' || c == '\\') {
      json += '\\';
      json += static_cast<char>(c);
    } else if (c < 0x20 || c == 0x7F) {
      json += escaped(c);
    } else {
      json += static_cast<char>(c);
    }
  }
  return json + '"';
}

std::string field(const char* name, std::int64_t value) {
  return ",\"" + std::string(name) + "\":" + std::to_string(value);
}

class JsonPrinter : public Printer {
 public:
  bool wantsBlocks() const override { return false; }
  void block(const std::string& /*path*/, const BlockReport& /*block*/) override {}

  void document(const Outcome& outcome) override {
    std::string line = "{\"file\":" + quoted(outcome.path) + field("found", outcome.found) +
                       field("operated", outcome.operated) + field("skipped", outcome.skipped) +
                       ",\"saved\":" + (outcome.saved ? "true" : "false") + ",\"error\":";
    if (outcome.failure) {
      line += "{\"code\":" + quoted(files::nameOf(outcome.failure->problem)) +
              ",\"message\":" + quoted(outcome.failure->message) + "}";
    } else {
      line += "null";
    }
    writeOut(line + "}\n");
  }

  void end(const Totals& totals) override {
    writeOut("{\"summary\":{\"files\":" + std::to_string(totals.files) + field("found", totals.found) +
             field("operated", totals.operated) + field("skipped", totals.skipped) +
             field("changed", totals.changed) + field("failed", totals.failed) + "}}\n");
  }
};

}  // namespace

std::unique_ptr<Printer> jsonPrinter() { return std::make_unique<JsonPrinter>(); }

}  // namespace pluvo::cli
