#include "printer.h"

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace pluvo::cli {
namespace {

class SilentPrinter : public Printer {
 public:
  bool wantsBlocks() const override { return false; }
  void block(const std::string& /*path*/, const BlockReport& /*block*/) override {}
  void document(const Outcome& /*outcome*/) override {}
  void end(const Totals& /*totals*/) override {}
};

void say(const std::string& line) {
  (void)std::fflush(stdout);
  (void)std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace

std::unique_ptr<Printer> printerFor(const Request& request) {
  if (request.json) return jsonPrinter();
  if (request.quiet) return std::make_unique<SilentPrinter>();
  return textPrinter(request, Style::forStream(fileno(stdout)));
}

void writeOut(std::string_view text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) {
    throw std::system_error(errno, std::generic_category());
  }
}

void sayError(std::string_view sentence) {
  say(Style::forStream(fileno(stderr)).error("pluvo:") + " " + std::string(sentence) + "\n");
}

void sayNote(std::string_view sentence) { say("pluvo: " + std::string(sentence) + "\n"); }

std::string shownPath(std::string_view path) {
  std::string shown;
  for (const char c : path) shown += static_cast<unsigned char>(c) < 0x20 || c == 0x7F ? '?' : c;
  return shown;
}

}  // namespace pluvo::cli
