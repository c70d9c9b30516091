#include "progress.h"

#include "base/shown.h"
#include "terminal.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <utility>

namespace pluvo::cli {
namespace {

constexpr auto kBetweenLines = std::chrono::milliseconds(100);
/// Before this no rate is known.
constexpr double kSecondsToJudge = 1.0;

void put(const std::string& text) { (void)std::fwrite(text.data(), 1, text.size(), stderr); }

std::string duration(double seconds) {
  const std::int64_t whole =
      std::chrono::ceil<std::chrono::seconds>(std::chrono::duration<double>(seconds)).count();
  const std::string minutes = std::to_string(whole / 60 % 60);
  const std::string rest = std::to_string(whole % 60);
  const auto two = [](const std::string& digits) { return digits.size() < 2 ? "0" + digits : digits; };
  if (whole >= 3600) return std::to_string(whole / 3600) + ":" + two(minutes) + ":" + two(rest);
  return minutes + ":" + two(rest);
}

std::string row(const std::string& name, const std::string& value) {
  const std::size_t width = 24;
  return "  " + name + std::string(name.size() < width ? width - name.size() : 1, ' ') + value + "\n";
}

}  // namespace

Progress::Progress(const Plan& plan, std::size_t documents) : documents_(documents) {
  const bool atTerminal = isTerminal(STDERR_FILENO);
  const bool wanted = plan.progress == ProgressLine::always ||
                      (plan.progress == ProgressLine::automatic && atTerminal && !plan.quiet);
  // A question and the line would be in each other's way.
  shown_ = wanted && !plan.confirm && (movesCursor() || plan.progress == ProgressLine::always);
  table_ = wanted && atTerminal && plan.selection.several();
}

void Progress::clear() {
  if (!drawn_) return;
  put("\r\033[K");
  drawn_ = false;
}

void Progress::show() {
  if (!shown_ || Clock::now() - drawnAt_ < kBetweenLines) return;
  (void)std::fflush(stdout);
  std::string shown = line();
  // Text that goes on in another row cannot be erased.
  if (const auto columns = columnsOf(STDERR_FILENO)) shown.resize(std::min(shown.size(), *columns - 1));
  put("\r" + shown + "\033[K");
  drawn_ = true;
  drawnAt_ = Clock::now();
}

void Progress::add(const runs::BlockReport& /*block*/) {
  ++blocks_;
  ++blocksAtHand_;
}

void Progress::add(const runs::Outcome& outcome) {
  ++done_;
  // Blocks are told one by one only on request.
  blocks_ += outcome.found - std::exchange(blocksAtHand_, 0);
  if (outcome.failure) ++failures_[std::string(errors::nameOf(outcome.failure->problem))];
}

void Progress::end(const runs::Totals& totals) {
  clear();
  if (!table_) return;
  (void)std::fflush(stdout);
  std::string table =
      row("documents", std::to_string(totals.files)) + row("blocks", std::to_string(totals.found));
  if (totals.operated > 0) table += row("changed blocks", std::to_string(totals.operated));
  if (totals.skipped > 0) table += row("skipped blocks", std::to_string(totals.skipped));
  if (totals.changed > 0) table += row("changed documents", std::to_string(totals.changed));
  for (const auto& [name, count] : failures_) table += row(name, std::to_string(count));
  put(table + row("time", duration(seconds())));
}

double Progress::seconds() const { return std::chrono::duration<double>(Clock::now() - began_).count(); }

std::string Progress::line() const {
  std::string line = std::to_string(done_) + " of " +
                     base::counted(static_cast<std::int64_t>(documents_), "document") + ", " +
                     base::counted(blocks_, "block");
  const double passed = seconds();
  if (passed < kSecondsToJudge || done_ == 0) return line;
  const double rate = static_cast<double>(done_) / passed;
  // Not rounded by the mathematical library, which each start would load.
  std::array<char, 32> rounded = {};
  std::snprintf(rounded.data(), rounded.size(), ", %.0f a second", rate);
  line += rounded.data();
  return line + ", " + duration(static_cast<double>(documents_ - done_) / rate) + " left";
}

}  // namespace pluvo::cli
