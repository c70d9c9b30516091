#include "runs/kept.h"

#include "errors/document_error.h"
#include "files/reading.h"
#include "journal/journal.h"

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <system_error>

namespace pluvo::runs {
namespace {

using errors::DocumentError;
using errors::Problem;

constexpr const char* kLastReport = "/last-run.html";

/// The folder of state; nothing where there is none, or it is not the user's alone.
std::optional<std::string> stateFolder(files::FileSystem& system) {
  const auto runs = journal::defaultFolder();
  if (!runs) return std::nullopt;
  try {
    return journal::folderBeside(system, *runs, false);
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

bool isList(std::string_view name) { return name.starts_with("unfinished-") && name.ends_with(".list"); }

/// By their names, which begin with the time.
std::optional<std::string> lastList(files::FileSystem& system) {
  const auto folder = stateFolder(system);
  if (!folder) return std::nullopt;
  try {
    std::vector<std::string> names = system.names(*folder);
    std::erase_if(names, [](const std::string& name) { return !isList(name); });
    const auto last = std::max_element(names.begin(), names.end());
    if (last == names.end()) return std::nullopt;
    return *folder + "/" + *last;
  } catch (const std::system_error&) {
    return std::nullopt;
  }
}

/// See listedPath. Such steps that the user typed lead nowhere either, and go too.
std::string withoutMarks(std::string path) {
  for (std::size_t mark = 0; (mark = path.find("/./", mark)) != std::string::npos;) path.erase(mark, 2);
  return path;
}

}  // namespace

std::string placeOfLastReport(files::FileSystem& system) {
  const auto runs = journal::defaultFolder();
  if (!runs)
    throw DocumentError(Problem::io, "Neither XDG_STATE_HOME nor HOME names a folder for the report.");
  try {
    return journal::folderBeside(system, *runs, true) + kLastReport;
  } catch (const std::system_error& failure) {
    throw DocumentError(Problem::io, "There is no place for the report (" + failure.code().message() + ").");
  }
}

std::optional<std::string> lastReport(files::FileSystem& system) {
  auto folder = stateFolder(system);
  if (!folder || !system.exists(*folder + kLastReport)) return std::nullopt;
  return *folder + kLastReport;
}

std::optional<UnfinishedList> lastUnfinished(files::FileSystem& system) {
  auto path = lastList(system);
  if (!path) return std::nullopt;
  const files::FileContent file = files::readFile(system, *path);
  const std::string_view names(reinterpret_cast<const char*>(file.bytes.view.data()), file.bytes.view.size());
  UnfinishedList list{std::move(*path), {}};
  for (std::size_t from = 0; from < names.size();) {
    const std::size_t to = std::min(names.find('\0', from), names.size());
    if (to > from) list.documents.push_back(withoutMarks(std::string(names.substr(from, to - from))));
    from = to + 1;
  }
  return list;
}

bool hasUnfinished(files::FileSystem& system) { return lastList(system).has_value(); }

void forget(files::FileSystem& system, const UnfinishedList& list) {
  try {
    system.remove(list.path);
  } catch (const std::system_error& failure) {
    if (failure.code().value() == ENOENT) return;
    throw DocumentError(
        Problem::io, "The list \"" + list.path + "\" cannot be removed (" + failure.code().message() + ").");
  }
}

}  // namespace pluvo::runs
