#include "plan.h"

#include "errors/document_error.h"
#include "numbers.h"
#include "request.h"
#include "runs/saved_requests.h"
#include "runs/sliced.h"
#include "selection.h"
#include "text_input.h"
#include "usage_error.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <thread>

namespace pluvo::cli {
namespace {

constexpr int kMostJobs = 256;

void readSafety(const TypedOptions& typed, Plan& plan) {
  if (typed.backup && typed.output) {
    throw UsageError(
        "--output leaves the originals where they are, so --backup has nothing to keep; leave one out.");
  }
  if (typed.backup) {
    plan.backupSuffix = typed.backup->empty() ? ".bak" : *typed.backup;
    if (plan.backupSuffix->find('/') != std::string::npos) {
      throw UsageError("--backup takes what to put after a file's name; it cannot hold a /.");
    }
    if (plan.backupSuffix->size() >= NAME_MAX)
      throw UsageError("--backup: no name can be as long as that suffix; give a shorter one.");
  }
  if (typed.output && typed.output->empty()) throw UsageError("--output needs the name of a folder.");
  plan.outputFolder = typed.output;
  plan.confirm = typed.confirm;
  plan.dryRun = typed.dryRun;
  plan.keepGoing = typed.keepGoing;
  plan.journal = !typed.noJournal;
}

/// "3/8"
runs::Slice sliceFrom(const std::string& typed) {
  constexpr std::uint32_t kMostSlices = 1'000'000;
  runs::Slice slice{0, 0};
  const char* const last = typed.data() + typed.size();
  const auto number = std::from_chars(typed.data(), last, slice.number);
  const bool hasCount = number.ec == std::errc{} && number.ptr != last && *number.ptr == '/';
  const auto count = std::from_chars(hasCount ? number.ptr + 1 : last, last, slice.count);
  if (hasCount && count.ec == std::errc{} && count.ptr == last && slice.number >= 1 &&
      slice.number <= slice.count && slice.count <= kMostSlices)
    return slice;
  throw UsageError("--slice is K/N, the K-th of N parts, as 1/4 to 4/4, not '" + typed + "'.");
}

void readSlice(const TypedOptions& typed, Plan& plan) {
  if (typed.slice) plan.selection.slice = sliceFrom(*typed.slice);
  if (typed.journalDir && typed.journalDir->empty())
    throw UsageError("--journal-dir needs the name of a folder.");
  plan.journalFolder = typed.journalDir;
  if (!typed.runName) return;
  if (!runs::isRunName(*typed.runName))
    throw UsageError(
        "--run-name takes letters, digits, '.', '-' and '_', no more than 100, and begins with a "
        "letter or digit; and it is no time, as the names that runs get by themselves are.");
  plan.runName = *typed.runName;
  if (!plan.selection.slice) plan.selection.slice.emplace();
}

/// Processors are counted only for several documents: the system takes its time.
int jobsFrom(const TypedOptions& typed, bool several) {
  if (typed.confirm) {
    if (typed.jobs && *typed.jobs != "1")
      throw UsageError("--confirm asks about one document after the other; leave --jobs out.");
    return 1;
  }
  if (typed.jobs) return numberFrom(*typed.jobs, "--jobs", 1, kMostJobs);
  return several ? std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, kMostJobs) : 1;
}

ProgressLine progressFrom(const TypedOptions& typed) {
  if (!typed.progress || *typed.progress == "auto") return ProgressLine::automatic;
  if (*typed.progress == "always") return ProgressLine::always;
  if (*typed.progress == "never") return ProgressLine::never;
  throw UsageError("--progress is auto, always or never, not '" + *typed.progress + "'.");
}

std::string encodingFrom(const TypedOptions& typed) {
  if (!typed.encoding) return {};
  try {
    return runs::knownEncoding(*typed.encoding);
  } catch (const errors::DocumentError& refused) {
    throw UsageError(std::string("--encoding: ") + refused.what());
  }
}

/// The command line quoted for a shell.
std::string quotedForShell(const std::string& word) {
  const bool plain = !word.empty() && std::all_of(word.begin(), word.end(), [](char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 ||
           std::string_view("-_./,=:+@%").find(c) != std::string_view::npos;
  });
  if (plain) return word;
  std::string quoted = "'";
  for (const char c : word) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

std::string commandFrom(const std::vector<std::string>& words) {
  std::string command = "pluvo";
  for (const std::string& word : words) command += " " + quotedForShell(word);
  return command;
}

}  // namespace

std::vector<engine::Request> requestsIn(const std::string& path) {
  try {
    return runs::savedRequests(bytesOfFile(path, "saved requests"), path);
  } catch (const runs::RequestError& wrong) {
    throw UsageError(wrong.what());
  }
}

Plan planFrom(const TypedCommandLine& line) {
  Plan plan;
  std::vector<std::string> paths = line.paths;
  if (line.command == Command::run) {
    if (paths.empty()) throw UsageError("Name the file of saved requests: pluvo run FILE.toml DOCUMENT...");
    plan.requests = requestsIn(paths.front());
    plan.isOfSavedRequests = true;
    paths.erase(paths.begin());
  } else {
    plan.requests = {requestFrom(*line.command, line.options)};
  }
  readSafety(line.options, plan);
  for (engine::Request& request : plan.requests)
    request.confirmEach = plan.confirm && request.operation != engine::kNone;
  if (line.options.passwordFile) {
    plan.passwordFile = *line.options.passwordFile;
    PasswordFile read = passwordsFrom(plan.passwordFile);
    plan.passwords = std::move(read.passwords);
    plan.othersMayReadPasswords = read.othersMayRead;
  }
  plan.encoding = encodingFrom(line.options);
  plan.progress = progressFrom(line.options);
  plan.report = line.options.report;
  plan.overwriteReport = line.options.overwriteReport;
  if (plan.overwriteReport && !plan.report)
    throw UsageError("--overwrite-report goes with --report; name the file there.");
  plan.strict = line.options.strict;
  plan.json = line.options.json;
  plan.quiet = line.options.quiet;
  plan.looksElsewhere = !plan.quiet || plan.json || plan.strict || plan.report;
  plan.filesFrom = line.options.filesFrom;
  plan.nullEnded = line.options.null;
  plan.selection = selectionFrom(line.options, std::move(paths));
  plan.jobs = jobsFrom(line.options, plan.selection.several() || plan.filesFrom);
  readSlice(line.options, plan);
  plan.command = commandFrom(line.words);
  return plan;
}

}  // namespace pluvo::cli
