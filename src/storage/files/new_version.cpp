#include "new_version.h"

#include "files/reading.h"

#include <utility>

namespace pluvo::files {

void requireSameStamp(const FileStatus& now, const Stamp& opened) {
  if (now.stamp != opened) throw changedHere();
}

errors::DocumentError changedHere() {
  return {errors::Problem::changed,
          "Another program changed the file while it was open here; it was left as it is.",
          "Run this again."};
}

namespace {

/// Later than the original where both are of one moment, so that size and time tell them apart, of whatever
/// disk. The time is set, since of a disk elsewhere a flush might set another.
void setTime(FileSystem& system, const TemporaryFile& file, const std::optional<Original>& original) {
  const auto timeOf = [](const Stamp& stamp) {
    return std::pair(stamp.modifiedSeconds, stamp.modifiedNanoseconds);
  };
  auto [seconds, nanoseconds] = timeOf(system.status(file.handle()).stamp);
  system.setModified(file.handle(), seconds, nanoseconds);
  if (!original) return;
  const auto before = timeOf(original->status.stamp);
  constexpr std::int64_t kCoarsest = 2;
  if (std::pair(seconds, nanoseconds) > before || seconds + kCoarsest < before.first) return;
  constexpr std::int64_t kLastNanosecond = 999'999'999;
  std::int64_t later = before.second < kLastNanosecond ? 0 : 1;
  nanoseconds = later == 0 ? before.second + 1 : 0;
  do {
    system.setModified(file.handle(), before.first + later, nanoseconds);
  } while (timeOf(system.status(file.handle()).stamp) <= before && later++ < kCoarsest);
}

}  // namespace

NotKept writeVersion(FileSystem& system, TemporaryFile& file, const std::optional<Original>& original,
                     const NewVersion& version) {
  FileOutput output(system, file.handle());
  version.write(output);
  output.finish();
  NotKept notKept;
  if (original) notKept = file.takeAfter(original->file, version.as ? *version.as : original->status);
  if (version.as) {
    const Stamp& modified = version.as->stamp;
    system.setModified(file.handle(), modified.modifiedSeconds, modified.modifiedNanoseconds);
  } else {
    setTime(system, file, original);
  }
  output.startWriting();
  return notKept;
}

Stamp checkVersion(FileSystem& system, Handle written, const std::function<void(const base::Bytes&)>& check) {
  const FileContent content = readFile(system, written);
  check(content.bytes);
  return content.stamp;
}

std::shared_ptr<SharedFlush> flushOf(FileSystem& system, const OpenFolder& folder,
                                     const NewVersion& version) {
  return version.folderFlushes ? version.folderFlushes->of(system, folder) : std::make_shared<SharedFlush>();
}

void flushFolder(FileSystem& system, const OpenFolder& folder, SharedFlush& shared, std::uint64_t asked) {
  try {
    shared.flush(system, folder.handle(), asked);
  } catch (const std::system_error& failure) {
    throw errors::DocumentError(
        errors::Problem::io,
        "The new version is in place, but the disk did not confirm that it would outlast a "
        "power failure (" +
            failure.code().message() + "); check the disk.");
  }
}

}  // namespace pluvo::files
