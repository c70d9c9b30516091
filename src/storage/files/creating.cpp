#include "files/saving.h"
#include "located.h"
#include "new_version.h"

#include <cerrno>
#include <system_error>

namespace pluvo::files {

namespace {

errors::DocumentError nameTaken() {
  return {errors::Problem::io,
          "There is a file of this name where the new version should go; it was left as it is. Remove it or "
          "choose another folder."};
}

errors::DocumentError cannotMake(const std::string& folder, const std::system_error& failure) {
  return {errors::Problem::io,
          "The folder \"" + folder + "\" cannot be made (" + failure.code().message() + ")."};
}

errors::DocumentError cannotEnter(const std::string& folder, const std::system_error& failure) {
  if (failure.code().value() != ENOTDIR && failure.code().value() != ELOOP)
    return {errors::Problem::io, "The folder \"" + folder + "\" cannot be entered (" +
                                     failure.code().message() +
                                     "); allow it in its permissions, or choose another folder."};
  return {errors::Problem::io,
          "\"" + folder +
              "\" is a link or a file where a folder should be, so nothing was written there; "
              "remove it, or choose another folder."};
}

constexpr std::uint32_t kOwnerWrites = 0200;

std::optional<OpenFile> openIfThere(FileSystem& system, const std::string& path) {
  try {
    return std::optional<OpenFile>(std::in_place, system, system.openToRead(path));
  } catch (const std::system_error&) {
    return std::nullopt;
  }
}

/// A new file under a name that must be free. Without a stamp the original may have changed or gone.
class Creating final : public Pending {
 public:
  Creating(FileSystem& system, Located place, std::string original, std::optional<Stamp> opened,
           const NewVersion& version)
      : system_(system),
        place_(std::move(place)),
        original_(std::move(original)),
        opened_(opened),
        folderFlush_(flushOf(system, place_.folder, version)),
        file_(system, place_.folder) {
    const std::optional<OpenFile> pattern =
        opened_ ? std::optional<OpenFile>(std::in_place, system_, system_.openToRead(original_))
                : openIfThere(system_, original_);
    std::optional<Original> like;
    if (pattern) like = Original{pattern->handle(), system_.status(pattern->handle())};
    if (opened_) requireSameStamp(like->status, *opened_);
    // Who saves under another name goes on with that file, though the original may only be read.
    if (like && !opened_) like->status.permissions |= kOwnerWrites;
    writeVersion(system_, file_, like, version);
    stamp_ = checkVersion(system_, file_.handle(), version.check);
  }

  /// Its name comes when it is whole, and goes to the disk by itself: a program killed here leaves nothing.
  void flush() override {
    saving([&] { system_.flush(file_.handle()); });
  }

  void putInPlace() override {
    saving([&] {
      if (opened_) requireSameStamp(system_.statusAt(original_), *opened_);
      takeName();
      file_.finish();
      file_.keep();
      asked_ = folderFlush_->ask();
    });
  }

  Saved settle() override {
    flushFolder(system_, place_.folder, *folderFlush_, asked_);
    return {stamp_, {}};
  }

 private:
  void takeName() {
    try {
      file_.moveToFree(place_.name);
    } catch (const std::system_error& failure) {
      if (failure.code().value() == EEXIST) throw nameTaken();
      throw;
    }
  }

  FileSystem& system_;
  const Located place_;
  const std::string original_;
  const std::optional<Stamp> opened_;
  const std::shared_ptr<SharedFlush> folderFlush_;
  std::uint64_t asked_ = 0;
  TemporaryFile file_;
  Stamp stamp_;
};

/// The folder of the path, of which all below the root is made where it is missing.
OpenFolder folderBelow(FileSystem& system, const std::string& root, const std::string& path) {
  OpenFolder folder(system, root);
  std::size_t from = root.size() + 1;
  for (std::size_t to = 0; (to = path.find('/', from)) != std::string::npos; from = to + 1) {
    const Place next = folder.at(path.substr(from, to - from));
    if (next.name.empty()) continue;
    try {
      if (!system.exists(next)) system.createFolder(next);
    } catch (const std::system_error& failure) {
      // Another job was quicker.
      if (failure.code().value() != EEXIST) throw cannotMake(path.substr(0, to), failure);
    }
    try {
      folder = OpenFolder(system, next);
    } catch (const std::system_error& failure) {
      throw cannotEnter(path.substr(0, to), failure);
    }
  }
  return folder;
}

}  // namespace

std::unique_ptr<Pending> beginCreatingFile(FileSystem& system, const std::string& path,
                                           const std::string& original, const Stamp& opened,
                                           const NewVersion& version, const std::string& root) {
  return saving([&]() -> std::unique_ptr<Pending> {
    Located place = root.empty() ? Located(system, path) : Located(path, folderBelow(system, root, path));
    if (system.exists(place.place())) throw nameTaken();
    return std::make_unique<Creating>(system, std::move(place), original, opened, version);
  });
}

Saved writeElsewhere(FileSystem& system, const std::string& path, const std::string& original,
                     const NewVersion& version) {
  return saving([&] {
    if (system.exists(path)) return replaceFile(system, path, system.statusAt(path).stamp, version);
    return Creating(system, Located(system, path), original, std::nullopt, version).finish();
  });
}

}  // namespace pluvo::files
