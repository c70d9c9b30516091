#include "store/opener.h"

#include "base/names.h"
#include "base/utf.h"
#include "errors/fault.h"
#include "word/faults.h"

#include <utility>

namespace pluvo::store {

using errors::DocumentError;
using errors::Problem;

namespace {

/// Of the user who has the document open.
constexpr const char* kWhatToDo = " Save the text under another name, or close it and open the file again.";

/// Of a run over files that no window shows.
constexpr const char* kChooseThere = " Open it by itself, and choose its encoding there.";

std::string withoutAdvice(const DocumentError& error) {
  return error.happened().empty() ? error.what() : error.happened();
}

errors::Fault faultOf(std::int32_t number, const std::string& path, const std::string& trouble) {
  const std::string name = path.substr(path.rfind('/') + 1);
  return {number, base::nameText(name) + u": " + base::utf16(trouble)};
}

bool mayNot(Problem problem) {
  return problem == Problem::readOnly || problem == Problem::locked || problem == Problem::protection;
}

}  // namespace

std::int32_t openingFault(Problem problem) {
  // Not "wrong password": no password was asked for, so asking again would end the same.
  if (problem == Problem::password) return word::kNotAvailable;
  if (problem == Problem::io) return word::kFileNotFound;
  return word::kFileCorrupted;
}

std::int32_t savingFault(Problem problem) {
  return mayNot(problem) ? word::kFileReadOnly : word::kCannotSave;
}

StoredFile::StoredFile(std::shared_ptr<StoredDocument> stored, SaveAsChooser chooser, Running running)
    : stored_(std::move(stored)), chooser_(std::move(chooser)), running_(std::move(running)) {}

std::optional<errors::Fault> StoredFile::obstacle() const {
  std::optional<DocumentError> obstacle;
  running_([&] { obstacle = stored_->obstacle(); });  // a busy disk takes its time for this, too
  if (!obstacle || !mayNot(obstacle->problem())) return std::nullopt;
  return faultOf(word::kFileReadOnly, stored_->path(), obstacle->what());
}

void StoredFile::save() {
  SaveOptions options;
  if (const auto mayNotBeWritten = obstacle()) {
    if (chooser_) options.otherPath = chooser_(stored_->path());
    if (!options.otherPath) throw errors::Fault(*mayNotBeWritten);
  }
  run(options.otherPath.value_or(stored_->path()), [&] { notKept_ = stored_->save(options).notKept; });
}

void StoredFile::saveAs(const std::string& path) {
  run(path, [&] { stored_->saveAs(path); });
  notKept_ = {};  // a file under another name is the user's
  stored_->document()->moveTo(path);
}

void StoredFile::run(const std::string& path, const std::function<void()>& work) const {
  try {
    running_(work);
  } catch (const DocumentError& error) {
    const std::string trouble = error.happened().empty() ? error.what() : error.happened() + kWhatToDo;
    throw faultOf(savingFault(error.problem()), path, trouble);
  }
}

StoreOpener::StoreOpener(Store store, SaveAsChooser chooser, Running running)
    : store_(std::move(store)), chooser_(std::move(chooser)), running_(std::move(running)) {}

std::unique_ptr<StoredDocument> StoreOpener::opened(const std::string& path, const std::string& encoding,
                                                    const formats::KeyFinder& findKey) {
  std::unique_ptr<StoredDocument> stored;
  running_([&] {
    stored = store_.open(
        path,
        {.temporaryFiles = true,
         .protectedDocuments = true,
         .lockedForGood = true,
         .hint = {
             .encoding = encoding, .certain = !encoding.empty(), .findKey = findKey, .allStories = true}});
  });
  return stored;
}

std::unique_ptr<StoredDocument> StoreOpener::openBy(const base::SecretText& password,
                                                    const std::string& path) {
  bool isWrong = false;
  try {
    auto stored = opened(path, readAs_, [&](const formats::Lock& lock) {
      auto key = lock.keyBy(password);
      isWrong = key == nullptr;
      return key;
    });
    passwords_->add(password);
    return stored;
  } catch (const DocumentError&) {
    if (isWrong) throw faultOf(word::kOpenPasswordWrong, path, "The password is incorrect.");
    throw;
  }
}

std::unique_ptr<StoredDocument> StoreOpener::openStored(const std::string& path) {
  std::string encoding = readAs_;
  bool isLocked = false;
  for (;;) {
    try {
      return opened(path, encoding, [&](const formats::Lock& lock) {
        auto key = passwords_->keyOf(lock);
        isLocked = key == nullptr;
        return key;
      });
    } catch (const DocumentError& error) {
      if (isLocked && passwordChooser_) {
        const auto password = passwordChooser_(path, PasswordFor::opening);
        if (!password) throw faultOf(word::kCommandFailed, path, "No password was given.");
        return openBy(*password, path);
      }
      if (error.problem() != Problem::encoding || !encodingChooser_) throw;
      const auto chosen = encodingChooser_(path, withoutAdvice(error));
      if (!chosen) throw;
      encoding = *chosen;
    }
  }
}

/// As a word processor does when a document is opened.
void StoreOpener::askAboutChanging(StoredDocument& stored) const {
  if (stored.reserved() == Reserved::recommended) {
    if (readingChooser_ && readingChooser_(stored.path())) stored.keepToReading();
    return;
  }
  const auto releases = [&](const base::SecretText& password) {
    bool isRight = false;
    running_([&] { isRight = stored.release(password.text()); });
    return isRight;
  };
  if (stored.reserved() == Reserved::no || !passwordChooser_ ||
      passwords_->fit(stored.hashesForChanging(), releases))
    return;
  const auto password = passwordChooser_(stored.path(), PasswordFor::changing);
  if (!password) return;
  if (!releases(*password))
    throw faultOf(word::kOpenPasswordWrong, stored.path(), "The password for changing it is incorrect.");
  passwords_->add(*password);
}

memory::OpenedFile StoreOpener::open(const std::string& path) {
  try {
    auto stored = openStored(path);
    askAboutChanging(*stored);
    const auto document = stored->document();
    return {document, std::make_shared<StoredFile>(std::move(stored), chooser_, running_)};
  } catch (const DocumentError& error) {
    const bool untold = error.problem() == Problem::encoding;
    throw faultOf(openingFault(error.problem()), path,
                  untold ? withoutAdvice(error) + kChooseThere : error.what());
  }
}

}  // namespace pluvo::store
