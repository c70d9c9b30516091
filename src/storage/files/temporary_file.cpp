#include "temporary_file.h"

#include "wording.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <system_error>

namespace pluvo::files {

namespace {

constexpr std::string_view kBefore = "~pluvo-";
constexpr std::string_view kAfter = ".tmp";
constexpr std::size_t kDigits = 16;

/// Names differ between processes and calls; that none is taken is for createNew to find out.
std::string temporaryName() {
  static std::atomic<std::uint64_t> calls = 0;
  const auto now = static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
  const std::uint64_t mixed = (now ^ (static_cast<std::uint64_t>(getpid()) << 40)) + (calls++ << 56);
  std::array<char, kDigits + 1> digits = {};
  std::snprintf(digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(mixed));
  return std::string(kBefore).append(digits.data()).append(kAfter);
}

constexpr std::uint32_t kGroupBits = 0070;
constexpr std::uint32_t kOthersBits = 0007;
constexpr std::uint32_t kSetIdBits = 06000;

bool tryOwner(FileSystem& system, Handle file, std::uint32_t owner, std::uint32_t group) {
  try {
    system.setOwner(file, owner, group);
    return true;
  } catch (const std::system_error&) {
    return false;
  }
}

NotKept giveOwner(FileSystem& system, Handle file, const FileStatus& as) {
  const FileStatus made = system.status(file);
  if (made.owner == as.owner && made.group == as.group) return {};
  if (tryOwner(system, file, as.owner, as.group)) return {};
  const bool hasGroup = made.group == as.group || tryOwner(system, file, made.owner, as.group);
  return {made.owner != as.owner, !hasGroup};
}

}  // namespace

bool isTemporaryName(std::string_view name) {
  return name.size() == kBefore.size() + kDigits + kAfter.size() && name.starts_with(kBefore) &&
         name.ends_with(kAfter) &&
         name.substr(kBefore.size(), kDigits).find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

TemporaryFile::TemporaryFile(FileSystem& system, const OpenFolder& folder, const std::string& name)
    : TemporaryFile(system, folder, createIn(system, folder, name)) {}

TemporaryFile::TemporaryFile(FileSystem& system, const OpenFolder& folder, Created created)
    : system_(system),
      folder_(folder),
      name_(std::move(created.name)),
      file_(system, created.handle),
      named_(created.named) {}

TemporaryFile::Created TemporaryFile::createIn(FileSystem& system, const OpenFolder& folder,
                                               const std::string& name) {
  const auto freeName = [&] { return name.empty() ? temporaryName() : name; };
  try {
    const Handle handle = system.createUnnamed(folder.itself());
    return {freeName(), handle, false};
  } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): then it has a name from the beginning
  }
  constexpr int kMostAttempts = 100;
  for (int attempt = 1;; ++attempt) {
    std::string free = freeName();
    try {
      const Handle handle = system.createNew(folder.at(free));
      return {std::move(free), handle, true};
    } catch (const std::system_error& failure) {
      if (failure.code().value() != EEXIST || attempt == kMostAttempts) throw;
    }
  }
}

TemporaryFile::~TemporaryFile() {
  if (!temporary_ || !named_) return;
  try {
    system_.remove(place());
  } catch (
      const std::system_error&) {  // NOLINT(bugprone-empty-catch): the failure before this one is the news
  }
}

NotKept TemporaryFile::takeAfter(Handle original, const FileStatus& as) {
  const NotKept notKept = giveOwner(system_, handle(), as);
  system_.copyAttributes(original, handle());
  std::uint32_t permissions = as.permissions & ~kSetIdBits;
  if (notKept.group) permissions = (permissions & ~kGroupBits) | ((permissions & kOthersBits) << 3);
  system_.setPermissions(handle(), permissions);
  return notKept;
}

void TemporaryFile::flush() {
  // Named first: a disk without a journal of its own might not keep a name that came later.
  if (!named_) {
    system_.giveName(handle(), place());
    named_ = true;
  }
  system_.flush(handle());
}

void TemporaryFile::finish() {
  flush();
  close();
}

void TemporaryFile::replace(const std::string& name) {
  system_.rename(place(), folder_.at(name));
  name_ = name;
  keep();
}

bool TemporaryFile::swap(const std::string& name) {
  try {
    system_.exchange(place(), folder_.at(name));
  } catch (const std::system_error&) {
    return false;
  }
  keep();
  return true;
}

void TemporaryFile::moveToFree(const std::string& name) {
  const Place free = folder_.at(name);
  if (named_) {
    system_.renameToFree(place(), free);
  } else {
    system_.giveName(handle(), free);
    named_ = true;
  }
  name_ = name;
}

void FileOutput::write(base::ByteSpan bytes) {
  constexpr std::size_t kGathered = std::size_t{256} * 1024;
  if (gathered_.size() + bytes.size() > kGathered) finish();
  if (bytes.size() >= kGathered) return writeThrough(bytes);
  if (gathered_.capacity() == 0) gathered_.reserve(kGathered);
  gathered_.insert(gathered_.end(), bytes.begin(), bytes.end());
}

void FileOutput::finish() {
  writeThrough(gathered_);
  gathered_.clear();
}

void FileOutput::startWriting() {
  constexpr std::size_t kWorthIt = std::size_t{1} * 1024 * 1024;
  if (unstarted_ < kWorthIt) return;
  system_.startWriting(file_);
  unstarted_ = 0;
}

void FileOutput::writeThrough(base::ByteSpan bytes) {
  unstarted_ += bytes.size();
  try {
    while (!bytes.empty()) bytes = bytes.subspan(system_.write(file_, bytes));
    constexpr std::size_t kStartedAtOnce = std::size_t{8} * 1024 * 1024;
    if (unstarted_ >= kStartedAtOnce) startWriting();
  } catch (const std::system_error& failure) {
    throw savingFailed(failure);
  }
}

}  // namespace pluvo::files
