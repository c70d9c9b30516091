#include "fileops/clsFileOperations.h"

#include "base/text.h"

#include <utility>

namespace pluvo::fileops {

namespace {

enum AutoCreate : std::int32_t { kAsk = 0, kCreate = 1, kNever = 2 };

constexpr int kMostFolderCreations = 2;
constexpr const char16_t* kCreateTitle = u"Create Directory";

}  // namespace

clsFileOperations::clsFileOperations(errors::Context& context, forms::MessageBoxes& boxes,
                                     FileActions& actions, std::u16string separator)
    : context_(context), boxes_(boxes), actions_(actions), separator_(std::move(separator)) {}

std::u16string clsFileOperations::asFolder(std::u16string_view folder) const {
  std::u16string text(folder);
  if (!text.empty() && !text.ends_with(separator_)) text += separator_;
  return text;
}

void clsFileOperations::Copy() {
  errors::guarded(context_, u"cfilop:17", [&] {
    const std::u16string source = sourcePath_ + sourceFile_;
    const std::u16string destination = destinationPath_ + destinationFile_;
    for (int created = 0; created < kMostFolderCreations; ++created) {
      const ErrorCode error = actions_.copy(source, destination);
      if (error == kDone) return;
      if (error != kPathNotFound) {
        failures_ = true;
        CopyFailed.raise(error, source, destination);
        return;
      }
      if (!makeDestinationFolder()) return;
    }
  });
}

/// Whether the copy is to be tried again.
bool clsFileOperations::makeDestinationFolder() {
  if (autoCreateFolders_ == kNever) failures_ = true;
  if (autoCreateFolders_ != kAsk && autoCreateFolders_ != kCreate) return false;
  if (destinationPath_.empty()) return false;
  if (autoCreateFolders_ == kAsk) {
    const forms::BoxAnswer answer =
        boxes_.show(u"The Directory " + destinationPath_ + u" does not exist.  Would you like it created?",
                    forms::Buttons::yesNo, kCreateTitle);
    if (answer != forms::BoxAnswer::yes) {
      failures_ = true;
      return false;
    }
  }
  CreateFolder();
  return true;
}

void clsFileOperations::CreateFolder() {
  errors::guarded(context_, u"cfilop:18", [&] {
    const ErrorCode error = actions_.createFolder(destinationPath_);
    if (error == kDone) return;
    failures_ = true;
    boxes_.show(u"Unable to create Directory " + destinationPath_ + u"\r\nError Code:" + base::decimal(error),
                forms::Buttons::ok, kCreateTitle);
  });
}

void clsFileOperations::DeleteFile() {
  errors::guarded(context_, u"cfilop:19", [&] { note(actions_.deleteFile(deletePath_ + deleteFileName_)); });
}

void clsFileOperations::DeleteFolder() {
  errors::guarded(context_, u"cfilop:20", [&] { note(actions_.deleteFolder(deletePath_)); });
}

void clsFileOperations::RegisterDLL(const std::u16string& library) {
  errors::guarded(context_, u"cfilop:21", [&] { runRegistration(u"/s", library); });
}

void clsFileOperations::UnRegisterDLL(const std::u16string& library) {
  errors::guarded(context_, u"cfilop:22", [&] { runRegistration(u"/u /s", library); });
}

void clsFileOperations::runRegistration(std::u16string_view options, const std::u16string& library) {
  const std::optional<std::u16string> folder = actions_.systemFolder();
  if (!folder) {
    failures_ = true;
    return;
  }
  const std::u16string target = library.empty() ? destinationPath_ + destinationFile_ : library;
  const std::u16string command =
      *folder + u"\\regsvr32.exe " + std::u16string(options) + u" \"" + target + u"\"";
  if (actions_.startHidden(command) == 0) failures_ = true;
}

}  // namespace pluvo::fileops
