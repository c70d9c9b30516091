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

class SilentPrinter : public Printer {
 public:
  bool wantsBlocks() const override { return false; }
  void block(const std::string& /*path*/, const BlockReport& /*block*/) override {}
  void document(const Outcome& /*outcome*/) override {}
  void end(const Totals& /*totals*/) override {}
};

class Printers : public Printer {
 public:
  explicit Printers(std::vector<std::unique_ptr<Printer>> printers) : printers_(std::move(printers)) {}

  bool wantsBlocks() const override {
    return std::any_of(printers_.begin(), printers_.end(), [](auto& each) { return each->wantsBlocks(); });
  }
  void block(const std::string& path, const BlockReport& block) override {
    for (const auto& each : printers_) {
      if (each->wantsBlocks()) each->block(path, block);
    }
  }
  void document(const Outcome& outcome) override {
    for (const auto& each : printers_) each->document(outcome);
  }
  void leftOut(const LeftOut& leftOut) override {
    for (const auto& each : printers_) each->leftOut(leftOut);
  }
  void end(const Totals& totals) override {
    std::exception_ptr first;
    for (const auto& each : printers_) {
      try {
        each->end(totals);
      } catch (const std::exception&) {
        if (!first) first = std::current_exception();
      }
    }
    if (first) std::rethrow_exception(first);
  }

 private:
  std::vector<std::unique_ptr<Printer>> printers_;
};

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

std::unique_ptr<Printer> printerFor(const Plan& plan) {
  if (plan.json) return jsonPrinter();
  if (plan.quiet) return std::make_unique<SilentPrinter>();
  return textPrinter(plan, Style::forStream(fileno(stdout)));
}

std::unique_ptr<Printer> allOf(std::vector<std::unique_ptr<Printer>> printers) {
  return std::make_unique<Printers>(std::move(printers));
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

std::string counted(std::int64_t count, std::string_view noun) {
  return std::to_string(count) + " " + std::string(noun) + (count == 1 ? "" : "s");
}

}  // namespace pluvo::cli
