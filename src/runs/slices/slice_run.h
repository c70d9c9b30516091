#pragma once

#include "files/file_system.h"
#include "journal/slice_recorder.h"
#include "runs/listing.h"
#include "runs/plan.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace pluvo::runs {

/// The journal's view of a slice: documents done before, and documents done now.
class SliceRun {
 public:
  /// All of them outlive it.
  SliceRun(files::FileSystem& system, const std::vector<NamedDocument>& documents,
           journal::SliceRecorder& recorder);

  /// The earlier outcome of a document that is not to be worked on.
  std::optional<Outcome> earlier(std::size_t document) const;
  /// May be called from several threads.
  void result(std::size_t document, const Outcome& outcome);
  /// All documents were worked on.
  void end() { recorder_.end(); }

 private:
  const std::vector<NamedDocument>& documents_;
  journal::SliceRecorder& recorder_;
  std::unordered_map<std::size_t, Outcome> earlier_;
};

/// The outcome of a document as the journal has it; nothing for one that was not worked on.
std::optional<Outcome> knownOutcome(files::FileSystem& system, const journal::SliceDocument& known);

/// Begins a slice of the plan's run in the journal.
std::unique_ptr<journal::SliceRecorder> beginSlice(const Plan& plan, files::FileSystem& system,
                                                   const std::string& folder);

/// Warnings for slices on several machines about the locks of the journal in the folder, and of the
/// documents: sentences.
std::vector<std::string> lockWarnings(const Plan& plan, const std::string& folder,
                                      const std::vector<NamedDocument>& documents);

}  // namespace pluvo::runs
