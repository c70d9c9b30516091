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

/// Names differ between processes and calls; that none is taken is for createNew to find out.
std::string temporaryName() {
  static std::atomic<std::uint64_t> calls = 0;
  const auto now = static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
  const std::uint64_t mixed = (now ^ (static_cast<std::uint64_t>(getpid()) << 40)) + (calls++ << 56);
  std::array<char, 32> name = {};
  std::snprintf(name.data(), name.size(), "~pluvo-%016llx.tmp", static_cast<unsigned long long>(mixed));
  return name.data();
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

/// The permissions the file may have with the owner it got.
std::uint32_t giveOwner(FileSystem& system, Handle file, const FileStatus& original) {
  const FileStatus made = system.status(file);
  if (made.owner == original.owner && made.group == original.group) return original.permissions;
  if (tryOwner(system, file, original.owner, original.group)) return original.permissions;
  const std::uint32_t permissions = original.permissions & ~kSetIdBits;
  if (made.group == original.group || tryOwner(system, file, made.owner, original.group)) return permissions;
  return (permissions & ~kGroupBits) | ((permissions & kOthersBits) << 3);
}

}  // namespace

TemporaryFile::TemporaryFile(FileSystem& system, const std::string& folderPrefix, const std::string& path)
    : TemporaryFile(system, createBeside(system, folderPrefix, path)) {}

TemporaryFile::TemporaryFile(FileSystem& system, Created created)
    : system_(system), path_(std::move(created.path)), file_(system, created.handle), named_(created.named) {}

TemporaryFile::Created TemporaryFile::createBeside(FileSystem& system, const std::string& folderPrefix,
                                                   const std::string& path) {
  const auto name = [&] { return path.empty() ? folderPrefix + temporaryName() : path; };
  try {
    const Handle handle = system.createUnnamed(folderPrefix.empty() ? "." : folderPrefix);
    return {name(), handle, false};
  } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): then it has a name from the beginning
  }
  constexpr int kMostAttempts = 100;
  for (int attempt = 1;; ++attempt) {
    std::string free = name();
    try {
      const Handle handle = system.createNew(free);
      return {std::move(free), handle, true};
    } catch (const std::system_error& failure) {
      if (failure.code().value() != EEXIST || attempt == kMostAttempts) throw;
    }
  }
}

TemporaryFile::~TemporaryFile() {
  if (!temporary_ || !named_) return;
  try {
    system_.remove(path_);
  } catch (
      const std::system_error&) {  // NOLINT(bugprone-empty-catch): the failure before this one is the news
  }
}

void TemporaryFile::takeAfter(Handle original) {
  const FileStatus status = system_.status(original);
  const std::uint32_t permissions = giveOwner(system_, handle(), status);
  system_.copyAttributes(original, handle());
  system_.setPermissions(handle(), permissions);
}

void TemporaryFile::flush() {
  // Named first: a disk without a journal of its own might not keep a name that came later.
  if (!named_) {
    system_.giveName(handle(), path_);
    named_ = true;
  }
  system_.flush(handle());
}

void TemporaryFile::finish() {
  flush();
  close();
}

void TemporaryFile::replace(const std::string& path) {
  system_.rename(path_, path);
  path_ = path;
  keep();
}

bool TemporaryFile::swap(const std::string& path) {
  try {
    system_.exchange(path_, path);
  } catch (const std::system_error&) {
    return false;
  }
  keep();
  return true;
}

void TemporaryFile::moveToFree(const std::string& path) {
  if (named_) {
    system_.renameToFree(path_, path);
  } else {
    system_.giveName(handle(), path);
    named_ = true;
  }
  path_ = path;
}

void FileOutput::write(ByteSpan bytes) {
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

void FileOutput::writeThrough(ByteSpan bytes) {
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
