#pragma once

#include "journal/named_runs.h"
#include "run_folder.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace pluvo::journal {

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
