#include "run_folder.h"

#include "files/reading.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <tuple>

namespace pluvo::journal {

std::string pathIn(const std::string& folder, const std::string& name) {
  std::string path = folder;
  return path.append("/").append(name);
}

std::string journalIn(const std::string& run) { return run + "/journal"; }
std::string lockIn(const std::string& run) { return run + "/lock"; }
std::string originalIn(const std::string& run, std::uint64_t number) {
  return run + "/" + std::to_string(number);
}

std::vector<std::string> runNames(files::FileSystem& system, const std::string& folder) {
  try {
    std::vector<std::string> names = system.names(folder);
    // Of one second by their numbers, of which more digits are the greater number.
    const auto orderOf = [](const std::string& name) {
      const std::size_t number = std::min(name.rfind('-'), name.size());
      return std::tuple(name.substr(0, number), name.size(), name);
    };
    std::ranges::sort(names, {}, orderOf);
    return names;
  } catch (const std::system_error& failure) {
    if (failure.code().value() == ENOENT) return {};
    throw;
  }
}

std::optional<std::vector<Record>> recordsIn(files::FileSystem& system, const std::string& run) {
  try {
    if (!system.exists(journalIn(run))) return std::vector<Record>();
    const files::FileContent content = files::readFile(system, journalIn(run));
    const files::ByteSpan bytes = content.bytes.view;
    return recordsOf({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  } catch (const files::DocumentError&) {
    return std::nullopt;
  } catch (const std::system_error&) {
    return std::nullopt;
  }
}

std::unique_ptr<files::OpenFile> lockRun(files::FileSystem& system, const std::string& run) {
  try {
    auto lock = std::make_unique<files::OpenFile>(system, system.openToAppend(lockIn(run)));
    const bool isHeld = system.tryLock(lock->handle()) && system.status(lock->handle()).names > 0;
    return isHeld ? std::move(lock) : nullptr;
  } catch (const std::system_error& failure) {
    if (failure.code().value() == ENOENT) return nullptr;
    throw;
  }
}

bool isVersion(const files::Stamp& found, const files::Stamp& version) {
  return found.size == version.size && found.modifiedSeconds == version.modifiedSeconds &&
         found.modifiedNanoseconds == version.modifiedNanoseconds;
}

bool isFileOf(const files::Stamp& found, const files::Stamp& version) {
  return found.inode == version.inode && isVersion(found, version);
}

bool isOriginal(const files::Stamp& found, const Record& kept, const files::Stamp& document) {
  const files::Stamp& before = kept.before.stamp;
  return found.device != document.device ? found.size == before.size : isVersion(found, before);
}

void clearBeside(files::FileSystem& system, const std::string& run, const Record& kept) {
  try {
    if (!system.exists(kept.beside)) return;
    const std::string original = originalIn(run, kept.number);
    const files::Stamp found = system.statusAt(kept.beside).stamp;
    const bool isBefore = isVersion(found, kept.before.stamp);
    // Of a version, and of an original that was to be copied into the folder, there may be a part.
    const bool isNew = isFileOf(found, kept.after) ||
                       (!isBefore && (found.inode == kept.after.inode || isVersion(found, kept.after)));
    const bool hasOriginal =
        system.exists(original) && isOriginal(system.statusAt(original).stamp, kept, found);
    if (hasOriginal || isNew) {
      system.remove(kept.beside);
    } else if (isBefore) {
      system.rename(kept.beside, original);
    }
  } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): it is looked for there, too
  }
}

void clearUp(files::FileSystem& system, const std::string& run, const std::vector<Record>& kept) {
  if (!system.exists(lockIn(run))) return;
  const auto lock = lockRun(system, run);
  if (lock == nullptr) return;
  for (const Record& record : kept) clearBeside(system, run, record);
  removeIfPossible(system, lockIn(run));
}

void removeIfPossible(files::FileSystem& system, const std::string& path) {
  try {
    system.remove(path);
  } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): see the header
  }
}

void removeRun(files::FileSystem& system, const std::string& run) {
  bool journal = false;
  for (const std::string& name : system.names(run)) {
    const std::string path = pathIn(run, name);
    if (path == journalIn(run)) {
      journal = true;
    } else if (path != lockIn(run)) {
      system.remove(path);
    }
  }
  if (journal) system.remove(journalIn(run));
  if (system.exists(lockIn(run))) system.remove(lockIn(run));
  system.removeFolder(run);
}

void makeFolders(files::FileSystem& system, const std::string& folder) {
  for (std::size_t slash = 0; slash != std::string::npos;) {
    slash = folder.find('/', slash + 1);
    const std::string part = folder.substr(0, slash);
    try {
      if (!system.exists(part)) system.createFolder(part);
    } catch (const std::system_error& failure) {
      // Another program made it at the same moment.
      if (failure.code().value() != EEXIST) throw;
    }
  }
}

void flushNames(files::FileSystem& system, const std::string& folder) {
  const files::OpenFile open(system, system.openFolder(folder));
  system.flush(open.handle());
}

files::DocumentError journalFailed(const std::system_error& failure, const std::string& folder) {
  const bool isFull = failure.code().value() == ENOSPC || failure.code().value() == EDQUOT;
  return {files::Problem::io, "The originals for \"pluvo undo\" cannot be kept in \"" + folder + "\" (" +
                                  failure.code().message() + "), so nothing was changed; " +
                                  (isFull ? "make room there" : "make it a folder that you may write") +
                                  ", or add --no-journal to change documents without a way back."};
}

}  // namespace pluvo::journal
