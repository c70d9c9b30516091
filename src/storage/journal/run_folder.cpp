#include "run_folder.h"

#include "files/reading.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <tuple>
#include <utility>

namespace pluvo::journal {

std::string pathIn(const std::string& folder, const std::string& name) {
  std::string path = folder;
  return path.append("/").append(name);
}

namespace {

constexpr std::uint32_t kOthersMayWrite = 0022;

bool isOwn(files::FileSystem& system, const files::FileStatus& status) {
  return status.owner == system.user() && (status.permissions & kOthersMayWrite) == 0;
}

errors::DocumentError notTrusted(const std::string& path) {
  return {errors::Problem::io,
          "\"" + path +
              "\" is a link, or belongs to another user, or other users may write there, so nothing is put "
              "there, and its contents are not relied on. Make it yours alone, or set XDG_STATE_HOME to a "
              "folder of your "
              "own (with sudo, the option -H does)."};
}

files::OpenFolder openUnlessLink(files::FileSystem& system, const files::Place& place,
                                 const std::string& path) {
  try {
    return {system, place};
  } catch (const std::system_error& failure) {
    const bool isLink = (failure.code().value() == ENOTDIR || failure.code().value() == ELOOP) &&
                        system.statusAt(place).kind == files::FileKind::link;
    if (isLink) throw notTrusted(path);
    throw;
  }
}

void makeFolder(files::FileSystem& system, const files::Place& place) {
  try {
    if (!system.exists(place)) system.createFolder(place);
  } catch (const std::system_error& failure) {
    // Another program made it at the same moment.
    if (failure.code().value() != EEXIST) throw;
  }
}

/// A folder that another user has could be exchanged for any other; the system's own are not.
void requireOwnOrSystem(files::FileSystem& system, const files::FileStatus& status, const std::string& path) {
  constexpr std::uint32_t kRoot = 0;
  if (status.owner != system.user() && status.owner != kRoot) throw notTrusted(path);
}

/// The folders that the state folder lies in, and itself.
void makeFoldersTo(files::FileSystem& system, const std::string& folder) {
  std::string above = "/";
  for (std::size_t slash = 0; slash != std::string::npos;) {
    slash = folder.find('/', slash + 1);
    const std::string part = folder.substr(0, slash);
    if (!system.exists(part)) {
      requireOwnOrSystem(system, system.statusAt(above), above);
      makeFolder(system, part);
    }
    above = part;
  }
}

/// "a/b" and "c" of "a/b/c".
std::pair<std::string, std::string> split(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return {".", path};
  return {slash == 0 ? "/" : path.substr(0, slash), path.substr(slash + 1)};
}

/// The folder that the folder of runs lies in.
OwnFolder openProgram(files::FileSystem& system, const std::string& folder, Missing missing) {
  const std::string program = split(folder).first;
  const auto [state, name] = split(program);
  if (missing == Missing::isMade) makeFoldersTo(system, state);
  const files::OpenFolder base(system, state);
  requireOwnOrSystem(system, system.status(base.handle()), state);
  if (missing == Missing::isMade) makeFolder(system, base.at(name));
  return {system, base.at(name), program};
}

}  // namespace

OwnFolder::OwnFolder(files::FileSystem& system, const files::Place& place, std::string path)
    : path_(std::move(path)), folder_(openUnlessLink(system, place, path_)) {
  const files::FileStatus status = system.status(folder_.handle());
  if (!isOwn(system, status)) throw notTrusted(path_);
  device_ = status.stamp.device;
}

OwnFolder openRuns(files::FileSystem& system, const std::string& folder, Missing missing) {
  const OwnFolder own = openProgram(system, folder, missing);
  const std::string runs = split(folder).second;
  if (missing == Missing::isMade) makeFolder(system, own.at(runs));
  return {system, own.at(runs), folder};
}

std::string folderBeside(files::FileSystem& system, const std::string& folder, bool isMade) {
  return openProgram(system, folder, isMade ? Missing::isMade : Missing::fails).path();
}

files::Handle createBeside(files::FileSystem& system, const std::string& folder, const std::string& name) {
  return system.createNew(openProgram(system, folder, Missing::isMade).at(name));
}

OwnFolder openRun(files::FileSystem& system, const OwnFolder& runs, const std::string& name) {
  return {system, runs.at(name), pathIn(runs.path(), name)};
}

std::optional<OwnFolder> openRunIfThere(files::FileSystem& system, const OwnFolder& runs,
                                        const std::string& name) {
  try {
    return openRun(system, runs, name);
  } catch (const std::system_error& failure) {
    if (failure.code().value() == ENOENT) return std::nullopt;
    throw;
  }
}

OwnFolder openAllNamed(files::FileSystem& system, const std::string& folder, Missing missing) {
  const OwnFolder own = openProgram(system, folder, missing);
  const std::string name = "named";
  if (missing == Missing::isMade) makeFolder(system, own.at(name));
  return {system, own.at(name), pathIn(own.path(), name)};
}

OwnFolder openNamed(files::FileSystem& system, const OwnFolder& named, const std::string& name,
                    Missing missing) {
  if (missing == Missing::isMade) makeFolder(system, named.at(name));
  return {system, named.at(name), pathIn(named.path(), name)};
}

bool isRunName(std::string_view name) {
  constexpr std::string_view kForm = "00000000-000000-0";
  if (name.size() < kForm.size()) return false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const bool isDigit = name[i] >= '0' && name[i] <= '9';
    if (isDigit == (i < kForm.size() && kForm[i] == '-') || (!isDigit && name[i] != '-')) return false;
  }
  return true;
}

