#include "files/saving.h"
#include "new_version.h"
#include "paths.h"

#include <cerrno>
#include <system_error>

namespace pluvo::files {

namespace {

DocumentError nameTaken() {
  return {Problem::io,
          "There is a file of this name where the new version should go; it was left as it is. Remove it or "
          "choose another folder."};
}

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
  Creating(FileSystem& system, std::string path, std::string original, std::optional<Stamp> opened,
           const NewVersion& version)
      : system_(system),
        path_(std::move(path)),
        original_(std::move(original)),
        opened_(opened),
        file_(system, std::string(folderPrefixOf(path_))),
        requireRight_(version.check) {
    const std::optional<OpenFile> pattern =
        opened_ ? std::optional<OpenFile>(std::in_place, system_, system_.openToRead(original_))
                : openIfThere(system_, original_);
    writeVersion(system_, file_, pattern ? &*pattern : nullptr, version);
  }

  void check() override {
    saving([&] { stamp_ = checkVersion(system_, file_.handle(), requireRight_); });
    requireRight_ = nullptr;
  }

  Saved finish() override {
    if (requireRight_) check();
    return saving([&] {
      // Its name comes when it is whole, and goes to the disk by itself: a program killed here leaves
      // nothing.
      system_.flush(file_.handle());
      if (opened_) requireSameStamp(system_.statusAt(original_), *opened_);
      moveToPath();
      file_.finish();
      file_.keep();
      flushFolder(system_, path_);
      return Saved{stamp_, {}};
    });
  }

 private:
  void moveToPath() {
    try {
      file_.moveToFree(path_);
    } catch (const std::system_error& failure) {
      if (failure.code().value() == EEXIST) throw nameTaken();
      throw;
    }
  }

  FileSystem& system_;
  const std::string path_;
  const std::string original_;
  const std::optional<Stamp> opened_;
  TemporaryFile file_;
  std::function<void(const Bytes&)> requireRight_;  ///< until it was asked
  Stamp stamp_;
};

}  // namespace

std::unique_ptr<Pending> beginCreatingFile(FileSystem& system, const std::string& path,
                                           const std::string& original, const Stamp& opened,
                                           const NewVersion& version) {
  return saving([&]() -> std::unique_ptr<Pending> {
    if (system.exists(path)) throw nameTaken();
    return std::make_unique<Creating>(system, path, original, opened, version);
  });
}

Saved writeElsewhere(FileSystem& system, const std::string& path, const std::string& original,
                     const NewVersion& version) {
  return saving([&] {
    if (system.exists(path)) return replaceFile(system, path, system.statusAt(path).stamp, version);
    return Creating(system, path, original, std::nullopt, version).finish();
  });
}

}  // namespace pluvo::files
