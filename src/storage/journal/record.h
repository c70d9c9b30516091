#pragma once

#include "files/file_system.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::journal {

/// One line of a journal.
struct Record {
  enum class Kind { command, kept, notKept, takenBack };
  Kind kind = Kind::command;
  std::string text;          ///< the command, or the document's path
  std::uint64_t number = 0;  ///< kept, takenBack: the name of the original in the run's folder
  /// kept: the name of what lies beside the document meanwhile, be it the original or a version
  std::string beside;
  files::FileStatus before;  ///< kept: owner, group, permissions and stamp of the original
  files::Stamp after;        ///< kept: of the version that took its place

  /// Earlier journals do not tell the original's disk, inode, owner and group.
  bool knowsFile() const { return before.stamp.inode != 0; }
};

/// Words separated by blanks; the bytes of paths that are not plain are written as "%" and two digits. Ends
/// with a line feed, without which a line was not written whole.
std::string lineOf(const Record& record);

/// Nothing for a line that is none of ours.
std::optional<Record> recordOf(std::string_view line);

/// Of the documents that a run may have replaced those that no undo put back, in order.
std::vector<Record> keptOf(const std::vector<Record>& records);

/// The records of a journal, without an unfinished last one.
std::vector<Record> recordsOf(std::string_view journal);

}  // namespace pluvo::journal
