#pragma once

#include "journal/named_runs.h"
#include "run_folder.h"

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace pluvo::journal {

/// "3-of-8"
std::string sliceName(std::uint32_t number, std::uint32_t slices);

/// The facts that slices share, from the run's folder; nothing where there are none.
std::optional<NamedRequest> requestIn(files::FileSystem& system, const OwnFolder& run,
                                      const std::string& name);
/// Puts it there, unless another program came first.
void putRequest(files::FileSystem& system, const OwnFolder& run, const NamedRequest& request);

/// The lock that slices share and an undo holds alone; nothing where it is held otherwise, or was removed.
std::unique_ptr<files::OpenFile> holdNamed(files::FileSystem& system, const OwnFolder& run, files::Hold hold);

/// The lock of a slice that is not going on, with this program's mark in it. Throws DocumentError (locked)
/// where it is going on, be it on another machine whose lock would not be noticed.
std::unique_ptr<files::OpenFile> holdSlice(files::FileSystem& system, const OwnFolder& slice,
                                           const std::string& what);
/// Whether some program works on it.
bool isGoing(files::FileSystem& system, const OwnFolder& slice);

std::string thisMachine();

/// The documents in a slice's journal.
class SliceProgress {
 public:
  struct Document {
    std::string key;
    std::string name;
    std::string outcome;
    std::unique_ptr<Record> intended;  ///< where the outcome is not known to have come about
    std::unique_ptr<Record> kept;      ///< of such a document
  };

  /// Throws DocumentError where the journal is another's or cannot be read.
  SliceProgress(files::FileSystem& system, const OwnFolder& slice);

  std::vector<Document>& documents() { return documents_; }
  const std::vector<Document>& documents() const { return documents_; }
  /// nullptr for one that is not known.
  const Document* find(const std::string& key) const;
  const std::vector<Attempt>& attempts() const { return attempts_; }
  bool isEnded() const { return !attempts_.empty() && attempts_.back().ended; }
  std::uint64_t nextNumber() const { return nextNumber_; }  ///< that no original has
  bool isEmpty() const { return isEmpty_; }

 private:
  void add(Record record);
  Document& of(const std::string& key);

  std::vector<Document> documents_;
  std::unordered_map<std::string, std::size_t> byKey_;
  std::vector<Attempt> attempts_;
  std::uint64_t nextNumber_ = 0;
  bool isEmpty_ = true;
};

/// Whether the new version came into the place of a document that was to be replaced.
enum class Replaced : std::uint8_t { yes, no, unknown };
Replaced isReplaced(files::FileSystem& system, const OwnFolder& slice,
                    const SliceProgress::Document& document);

}  // namespace pluvo::journal
