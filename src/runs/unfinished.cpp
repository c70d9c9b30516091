#include "unfinished.h"

#include "errors/document_error.h"
#include "journal/journal.h"

#include <unistd.h>

#include <array>
#include <ctime>
#include <system_error>

namespace pluvo::runs {
namespace {

std::string nameOfList() {
  const std::time_t now = std::time(nullptr);
  std::tm parts = {};
  localtime_r(&now, &parts);
  std::array<char, 32> time = {};
  const std::size_t length = std::strftime(time.data(), time.size(), "%Y%m%d-%H%M%S", &parts);
  return "unfinished-" + std::string(time.data(), length) + "-" + std::to_string(::getpid()) + ".list";
}

}  // namespace

std::string writeUnfinished(files::FileSystem& system, const std::vector<const NamedDocument*>& documents) {
  std::string names;
  for (const NamedDocument* each : documents) names += listedPath(*each) + '\0';
  // Beside the journal of runs, where there is one.
  const auto runs = journal::defaultFolder();
  const std::string name = nameOfList();
  std::string path = runs ? runs->substr(0, runs->rfind('/') + 1) + name : "./" + name;
  try {
    files::OpenFile file(system, runs ? journal::createBeside(system, *runs, name) : system.createNew(path));
    base::ByteSpan bytes(reinterpret_cast<const std::uint8_t*>(names.data()), names.size());
    while (!bytes.empty()) bytes = bytes.subspan(system.write(file.handle(), bytes));
    file.close();
  } catch (const std::system_error& failure) {
    throw errors::DocumentError(errors::Problem::io,
                                "The list of unfinished documents cannot be written to \"" + path + "\" (" +
                                    failure.code().message() + ").");
  }
  return path;
}

}  // namespace pluvo::runs
