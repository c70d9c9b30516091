#include "run_under_way.h"

namespace pluvo::journal {

void writeAll(files::FileSystem& system, files::Handle file, base::ByteSpan bytes) {
  while (!bytes.empty()) bytes = bytes.subspan(system.write(file, bytes));
}

/// Of a line that was not written whole nothing is read.
void RunUnderWay::append(const std::string& lines) {
  const std::string whole = (torn ? kUnlessWhole : "") + lines;
  torn = true;
  writeAll(system, journal->handle(), {reinterpret_cast<const std::uint8_t*>(whole.data()), whole.size()});
  torn = false;
}

}  // namespace pluvo::journal
