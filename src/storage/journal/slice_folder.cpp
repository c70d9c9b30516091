#include "slice_folder.h"

#include "files/reading.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <sstream>

namespace pluvo::journal {

namespace {

using errors::DocumentError;
using errors::Problem;

constexpr const char* kRequest = "request";
constexpr std::string_view kFirstLine = "PLUVO run 1";

}  // namespace

std::string textOf(files::FileSystem& system, const files::Place& place) {
  const files::FileContent content = files::readFile(system, place);
  const base::ByteSpan bytes = content.bytes.view;
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

void writeText(files::FileSystem& system, files::Handle file, std::string_view text) {
  base::ByteSpan bytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
  while (!bytes.empty()) bytes = bytes.subspan(system.write(file, bytes));
}

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

}  // namespace pluvo::journal
