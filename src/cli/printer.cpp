#include "printer.h"

#include "base/shown.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <system_error>
#include <utility>

namespace pluvo::cli {
namespace {

void say(const std::string& line) {
  (void)std::fflush(stdout);
  (void)std::fwrite(line.data(), 1, line.size(), stderr);
}

/// A terminal that was closed reads nothing any more, and is no reason to leave work half done.
void requireReader() {
  const int failure = errno;
  const bool closedTerminal = ::isatty(STDOUT_FILENO) == 0 && errno == EIO;
  if (!closedTerminal || std::freopen("/dev/null", "w", stdout) == nullptr)
    throw std::system_error(failure, std::generic_category());
}

}  // namespace

std::unique_ptr<runs::Observer> printerFor(const Plan& plan) {
  if (plan.json) return jsonPrinter(plan);
  if (plan.quiet) return std::make_unique<runs::Observer>();
  return textPrinter(plan, Style::forStream(fileno(stdout)));
}

void writeOut(std::string_view text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) requireReader();
}

void flushOut() {
  if (std::fflush(stdout) != 0) requireReader();
}

void sayError(std::string_view sentence) {
  say(Style::forStream(fileno(stderr)).error("pluvo:") + " " + base::shown(sentence) + "\n");
}

void sayNote(std::string_view sentence) { say("pluvo: " + base::shown(sentence) + "\n"); }

}  // namespace pluvo::cli
