#include "errors/document_error.h"
#include "files/reading.h"
#include "files/saving.h"
#include "runs/saved_requests.h"
#include "saved/toml_text.h"

namespace pluvo::runs {

void addRequest(files::FileSystem& system, const std::string& path, const engine::Request& request) {
  if (!system.exists(path)) {
    const std::string text =
        "# Requests for 'pluvo run', which takes them in this order.\n\n" + tomlOf(request);
    files::OpenFile file(system, system.createNew(path));
    base::ByteSpan bytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    while (!bytes.empty()) bytes = bytes.subspan(system.write(file.handle(), bytes));
    file.close();
    return;
  }
  const files::FileContent before = files::readFile(system, path);
  const bool ended = before.bytes.view.empty() || before.bytes.view.back() == '\n';
  const std::string added = (ended ? "\n" : "\n\n") + tomlOf(request);
  files::NewVersion version;
  version.write = [&](base::Output& out) {
    out.write(before.bytes.view);
    out.write({reinterpret_cast<const std::uint8_t*>(added.data()), added.size()});
  };
  version.check = [](const base::Bytes&) {};
  files::replaceFile(system, path, before.stamp, version);
}

}  // namespace pluvo::runs
