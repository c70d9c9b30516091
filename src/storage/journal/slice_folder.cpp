#include "slice_folder.h"

#include "files/locking.h"
#include "files/reading.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <climits>
#include <sstream>
#include <thread>
#include <utility>

namespace pluvo::journal {

namespace {

using errors::DocumentError;
using errors::Problem;

constexpr const char* kRequest = "request";
constexpr std::string_view kFirstLine = "PLUVO run 1";

std::string textOf(files::FileSystem& system, const files::Place& place) {
  const files::FileContent content = files::readFile(system, place);
  const base::ByteSpan bytes = content.bytes.view;
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

void writeText(files::FileSystem& system, files::Handle file, std::string_view text) {
  base::ByteSpan bytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
  while (!bytes.empty()) bytes = bytes.subspan(system.write(file, bytes));
}

/// The last line of a lock: the machine and the process that held it last.
std::pair<std::string, std::string> holderIn(files::FileSystem& system, const OwnFolder& slice) {
  try {
    std::istringstream lines(textOf(system, slice.at(kLock)));
    std::pair<std::string, std::string> holder;
    for (std::string machine, process; lines >> machine >> process;) holder = {machine, process};
    return holder;
  } catch (const std::exception&) {
    return {};
  }
}

std::string holderInWords(const std::pair<std::string, std::string>& holder) {
  return holder.first.empty() ? "" : " (process " + holder.second + " on " + holder.first + ")";
}

}  // namespace

std::string sliceName(std::uint32_t number, std::uint32_t slices) {
  return std::to_string(number) + "-of-" + std::to_string(slices);
}

std::string thisMachine() {
  std::array<char, HOST_NAME_MAX + 1> name = {};
  if (::gethostname(name.data(), name.size() - 1) != 0 || name[0] == 0) return "unknown";
  return name.data();
}

std::optional<NamedRequest> requestIn(files::FileSystem& system, const OwnFolder& run,
                                      const std::string& name) {
  if (!system.exists(run.at(kRequest))) return std::nullopt;
  NamedRequest request;
  request.run = name;
  const std::string text = textOf(system, run.at(kRequest));
  std::istringstream lines(text);
  std::string first;
  std::string word;
  std::getline(lines, first);
  lines >> word >> request.slices >> word >> request.list.count >> request.list.names >> request.list.keys;
  // The command may have any bytes but a line end.
  std::string command;
  std::getline(lines, command);
  std::getline(lines, command);
  const bool isSound = first == kFirstLine && lines && request.slices > 0;
  if (!isSound)
    throw DocumentError(Problem::damaged,
                        "The file \"" + pathIn(run.path(), kRequest) +
                            "\" is not as PLUVO writes it, so the run cannot go on or be taken back.");
  request.command = command;
  const auto end = lines.tellg();
  if (end >= 0) request.request = text.substr(static_cast<std::size_t>(end));
  return request;
}

void putRequest(files::FileSystem& system, const OwnFolder& run, const NamedRequest& request) {
  const std::string name = std::string(kRequest) + "." + thisMachine() + "." + std::to_string(::getpid());
  std::string command = request.command;
  for (char& c : command)
    if (c == '\n' || c == '\r') c = ' ';
  std::ostringstream text;
  text << kFirstLine << "\nslices " << request.slices << "\nlist " << request.list.count << " "
       << request.list.names << " " << request.list.keys << "\n"
       << command << "\n"
       << request.request;
  if (system.exists(run.at(name))) system.remove(run.at(name));
  {
    const files::OpenFile file(system, system.createNew(run.at(name)));
    writeText(system, file.handle(), text.str());
    system.flush(file.handle());
  }
  try {
    system.renameToFree(run.at(name), run.at(kRequest));
  } catch (const std::system_error& failure) {
    system.remove(run.at(name));
    if (failure.code().value() != EEXIST) throw;
  }
  system.flush(run.handle());
}

std::unique_ptr<files::OpenFile> holdNamed(files::FileSystem& system, const OwnFolder& run,
                                           files::Hold hold) {
  auto lock = std::make_unique<files::OpenFile>(system, system.openToAppend(run.at(kLock)));
  const bool isHeld = system.tryHold(lock->handle(), hold) && system.status(lock->handle()).names > 0;
  return isHeld ? std::move(lock) : nullptr;
}

std::unique_ptr<files::OpenFile> holdSlice(files::FileSystem& system, const OwnFolder& slice,
                                           const std::string& what) {
  // A program that only asks whether the slice is going on holds it for a moment.
  constexpr int kTries = 20;
  std::unique_ptr<files::OpenFile> lock;
  for (int i = 0; i < kTries && lock == nullptr; ++i) {
    if (i > 0) std::this_thread::sleep_for(std::chrono::milliseconds(50));
    lock = lockRun(system, slice);
  }
  const auto holder = holderIn(system, slice);
  if (lock == nullptr)
    throw DocumentError(Problem::locked, what + " is still going on" + holderInWords(holder) +
                                             "; wait for its end, or interrupt it.");
  const bool isOthers = !holder.first.empty() && holder.first != thisMachine();
  const files::Locking locking = isOthers ? files::lockingAt(slice.path()) : files::Locking{};
  if (locking.reach == files::LockReach::unsure)
    throw DocumentError(Problem::locked,
                        what + " was begun" + holderInWords(holder) +
                            " and has not ended there. It may be going on: locks on this file system (" +
                            locking.system +
                            ") are not known to hold between machines. When you have made sure that nothing "
                            "of it runs, delete \"" +
                            pathIn(slice.path(), kLock) + "\".");
  writeText(system, lock->handle(), thisMachine() + " " + std::to_string(::getpid()) + "\n");
  return lock;
}

bool isGoing(files::FileSystem& system, const OwnFolder& slice) {
  return system.exists(slice.at(kLock)) && lockRun(system, slice) == nullptr;
}

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
