#pragma once

#include "files/file_system.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::journal {

/// One line of a journal.
struct Record {
  enum class Kind {
    command,
    kept,
    notKept,
    takenBack,
    // Of slices; earlier versions pass over them.
    begun,     ///< an attempt at the slice, by a process of a machine, which is the text
    ended,     ///< it came to its end
    listed,    ///< a document of the slice
    intended,  ///< what will have come of a document that is to be replaced
    result,    ///< the outcome of a document
    // Earlier versions pass over this one, too.
    others,  ///< what the runs before this one keep
  };
  Kind kind = Kind::command;
  std::string text;  ///< the command, or the document's path; others: the name of the newest, if any
  /// kept, takenBack: the name of the original; begun: of the process; others: the bytes of all
  std::uint64_t number = 0;
  /// kept: the name of the file beside the document meanwhile, be it the original or a version
  std::string beside;
  files::FileStatus before;  ///< kept: owner, group, permissions and stamp of the original
  files::Stamp after;        ///< kept, intended: of the version that took its place
  std::string more = {};     ///< listed: the document as it was named; intended, result: its outcome
  std::int64_t time = 0;     ///< begun, ended: in seconds since 1970, by the clock of that machine

  /// Earlier journals do not tell the original's disk, inode, owner and group.
  bool knowsFile() const { return before.stamp.inode != 0; }
};

/// Words separated by blanks; the bytes of paths that are not plain are written as "%" and two digits. Ends
/// with a line feed, without which a line was not written whole.
std::string lineOf(const Record& record);

/// Put before a line where the one before it may lack its end. No record ends like this, and half a name
/// could be another document's.
inline constexpr const char* kUnlessWhole = "%\n";

/// Nothing for a line that is none of ours.
std::optional<Record> recordOf(std::string_view line);

/// Of the documents that a run may have replaced those that no undo put back, in order.
std::vector<Record> keptOf(const std::vector<Record>& records);

/// The records of a journal, without an unfinished last one.
void forEachRecord(std::string_view journal, const std::function<void(Record)>& visit);
std::vector<Record> recordsOf(std::string_view journal);

}  // namespace pluvo::journal
