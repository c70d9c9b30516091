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

class StoredFile : public memory::DocumentFile {
 public:
  StoredFile(std::unique_ptr<StoredDocument> stored, SaveAsChooser chooser)
      : stored_(std::move(stored)), chooser_(std::move(chooser)), obstacle_(stored_->obstacle()) {}

  bool readOnly() const override { return obstacle_.has_value(); }

  void save() override {
    SaveOptions options;
    if (obstacle_) {
      if (chooser_) options.otherPath = chooser_(stored_->path());
      if (!options.otherPath) throw faultOf(word::kFileReadOnly, stored_->path(), *obstacle_);
    }
    try {
      stored_->save(options);
    } catch (const DocumentError& error) {
      throw faultOf(savingFault(error.problem()), options.otherPath.value_or(stored_->path()), error);
    }
  }

 private:
  std::unique_ptr<StoredDocument> stored_;
  SaveAsChooser chooser_;
  /// As it was at opening.
  std::optional<DocumentError> obstacle_;
};

}  // namespace

StoreOpener::StoreOpener(Store store, SaveAsChooser chooser)
    : store_(std::move(store)), chooser_(std::move(chooser)) {}

memory::OpenedFile StoreOpener::open(const std::string& path) {
  try {
    auto stored = store_.open(path, {.temporaryFiles = true, .protectedDocuments = true});
    const auto document = stored->document();
    return {document, std::make_shared<StoredFile>(std::move(stored), chooser_)};
  } catch (const DocumentError& error) {
    throw faultOf(openingFault(error.problem()), path, error);
  }
}

}  // namespace pluvo::store