std::vector<std::string> runNames(files::FileSystem& system, const OwnFolder& runs) {
  std::vector<std::string> names = system.names(runs.at("."));
  std::erase_if(names, [](const std::string& name) { return !isRunName(name); });
  // Of one second by their numbers, of which more digits are the greater number.
  const auto orderOf = [](std::string_view name) {
    return std::tuple(name.substr(0, name.rfind('-')), name.size(), name);
  };
  std::ranges::sort(names, {}, orderOf);
  return names;
}

std::optional<std::vector<Record>> recordsIn(files::FileSystem& system, const OwnFolder& run) {
  try {
    const files::Place journal = run.at(kJournal);
    if (!system.exists(journal)) return std::vector<Record>();
    if (!isOwn(system, system.statusAt(journal))) throw notTrusted(pathIn(run.path(), kJournal));
    try {
      const files::FileContent content = files::readFile(system, journal);
      const base::ByteSpan bytes = content.bytes.view;
      return recordsOf({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    } catch (const errors::DocumentError&) {
      return std::nullopt;
    }
  } catch (const std::system_error&) {
    return std::nullopt;
  }
}

void forEachRecordIn(files::FileSystem& system, const OwnFolder& run,
                     const std::function<void(Record)>& visit) {
  const files::Place journal = run.at(kJournal);
  try {
    if (!system.exists(journal)) return;
    if (!isOwn(system, system.statusAt(journal))) throw notTrusted(pathIn(run.path(), kJournal));
    // Others may be adding to it: the present contents are read.
    const files::OpenFile file(system, system.openToRead(journal));
    const std::uint64_t size = system.status(file.handle()).stamp.size;
    std::vector<std::uint8_t> buffer(std::size_t{1024} * 1024);
    std::string text;
    for (std::uint64_t from = 0; from < size;) {
      const std::size_t count = system.read(file.handle(), from, buffer);
      if (count == 0) break;
      from += count;
      text.append(reinterpret_cast<const char*>(buffer.data()), count);
      const std::size_t end = text.rfind('\n') + 1;
      forEachRecord(std::string_view(text).substr(0, end), visit);
      text.erase(0, end);
    }
  } catch (const std::system_error& failure) {
    throw errors::DocumentError(errors::Problem::io, "The journal \"" + pathIn(run.path(), kJournal) +
                                                         "\" cannot be read (" + failure.code().message() +
                                                         ").");
  }
}

std::unique_ptr<files::OpenFile> lockRun(files::FileSystem& system, const OwnFolder& run) {
  try {
    auto lock = std::make_unique<files::OpenFile>(system, system.openToAppend(run.at(kLock)));
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

bool isOriginal(files::FileSystem& system, const OwnFolder& run, const files::FileStatus& found,
                const Record& kept, const files::Stamp& document) {
  const files::FileStatus& before = kept.before;
  const bool isDocumentsFile =
      !kept.knowsFile() || (found.stamp.device == run.device() && found.stamp.inode == before.stamp.inode &&
                            found.owner == before.owner);
  if (found.kind != files::FileKind::regular || (!isDocumentsFile && !isOwn(system, found))) return false;
  return found.stamp.device != document.device ? found.stamp.size == before.stamp.size
                                               : isVersion(found.stamp, before.stamp);
}

bool isOriginalBeside(const OwnFolder& run, const files::FileStatus& found, const Record& kept) {
  const files::FileStatus& before = kept.before;
  const bool isDocumentsFile =
      !kept.knowsFile() || (found.stamp.inode == before.stamp.inode && found.owner == before.owner);
  return found.kind == files::FileKind::regular && found.names == 1 && isDocumentsFile &&
         found.stamp.device == run.device() && isVersion(found.stamp, before.stamp);
}

std::optional<files::OpenFolder> folderOf(files::FileSystem& system, const Record& kept) {
  try {
    return files::OpenFolder(system, split(kept.text).first);
  } catch (const std::system_error&) {
    return std::nullopt;
  }
}

void clearBeside(files::FileSystem& system, const OwnFolder& run, const Record& kept,
                 const std::optional<files::OpenFolder>& folder) {
  try {
    const files::Place original = run.at(originalName(kept.number));
    if (!folder || !system.exists(folder->at(kept.beside))) return;
    const files::Place beside = folder->at(kept.beside);
    const files::FileStatus found = system.statusAt(beside);
    if (found.kind != files::FileKind::regular) return;
    const bool isBefore = isOriginalBeside(run, found, kept);
    // Of a version, and of an original that was to be copied into the folder, there may be a part.
    const bool isNew =
        isFileOf(found.stamp, kept.after) ||
        (!isBefore && (found.stamp.inode == kept.after.inode || isVersion(found.stamp, kept.after)));
    const bool hasOriginal =
        system.exists(original) && isOriginal(system, run, system.statusAt(original), kept, found.stamp);
    if (hasOriginal || isNew) {
      system.remove(beside);
    } else if (isBefore) {
      system.rename(beside, original);
    }
  } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): it is looked for there, too
  }
}

void clearUp(files::FileSystem& system, const OwnFolder& run, const std::vector<Record>& kept) {
  if (!system.exists(run.at(kLock))) return;
  const auto lock = lockRun(system, run);
  if (lock == nullptr) return;
  for (const Record& record : kept) clearBeside(system, run, record, folderOf(system, record));
  removeIfPossible(system, run.at(kLock));
}

void removeIfPossible(files::FileSystem& system, const files::Place& place) {
  try {
    system.remove(place);
  } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): see the header
  }
}

void removeRun(files::FileSystem& system, const OwnFolder& runs, const std::string& name,
               const OwnFolder& run) {
  const auto isOriginalName = [](const std::string& file) {
    return file.find_first_not_of("0123456789") == std::string::npos;
  };
  bool journal = false;
  for (const std::string& file : system.names(run.at("."))) {
    journal |= file == kJournal;
    if (isOriginalName(file)) system.remove(run.at(file));
  }
  if (journal) system.remove(run.at(kJournal));
  if (system.exists(run.at(kLock))) system.remove(run.at(kLock));
  system.removeFolder(runs.at(name));
}

errors::DocumentError journalFailed(const std::system_error& failure, const std::string& folder) {
  const bool isFull = failure.code().value() == ENOSPC || failure.code().value() == EDQUOT;
  return {errors::Problem::io,
          "The originals for an undo cannot be kept in \"" + folder + "\" (" + failure.code().message() +
              "), so nothing was changed.",
          std::string(isFull ? "Make room there" : "Make it a folder that you may write") +
              ", or add --no-journal to change documents without a way back."};
}

}  // namespace pluvo::journal
