#include "terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace pluvo::cli {
namespace {

bool allowsColor() {
  const char* const refused = std::getenv("NO_COLOR");
  return (refused == nullptr || *refused == 0) && movesCursor();
}

}  // namespace

bool isTerminal(int descriptor) { return ::isatty(descriptor) == 1; }

bool movesCursor() {
  const char* const terminal = std::getenv("TERM");
  return terminal != nullptr && *terminal != 0 && std::string_view(terminal) != "dumb";
}

std::optional<std::size_t> columnsOf(int descriptor) {
  winsize size = {};
  if (::ioctl(descriptor, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return std::nullopt;
  return size.ws_col;
}

Style Style::forStream(int descriptor) { return Style(isTerminal(descriptor) && allowsColor()); }

std::string Style::paint(std::string_view codes, std::string_view text) const {
  if (!colored_ || text.empty()) return std::string(text);
  return "\033[" + std::string(codes) + "m" + std::string(text) + "\033[0m";
}

std::string Style::highlighted(std::string_view text, word::WdColorIndex color) const {
  // By colour index; the eight dark ones take the terminal's plain colours, the light ones its bright ones.
  static constexpr std::array<std::string_view, 17> kCodes = {
      "4",     "97;40", "97;44", "30;106", "30;102", "30;105", "97;101", "30;103", "30;107",
      "97;44", "97;46", "97;42", "97;45",  "97;41",  "30;43",  "97;100", "30;47"};
  return paint(kCodes[static_cast<std::size_t>(color)], text);
}

}  // namespace pluvo::cli
