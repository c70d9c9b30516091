#include "run_opener.h"

#include "base/utf.h"
#include "word/faults.h"

#include <new>
#include <utility>

namespace pluvo::cli {

using files::DocumentError;
using files::Problem;

namespace {

Problem problemOf(std::int32_t faultNumber) {
  switch (faultNumber) {
    case errors::kOutOfMemory:
      return Problem::tooLarge;
    case word::kProtectedSelection:
      return Problem::protection;
    case word::kNotAvailable:
      return Problem::unsupported;
    case word::kParameterOutOfRange:
      return Problem::encoding;
    default:
      return Problem::refused;
  }
}

}  // namespace

Failure failureFrom(const errors::Fault& fault) {
  return {problemOf(fault.number), base::utf8(fault.description)};
}

bool recordingFailure(Outcome& outcome, const std::function<void()>& work) {
  try {
    work();
    return true;
  } catch (const DocumentError& error) {
    outcome.failure = {error.problem(), error.what()};
  } catch (const errors::Fault& fault) {
    outcome.failure = failureFrom(fault);
  } catch (const std::bad_alloc&) {
    outcome.failure = {Problem::tooLarge,
                       "There is not enough memory for it; close other programs, or divide it."};
  }
  return false;
}

RunFile::RunFile(std::unique_ptr<store::StoredDocument> stored, const NamedDocument& named,
                 const Surroundings& around, Outcome& outcome)
    : stored_(std::move(stored)), named_(named), around_(around), outcome_(outcome) {
  if (around.plan.changesInPlace()) obstacle_ = stored_->obstacle();
}

void RunFile::save() {
  if (outcome_.failure || around_.plan.dryRun) return;
  const bool saved = recordingFailure(outcome_, [&] {
    store::SaveOptions options;
    options.backupSuffix = around_.plan.backupSuffix;
    if (around_.plan.outputFolder) {
      options.otherRoot = *around_.plan.outputFolder;
      options.otherPath = options.otherRoot + "/" + named_.place;
    }
    if (around_.journal != nullptr)
      options.beforeReplacing = [journal = around_.journal](const auto& replacement) {
        return journal->keep(replacement);
      };
    version_ = stored_->beginSave(options);
    if (version_) outcome_.savedAs = options.otherPath.value_or("");
  });
  if (!saved) throw errors::Fault(word::kCannotSave, base::utf16(outcome_.failure->message));
}

memory::OpenedFile RunOpener::open(const std::string& path) {
  const bool opened = recordingFailure(outcome_, [&] {
    file_ = std::make_shared<RunFile>(
        around_.store.open(path, {.protectedDocuments = !around_.plan.passwords.passwords.empty(),
                                  .forReading = around_.plan.findsOnly(),
                                  .hint = {.encoding = around_.plan.encoding},
                                  .folderLength = named_.folderLength}),
        named_, around_, outcome_);
    outcome_.encoding = file_->stored().encoding();
    outcome_.guessed = file_->stored().isEncodingGuessed();
  });
  // The driver passes over such a document without a word; the outcome has it all.
  if (!opened) throw errors::Fault(word::kCommandFailed, base::utf16(outcome_.failure->message));
  return {file_->stored().document(), file_};
}

}  // namespace pluvo::cli
