#pragma once

#include "document_run.h"
#include "errors/fault.h"
#include "memory/opener.h"

#include <memory>
#include <optional>
#include <string>

namespace pluvo::cli {

/// The file of a document in a run. Whether and where it is saved is the plan's to say; what goes wrong is
/// kept in the outcome with its code, which a fault has no place for.
class RunFile final : public memory::DocumentFile {
 public:
  RunFile(std::unique_ptr<store::StoredDocument> stored, const NamedDocument& named,
          const Surroundings& around, Outcome& outcome);

  bool readOnly() const override { return obstacle_.has_value(); }
  /// Begins to. Saves nothing of a document in which something failed, and nothing in a dry run.
  void save() override;

  /// Why it may not be replaced, where it would be.
  const std::optional<files::DocumentError>& obstacle() const { return obstacle_; }
  const store::StoredDocument& stored() const { return *stored_; }
  /// What save began; null where nothing is to be saved.
  std::unique_ptr<files::Pending> takeVersion() { return std::move(version_); }

 private:
  std::unique_ptr<store::StoredDocument> stored_;
  const NamedDocument& named_;
  const Surroundings& around_;
  Outcome& outcome_;
  std::optional<files::DocumentError> obstacle_;
  std::unique_ptr<files::Pending> version_;
};

/// Opens the one document of a run's step.
class RunOpener final : public memory::DocumentOpener {
 public:
  RunOpener(const NamedDocument& named, const Surroundings& around, Outcome& outcome)
      : named_(named), around_(around), outcome_(outcome) {}

  memory::OpenedFile open(const std::string& path) override;
  const std::shared_ptr<RunFile>& file() const { return file_; }

 private:
  const NamedDocument& named_;
  const Surroundings& around_;
  Outcome& outcome_;
  std::shared_ptr<RunFile> file_;
};

/// Does a part of the work on a document; what goes wrong becomes the outcome's failure. Whether it went
/// well.
bool recordingFailure(Outcome& outcome, const std::function<void()>& work);

/// A refusal by the word processor in the command line's terms.
Failure failureFrom(const errors::Fault& fault);

}  // namespace pluvo::cli
