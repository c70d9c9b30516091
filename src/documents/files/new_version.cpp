#include "new_version.h"

#include "files/reading.h"
#include "paths.h"

namespace pluvo::files {

void requireSameStamp(const FileStatus& now, const Stamp& opened) {
  if (now.stamp != opened)
    throw DocumentError(Problem::changed,
                        "Another program changed the file while it was open here; it was left as it is.",
                        "Run this again.");
}

Stamp writeVersion(FileSystem& system, TemporaryFile& file, const OpenFile* original,
                   const NewVersion& version) {
  FileOutput output(system, file.handle());
  version.write(output);
  output.finish();
  if (original != nullptr) file.takeAfter(original->handle());
  if (version.as) system.setPermissions(file.handle(), version.as->permissions);
  // A time that was set stays; of a disk elsewhere the flush might set another.
  const Stamp modified = version.as ? version.as->stamp : system.status(file.handle()).stamp;
  system.setModified(file.handle(), modified.modifiedSeconds, modified.modifiedNanoseconds);
  output.startWriting();
  const FileContent written = readFile(system, file.handle());
  version.check(written.bytes);
  return written.stamp;
}

void flushFolder(FileSystem& system, const std::string& file) {
  try {
    const OpenFile folder(system, system.openFolder(folderOf(file)));
    system.flush(folder.handle());
  } catch (const std::system_error& failure) {
    throw DocumentError(Problem::io,
                        "The new version is in place, but the disk did not confirm that it would outlast a "
                        "power failure (" +
                            failure.code().message() + "); check the disk.");
  }
}

}  // namespace pluvo::files
