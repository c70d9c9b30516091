#pragma once

#include "runs/slice_report.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pluvo::runs {

/// Slices of one run, in the journal or in a file.
class SliceReport::Source {
 public:
  /// A document, its absolute path, and what became of it, if it was worked on. The slice's counts of
  /// documents are the reader's business.
  using Visit = std::function<void(SliceTold& slice, const std::string& key, const std::string& name,
                                   std::optional<Outcome>)>;
  virtual ~Source() = default;

  virtual const std::string& name() const = 0;
  virtual const std::string& request() const = 0;  ///< its digest
  virtual const std::string& command() const = 0;
  /// Visits all documents; gives the slices, in their order.
  virtual std::vector<SliceTold> read(const Visit& visit) = 0;
  /// Whether each document is in it once.
  virtual bool isOnceEach() const { return false; }
};

std::unique_ptr<SliceReport::Source> sourceInJournal(files::FileSystem& system, const std::string& folder,
                                                     const std::string& name);
/// The output of a run with --json; outputs one after the other are read, too.
std::unique_ptr<SliceReport::Source> sourceInFile(files::FileSystem& system, const std::string& path);

}  // namespace pluvo::runs
