#include "store/opener.h"

#include "errors/fault.h"
#include "errors/text.h"
#include "word/faults.h"

#include <utility>

namespace pluvo::store {

using files::DocumentError;
using files::Problem;

namespace {

errors::Fault faultOf(std::int32_t number, const std::string& path, const DocumentError& error) {
  const std::string name = path.substr(path.rfind('/') + 1);
  return {number, errors::nameText(name) + u": " + errors::utf16(error.what())};
}

std::int32_t openingFault(Problem problem) {
  if (problem == Problem::password || problem == Problem::protection) return word::kOpenPasswordWrong;
  if (problem == Problem::io) return word::kFileNotFound;
  return word::kFileCorrupted;
}

std::int32_t savingFault(Problem problem) {
  const bool mayNot = problem == Problem::readOnly || problem == Problem::locked;
  return mayNot ? word::kFileReadOnly : word::kCannotSave;
}

}  // namespace

StoredFile::StoredFile(std::unique_ptr<StoredDocument> stored, SaveAsChooser chooser, Running running)
    : stored_(std::move(stored)),
      chooser_(std::move(chooser)),
      running_(std::move(running)),
      obstacle_(stored_->obstacle()) {}

void StoredFile::save() {
  SaveOptions options;
  if (obstacle_) {
    if (chooser_) options.otherPath = chooser_(stored_->path());
    if (!options.otherPath) throw faultOf(word::kFileReadOnly, stored_->path(), *obstacle_);
  }
  run(options.otherPath.value_or(stored_->path()), [&] { stored_->save(options); });
}

void StoredFile::saveAs(const std::string& path) {
  run(path, [&] { stored_->saveAs(path); });
  stored_->document()->moveTo(path);
  obstacle_.reset();
}

void StoredFile::run(const std::string& path, const std::function<void()>& work) const {
  try {
    running_(work);
  } catch (const DocumentError& error) {
    throw faultOf(savingFault(error.problem()), path, error);
  }
}

StoreOpener::StoreOpener(Store store, SaveAsChooser chooser, Running running)
    : store_(std::move(store)), chooser_(std::move(chooser)), running_(std::move(running)) {}

memory::OpenedFile StoreOpener::open(const std::string& path) {
  try {
    std::unique_ptr<StoredDocument> stored;
    running_([&] { stored = store_.open(path, {.temporaryFiles = true, .protectedDocuments = true}); });
    const auto document = stored->document();
    return {document, std::make_shared<StoredFile>(std::move(stored), chooser_, running_)};
  } catch (const DocumentError& error) {
    throw faultOf(openingFault(error.problem()), path, error);
  }
}

}  // namespace pluvo::store
