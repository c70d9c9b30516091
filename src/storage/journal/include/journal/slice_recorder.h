#pragma once

#include "journal/journal.h"
#include "journal/named_runs.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pluvo::journal {

class SliceProgress;

/// The journal of a slice that is going on: a new attempt at a slice of a run with a name. Its originals have
/// no limit. A document is known by its absolute path without links.
class SliceRecorder final : public Recorder {
 public:
  /// Throws DocumentError. io: also where the name is that of another request. locked: the slice is going on,
  /// or the run is being taken back.
  SliceRecorder(files::FileSystem& system, std::string folder, const SliceToBegin& slice,
                const std::string& command);
  ~SliceRecorder() override;

  /// Its documents are known.
  void list(const std::vector<SliceDocument>& documents);
  /// A document's record from earlier attempts; nothing where it is to be worked on.
  std::optional<SliceDocument> earlier(const std::string& key) const;
  /// Records the outcome of a document. Throws std::system_error.
  void result(const std::string& key, const std::string& outcome);
  /// All documents have results.
  void end();

 private:
  void begin(const SliceToBegin& slice, const std::string& command);
  void removeUnrecorded();
  void findOutOfIntended();

  std::unique_ptr<SliceProgress> progress_;  ///< as earlier attempts left it
};

}  // namespace pluvo::journal
