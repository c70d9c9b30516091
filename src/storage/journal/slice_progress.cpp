#include "slice_progress.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace pluvo::journal {

SliceProgress::SliceProgress(files::FileSystem& system, const OwnFolder& slice) {
  forEachRecordIn(system, slice, [&](Record record) { add(std::move(record)); });
}

const SliceProgress::Document* SliceProgress::find(const std::string& key) const {
  const auto found = byKey_.find(key);
  return found == byKey_.end() ? nullptr : &documents_[found->second];
}

SliceProgress::Document& SliceProgress::of(const std::string& key) {
  const auto [found, isNew] = byKey_.try_emplace(key, documents_.size());
  if (isNew) documents_.push_back({key, key, {}, nullptr, nullptr});
  return documents_[found->second];
}

void SliceProgress::add(Record record) {
  using Kind = Record::Kind;
  isEmpty_ = false;
  switch (record.kind) {
    case Kind::begun:
      attempts_.push_back({record.text, record.number, record.time});
      break;
    case Kind::ended:
      if (!attempts_.empty()) attempts_.back().ended = record.time;
      break;
    case Kind::listed:
      if (!record.more.empty())
        of(record.text).name = record.more;
      else
        (void)of(record.text);
      break;
    case Kind::intended: {
      Document& document = of(record.text);
      document.outcome.clear();
      document.intended = std::make_unique<Record>(std::move(record));
      break;
    }
    case Kind::kept: {
      nextNumber_ = std::max(nextNumber_, record.number + 1);
      // Its end may be missing, so that it is of no document.
      if (const auto known = byKey_.find(record.text); known != byKey_.end())
        documents_[known->second].kept = std::make_unique<Record>(std::move(record));
      break;
    }
    case Kind::result: {
      Document& document = of(record.text);
      document.outcome = std::move(record.more);
      document.intended = nullptr;
      document.kept = nullptr;
      break;
    }
    case Kind::takenBack: {
      const auto known = byKey_.find(record.text);
      if (known == byKey_.end()) break;
      Document& document = documents_[known->second];
      document.outcome.clear();
      document.intended = nullptr;
      document.kept = nullptr;
      break;
    }
    case Kind::command:
    case Kind::others:
    case Kind::notKept:
      break;
  }
}

Replaced isReplaced(files::FileSystem& system, const OwnFolder& slice,
                    const SliceProgress::Document& document) {
  try {
    const files::FileStatus found = system.statusAt(document.key);
    const Record& intended = *document.intended;
    if (isFileOf(found.stamp, intended.after)) return Replaced::yes;
    if (isVersion(found.stamp, intended.before.stamp)) return Replaced::no;
    if (document.kept == nullptr || found.stamp.device != slice.device()) return Replaced::unknown;
    // On one disk the original comes into the journal after it was replaced.
    const files::Place original = slice.at(originalName(document.kept->number));
    const bool isThere = system.exists(original) &&
                         isOriginal(system, slice, system.statusAt(original), *document.kept, found.stamp);
    return isThere ? Replaced::yes : Replaced::unknown;
  } catch (const std::system_error&) {
    return Replaced::unknown;
  }
}

}  // namespace pluvo::journal
