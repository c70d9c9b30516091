#include "named_documents.h"

#include <set>
#include <system_error>
#include <utility>

namespace pluvo::cli {
namespace {

const Failure kFolder{files::Problem::io,
                      "It is a folder; name the documents in it, for instance as FOLDER/*.txt."};

}  // namespace

std::vector<NamedDocument> documentsNamed(files::FileSystem& system, const std::vector<std::string>& paths) {
  std::vector<NamedDocument> documents;
  std::set<std::pair<std::uint64_t, std::uint64_t>> seen;
  std::set<std::string> seenMissing;
  for (const std::string& path : paths) {
    try {
      const files::FileStatus status = system.statusAt(path);
      if (!seen.emplace(status.stamp.device, status.stamp.inode).second) continue;
      documents.push_back({path, {}});
      if (status.kind == files::FileKind::folder) documents.back().failure = kFolder;
    } catch (const std::system_error&) {
      // Opening it will say what is wrong.
      if (seenMissing.insert(path).second) documents.push_back({path, {}});
    }
  }
  return documents;
}

}  // namespace pluvo::cli
