#include "files/problem.h"
#include "files/reading.h"
#include "files/saving.h"
#include "printer.h"
#include "saved/saved_requests.h"
#include "saved/toml_text.h"
#include "usage_error.h"

#include <system_error>

namespace pluvo::cli {

void saveRequest(files::FileSystem& system, const std::string& path, const Request& request) {
  try {
    if (!system.exists(path)) {
      const std::string text =
          "# Requests for 'pluvo run', which takes them in this order.\n\n" + tomlOf(request);
      files::OpenFile file(system, system.createNew(path));
      files::ByteSpan bytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
      while (!bytes.empty()) bytes = bytes.subspan(system.write(file.handle(), bytes));
      file.close();
      return;
    }
    // A request behind others that are wrong would never be reached.
    (void)savedRequests(path);
    const files::FileContent before = files::readFile(system, path);
    const bool ended = before.bytes.view.empty() || before.bytes.view.back() == '\n';
    const std::string added = (ended ? "\n" : "\n\n") + tomlOf(request);
    files::NewVersion version;
    version.write = [&](files::Output& out) {
      out.write(before.bytes.view);
      out.write({reinterpret_cast<const std::uint8_t*>(added.data()), added.size()});
    };
    version.check = [](const files::Bytes&) {};
    files::replaceFile(system, path, before.stamp, version);
  } catch (const files::DocumentError& refused) {
    throw UsageError(path + ": " + refused.what());
  } catch (const std::system_error& refused) {
    throw UsageError(path + " cannot be written: " + refused.code().message() + ".");
  }
}

}  // namespace pluvo::cli
